#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "service/faults/Fault.h"

namespace service::http {

// What is known of a request before its body is read. A header that is not there is empty.
struct RequestHead {
    std::string method;
    std::string target;  // path and query, as sent
    std::string host;
    std::string origin;
    std::string fetchSite;
    std::string authorization;
};

struct Request {
    std::string method;
    std::string target;
    std::string contentType;
    std::string body;

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
    std::vector<std::pair<std::string, std::string>> headers;  // beyond those that every reply has
    Operation operation;                                       // empty where it was not one
    std::optional<faults::Fault> fault;                        // how it goes wrong on its way
};

inline constexpr const char* kJsonType = "application/json";

// A reply for a request that never reached a command.
Response refusal(unsigned status, std::string_view reason, std::string_view exceptionID);

std::string_view pathOf(std::string_view target);

// Empty where the target has none.
std::string_view queryOf(std::string_view target);

}  // namespace service::http
