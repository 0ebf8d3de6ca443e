#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "service/Context.h"
#include "service/http/Answerer.h"

namespace service::control {
class Control;
}
namespace service::faults {
class Faults;
}
namespace service::journal {
class Journal;
}
namespace service::work {
class Crew;
}

namespace service::http {

class Errand;

// Finds who answers a request.
class Router final : public Answerer {
public:
    // Without a control nothing is answered below its path; without faults all goes well; without a crew everything is
    // done by the thread that asks; without a journal nothing is kept.
    Router(store::Database& database, const Settings& settings, control::Control* control = nullptr,
           faults::Faults* faults = nullptr, work::Crew* crew = nullptr, journal::Journal* journal = nullptr)
        : database_(database), settings_(settings), control_(control), faults_(faults), crew_(crew), journal_(journal)
    {
    }

    std::optional<Response> refused(const RequestHead& head) const override;

    // Only without a crew.
    Response answer(const Request& request) const override;
    void answerLater(Request request, Reply reply) const override;
    void tidyUp() const override;
    std::uint64_t bodyLimit(std::string_view target) const override;

private:
    friend class Errand;
    using ErrandPtr = std::shared_ptr<Errand>;
    struct Place;

    using Moment = std::chrono::steady_clock::time_point;
    void note(Request request, const Response& response, Moment begun) const;
    void operation(const ErrandPtr& errand) const;
    void upload(const ErrandPtr& errand) const;
    void icon(const ErrandPtr& errand) const;
    void nullSession(const ErrandPtr& errand) const;
    void documents(const ErrandPtr& errand) const;
    void ready(const ErrandPtr& errand) const;
    void page(const ErrandPtr& errand) const;
    void controlled(const ErrandPtr& errand) const;
    std::optional<Response> refusalOf(const RequestHead& head) const;
    std::optional<Response> withoutToken(const RequestHead& head) const;

    static const Place* placeOf(std::string_view path);

    store::Database& database_;
    const Settings& settings_;
    control::Control* control_;
    faults::Faults* faults_;
    work::Crew* crew_;
    journal::Journal* journal_;
};

}  // namespace service::http
