#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "service/base/Clock.h"
#include "service/store/Sessions.h"

namespace service {

namespace store {
class Database;
}

// What the operator decided when the service was started, and may decide anew by its control.
struct Settings {
    long long sessionDuration = 7'200'000;          // milliseconds
    std::uint64_t maxUpload = 64ULL * 1024 * 1024;  // bytes of a picture
    unsigned short port = 0;                        // where it listens
    Clock clock;
    std::string baseURL;  // where this service is reached, known once it listens
};

// A file that came with a request.
struct Upload {
    std::string fileName;
    std::string_view content;
};

// Who signs in was found to know a secret.
struct Proof {
    std::string userID;
    std::string hash;  // of the secret that matched
};

// One request: the data file, who calls, and when.
struct Context {
    store::Database& database;
    const Settings& settings;
    long long now;
    store::Session session;          // empty before the caller is known
    const Upload* upload = nullptr;  // only requests to the upload endpoint have one
    const Proof* proof = nullptr;    // of a sign-in that was looked at before
};

}  // namespace service
