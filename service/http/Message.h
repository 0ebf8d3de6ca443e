#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "service/faults/Fault.h"

namespace service::http {

class Events;

// What is known of a request before its body is read. A header that is not there is empty.
struct RequestHead {
    std::string method;
    std::string target;  // path and query, as sent
    std::string host;
    std::string origin;
    std::string fetchSite;
    std::string authorization;
};

using HeaderLines = std::vector<std::pair<std::string, std::string>>;

struct Request {
    std::string method;
    std::string target;  // path and query, as sent
    std::string contentType;
    std::string body;
    HeaderLines headers{};  // all of them, as sent

    bool isPost() const { return method == "POST"; }
};

// What a form asks for.
struct Operation {
    std::string command;
    std::string task;  // of the command "execute"
};

struct Response {
    unsigned status = 200;
    std::string contentType = "text/xml; charset=utf-8";
    std::string body;
    HeaderLines headers{};                 // beyond those that every reply has
    Operation operation{};                 // empty where it was not one
    std::string user{};                    // who asked, where a session says so
    std::optional<faults::Fault> fault{};  // how it goes wrong on its way
    Events* events = nullptr;              // what the body goes on with until the client goes
};

inline constexpr const char* kJsonType = "application/json";

// A reply for a request that never reached a command.
Response refusal(unsigned status, std::string_view reason, std::string_view exceptionID);

// The reply to a method that is none of these, which stand as in "GET, POST".
Response wrongMethod(const std::string& allowed);

std::string_view pathOf(std::string_view target);

// Empty where the target has none.
std::string_view queryOf(std::string_view target);

}  // namespace service::http
