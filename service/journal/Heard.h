#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "service/http/Message.h"

namespace service::journal {

inline constexpr std::size_t kLongestText = std::size_t{256} * 1024;  // that is kept

// A request and its reply as they were, as far as the journal can want anything of them.
struct Heard {
    long long number = 0;
    long long time = 0;  // the service's own, in milliseconds since 1970
    std::chrono::steady_clock::duration took{};
    http::Request request;                                        // of an upload without its body
    std::vector<std::pair<std::string, std::string>> uploaded{};  // the fields of an upload
    http::Response response;  // of a picture without its body, of a longer text a byte more than is kept
    std::size_t bytesOut = 0;
    std::size_t bytesIn = 0;
    bool isHead = false;  // the rest is left out
};

// Copies what is needed of the reply, which has yet to go out.
Heard heardOf(http::Request request, const http::Response& response);

// Who asked where, how long it took and what became of it, without what was sent and answered.
Heard headOf(const Heard& heard);

// What it takes while it waits.
std::size_t sizeOf(const Heard& heard);

}  // namespace service::journal
