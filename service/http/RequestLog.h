#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

#include "service/http/Message.h"

namespace service::http {

// One line for a request that was answered: number, method, path, command and task, bytes read and sent, status, result
// and the time that it took. Nothing secret is in it: the query and the form stay out, and a secret that stands in the
// place of a path or a command is masked.
class RequestLog {
public:
    explicit RequestLog(std::ostream& out) : out_(out) {}

    using Moment = std::chrono::steady_clock::time_point;

    void note(const RequestHead& head, std::size_t bodyBytes, const Response& response, Moment begun);

private:
    std::ostream& out_;
    long long number_ = 0;
};

}  // namespace service::http
