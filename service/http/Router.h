#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "service/Context.h"
#include "service/http/Message.h"

namespace service::control {
class Control;
}
namespace service::faults {
class Faults;
}

namespace service::http {

class Form;

// Finds who answers a request.
class Router {
public:
    // Without a control nothing is answered below its path; without faults all goes well.
    Router(store::Database& database, const Settings& settings, control::Control* control = nullptr,
           faults::Faults* faults = nullptr)
        : database_(database), settings_(settings), control_(control), faults_(faults)
    {
    }

    // What is refused before its body is read; nothing where the request may go on.
    std::optional<Response> refused(const RequestHead& head) const;

    Response answer(const Request& request) const;

    // How large a body this target takes.
    std::uint64_t bodyLimit(std::string_view target) const;

    const Settings& settings() const { return settings_; }

private:
    struct Place;

    Response operation(const Request& request) const;
    Response upload(const Request& request) const;
    Response icon(const Request& request) const;
    Response nullSession(const Request& request) const;
    Response documents(const Request& request) const;
    Response ready(const Request& request) const;
    Response controlled(const Request& request) const;
    std::optional<Response> withoutToken(const RequestHead& head) const;
    void carryOut(Response& response, const Form& form, const Upload* upload) const;
    bool isStruckDown(Response& response) const;

    static const Place* placeOf(std::string_view path);

    store::Database& database_;
    const Settings& settings_;
    control::Control* control_;
    faults::Faults* faults_;
};

}  // namespace service::http
