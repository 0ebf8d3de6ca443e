#pragma once

#include <string>
#include <string_view>

#include "service/Context.h"
#include "service/base/Json.h"
#include "service/http/Message.h"

namespace service::faults {
class Faults;
}

namespace service::control {

inline constexpr std::string_view kControlPath = "/control/";

// What the operator can do to the service while it runs: JSON over HTTP, for whoever knows the token.
class Control {
public:
    // The seed is what a reset leads back to.
    Control(store::Database& database, Settings& settings, faults::Faults& faults, Json seed, std::string token);

    const std::string& token() const { return token_; }

    // Carries out what is asked below kControlPath; the caller has looked at the token. Never throws for anything that
    // a request can hold.
    http::Response answer(const http::Request& request);

private:
    http::Response attempt(const http::Request& request);
    Json carryOut(const http::Request& request);
    void follow();

    store::Database& database_;
    Settings& settings_;
    faults::Faults& faults_;
    Json seed_;
    std::string token_;
};

// A refusal in the form of these resources.
http::Response errorResponse(unsigned status, const std::string& why);

}  // namespace service::control
