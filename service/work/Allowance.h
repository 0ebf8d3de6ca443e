#pragma once

#include <functional>
#include <utility>

namespace service::work {

// A piece of work has to make room: what it did is undone, and it is done again later or given up. It is no
// std::exception, so that nobody takes it for a failure of the request.
class Interrupted {};

// What a piece of work may take at a stretch, counted in the rows that it reads and the steps that it takes.
class Allowance {
public:
    // After each `piece` it is asked whether it may go on; without a question the first is the last.
    explicit Allowance(int piece, std::function<bool()> mayGoOn = {})
        : piece_(piece), left_(piece), mayGoOn_(std::move(mayGoOn))
    {
    }

    // Throws Interrupted where nothing is left.
    void spend(int count = 1)
    {
        if (!isLeft(count)) throw Interrupted();
    }

    // The same as an answer.
    bool isLeft(int count)
    {
        left_ -= count;
        if (left_ > 0) return true;
        if (!mayGoOn_ || !mayGoOn_()) return false;
        left_ = piece_;
        return true;
    }

private:
    int piece_;
    int left_;
    std::function<bool()> mayGoOn_;
};

}  // namespace service::work
