#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "service/http/Message.h"

namespace service::http {

// Whoever stands behind a server and answers what comes in.
class Answerer {
public:
    virtual ~Answerer() = default;

    // What is refused before its body is read; nothing where the request may go on.
    virtual std::optional<Response> refused(const RequestHead& /*head*/) const { return std::nullopt; }

    virtual Response answer(const Request& request) const = 0;

    // The same for a request that may have to wait: the reply is given once, by any thread, at times before this ends.
    using Reply = std::function<void(Response response)>;
    virtual void answerLater(Request request, Reply reply) const { reply(answer(request)); }

    // A large request or answer has gone, and the memory that it took is free.
    virtual void tidyUp() const {}

    // How large a body this target takes.
    virtual std::uint64_t bodyLimit(std::string_view target) const = 0;
};

}  // namespace service::http
