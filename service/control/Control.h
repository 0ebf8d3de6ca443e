#pragma once

#include <string>
#include <string_view>

#include "service/Context.h"
#include "service/base/Json.h"
#include "service/http/Message.h"
#include "service/seed/Seed.h"

namespace service::faults {
class Faults;
}
namespace service::journal {
class Journal;
}

namespace service::control {

inline constexpr std::string_view kControlPath = "/control/";

// What the operator can do to the service while it runs: JSON over HTTP, for whoever knows the token.
class Control {
public:
    // The seed is what a reset leads back to.
    // Without a journal there is none to look at.
    Control(store::Database& database, Settings& settings, faults::Faults& faults, Json seed, std::string token,
            journal::Journal* journal = nullptr);

    // Begins with the seed where the data file is empty; says what it did. Nothing is said where there is no seed.
    std::string begin(store::Database& database);

    const std::string& token() const { return token_; }

    // Whether a connection that reads is enough for what is asked.
    static bool onlyReads(const http::Request& request);

    // Whether the journal is looked at, which has to hold all that was answered before.
    static bool asksForJournal(const http::Request& request);

    // Carries out what is asked below kControlPath; the caller has looked at the token. Never throws for anything that
    // a request can hold.
    http::Response answer(store::Database& database, const http::Request& request);

private:
    http::Response attempt(store::Database& database, const http::Request& request);
    http::Response carryOut(store::Database& database, const http::Request& request);
    void follow(store::Database& database);

    Settings& settings_;
    faults::Faults& faults_;
    journal::Journal* journal_;
    Json seed_;
    seed::SecretHashes hashes_;
    std::string token_;
};

// A refusal in the form of these resources.
http::Response errorResponse(unsigned status, const std::string& why);

}  // namespace service::control
