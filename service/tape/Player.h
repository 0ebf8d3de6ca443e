#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "service/http/Message.h"
#include "service/tape/Matcher.h"
#include "service/tape/Tape.h"

namespace service::tape {

// Answers from a tape. Every exchange is played once, in the order in which it is asked for, and the one that fitted
// last again when no other is left.
class Player {
public:
    explicit Player(Tape tape);

    // `server` is where the player is reached. A request that fits nothing is refused with the nearest exchange and the
    // first difference; one whose reply cannot be made is refused, too.
    http::Response play(const http::Request& request, const std::string& server);

    std::size_t size() const { return tape_.size(); }
    std::size_t played() const;
    std::size_t refused() const { return refused_; }

private:
    // How far a request is an exchange's. What is compared first comes first.
    struct Likeness {
        int parts = 0;
        std::size_t bytes = 0;
        std::function<std::string(const Bindings&)> difference;  // says it; none where it fits
    };

    Likeness compare(const Exchange& exchange, const http::Request& request, Bindings& bindings) const;
    std::optional<std::size_t> choose(const http::Request& request);
    http::Response reply(const Exchange& exchange);
    http::Response refuse(const http::Request& request);
    void bindRecorded(const Template& text);
    void bindFresh(const Template& text);

    Tape tape_;
    std::vector<std::size_t> playedAt_;  // when each was played last, counted from 1; 0 where it was not
    std::size_t now_ = 0;
    std::size_t refused_ = 0;
    Bindings bindings_;
};

}  // namespace service::tape
