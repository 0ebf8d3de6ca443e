#pragma once

#include <functional>
#include <string>
#include <vector>

#include "service/http/Message.h"
#include "service/tape/Matcher.h"
#include "service/tape/Tape.h"

namespace service::tape {

// Plays a tape's requests against another service, and compares what that one answers.
class Verifier {
public:
    using Ask = std::function<http::Response(const http::Request&)>;

    // `server` is where the other one is reached, `secrets` stand for {secret}, {secret 2} and so on.
    Verifier(const std::string& server, const std::vector<std::string>& secrets, Ask ask);

    // The first difference between the reply and the tape's; empty where there is none.
    std::string check(const Exchange& exchange);

private:
    http::Request requestOf(const Exchange& exchange);
    std::string compare(const Exchange& exchange, const http::Response& response);

    Bindings bindings_;
    Ask ask_;
};

// How many secrets have to be known before the tape can be played.
int secretsOf(const Tape& tape);

}  // namespace service::tape
