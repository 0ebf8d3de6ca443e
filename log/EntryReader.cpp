#include "log/EntryReader.h"

#include <algorithm>
#include <array>
#include <utility>

namespace logreader {

namespace {

constexpr std::size_t kLongestNumber = 20;  // digits of a 64-bit one

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Compares the begin of a line with the shape of a head, piece by piece; it stays open where the line ends too early.
class HeadMatch {
public:
    enum class State { matches, differs, open };

    explicit HeadMatch(std::string_view line) : line_(line) {}

    State match(Entry& head)
    {
        if (literal("<") && time(head.time) && literal(", pid=") && number(head.pid) && literal(", tid=") &&
            number(head.tid) && literal("> ")) {
            level(head.level);
        }
        return state_;
    }

    std::size_t length() const { return at_; }

private:
    bool stop(State state)
    {
        state_ = state;
        return false;
    }

    bool literal(std::string_view expected)
    {
        const std::string_view there = line_.substr(at_, expected.size());
        if (!expected.starts_with(there)) return stop(State::differs);
        at_ += there.size();
        return there.size() == expected.size() || stop(State::open);
    }

    bool time(std::string& value)
    {
        constexpr std::string_view kShape = "0000-00-00 00:00:00";
        const std::string_view there = line_.substr(at_, kShape.size());
        const auto fits = [](char is, char shape) { return shape == '0' ? isDigit(is) : is == shape; };
        if (!std::equal(there.begin(), there.end(), kShape.begin(), fits)) return stop(State::differs);
        value = there;
        at_ += there.size();
        return there.size() == kShape.size() || stop(State::open);
    }

    bool number(std::string& value)
    {
        const std::string_view there = line_.substr(at_, kLongestNumber + 1);
        const auto end = std::ranges::find_if_not(there, isDigit);
        const auto digits = static_cast<std::size_t>(end - there.begin());
        if (digits > kLongestNumber) return stop(State::differs);
        if (end == there.end()) return stop(State::open);
        value = there.substr(0, digits);
        at_ += digits;
        return digits > 0 || stop(State::differs);
    }

    void level(Level& value)
    {
        using Named = std::pair<std::string_view, Level>;
        static constexpr std::array kLevels = {Named{"Debug:  ", Level::debug}, Named{"Error:  ", Level::error},
                                               Named{"Info:  ", Level::info}, Named{"Warning:  ", Level::warning}};
        for (const auto& [name, level] : kLevels) {
            if (literal(name)) {
                value = level;
                state_ = State::matches;
            }
            if (state_ != State::differs) return;
        }
    }

    std::string_view line_;
    std::size_t at_ = 0;
    State state_ = State::open;
};

/// Cuts one line break off the end; false where there is none.
bool cutLineBreak(std::string_view& text)
{
    if (!text.ends_with('\n')) return false;
    text.remove_suffix(text.ends_with("\r\n") ? 2 : 1);
    return true;
}

/// Cuts off what belongs to the file and not to the text. Returns whether the text's own line has ended.
bool cutEnd(std::string_view& text, bool nextHeadSeen)
{
    if (nextHeadSeen) {
        cutLineBreak(text);  // the one that opens the head
    } else if (text.ends_with("\n\r")) {
        text.remove_suffix(1);  // half of that
    } else if (text.ends_with("\n\r\n")) {
        text.remove_suffix(2);
    }
    return cutLineBreak(text);
}

}  // namespace

void EntryReader::feed(std::string_view bytes)
{
    if (carry_.empty()) return take(bytes);
    const std::string joined = std::exchange(carry_, {}).append(bytes);
    take(joined);
}

void EntryReader::take(std::string_view bytes)
{
    while (!bytes.empty()) {
        if (!isAtLineStart_ || !takeHead(bytes)) takeLine(bytes);
    }
}

bool EntryReader::takeHead(std::string_view& bytes)
{
    Entry head;
    HeadMatch match(bytes);
    const HeadMatch::State state = match.match(head);
    if (state == HeadMatch::State::differs) return false;
    if (state == HeadMatch::State::open) {
        carry_ = std::exchange(bytes, {});
        return true;
    }
    finish(true);
    entry_ = std::move(head);
    isInEntry_ = true;
    isAtLineStart_ = false;
    bytes.remove_prefix(match.length());
    return true;
}

void EntryReader::takeLine(std::string_view& bytes)
{
    const std::size_t lineEnd = bytes.find('\n');
    const std::size_t length = lineEnd == std::string_view::npos ? bytes.size() : lineEnd + 1;
    append(bytes.substr(0, length));
    isAtLineStart_ = lineEnd != std::string_view::npos;
    bytes.remove_prefix(length);
}

void EntryReader::append(std::string_view bytes)
{
    if (!isInEntry_) return;
    constexpr std::size_t kTail = 4;  // two line breaks
    entry_.bytes += bytes.size();
    const std::size_t room = kLongestText - std::min(kLongestText, entry_.text.size());
    entry_.text.append(bytes.substr(0, room));
    tail_.append(bytes.substr(bytes.size() - std::min(bytes.size(), kTail)));
    tail_.erase(0, tail_.size() - std::min(tail_.size(), kTail));
}

void EntryReader::finish(bool nextHeadSeen)
{
    if (!isInEntry_) return;
    isInEntry_ = false;
    std::string_view tail = tail_;
    entry_.isWhole = cutEnd(tail, nextHeadSeen);
    entry_.bytes -= tail_.size() - tail.size();
    tail_.clear();
    if (entry_.text.size() > entry_.bytes) entry_.text.resize(static_cast<std::size_t>(entry_.bytes));
    sink_(std::exchange(entry_, {}));
}

void EntryReader::pause()
{
    if (carry_.empty() && isAtLineStart_) finish(false);
}

void EntryReader::end()
{
    carry_.clear();  // a head that was begun, and behind whole lines only
    finish(false);
    isAtLineStart_ = true;
}

}  // namespace logreader
