#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "service/Context.h"

namespace service::http {

struct Request {
    bool isPost = false;
    std::string target;  // path and query, as sent
    std::string contentType;
    std::string body;
};

struct Response {
    unsigned status = 200;
    std::string contentType = "text/xml; charset=utf-8";
    std::string body;
};

// A reply for a request that never reached a command.
Response refusal(unsigned status, std::string_view reason, std::string_view exceptionID);

class Router {
public:
    Router(store::Database& database, const Settings& settings) : database_(database), settings_(settings) {}

    Response answer(const Request& request) const;

    // How large a body this target takes.
    std::uint64_t bodyLimit(std::string_view target) const;

private:
    Response operation(const Request& request) const;
    Response upload(const Request& request) const;
    Response icon(std::string_view target) const;

    store::Database& database_;
    const Settings& settings_;
};

}  // namespace service::http
