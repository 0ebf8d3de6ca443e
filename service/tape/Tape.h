#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "service/tape/Template.h"

namespace service::tape {

struct HeaderTemplate {
    std::string name;
    Template value;

    bool operator==(const HeaderTemplate&) const = default;
};

// One request and its reply.
struct Exchange {
    std::string method = "POST";
    Template target;
    std::vector<HeaderTemplate> headers;  // those that the request must carry
    Template body;
    unsigned status = 200;
    std::string contentType;
    std::vector<HeaderTemplate> replyHeaders;
    Template reply;
    std::size_t line = 0;  // where it begins in the file
};

// All of an exchange's texts, in the order in which they stand on a tape.
std::vector<Template*> templatesOf(Exchange& exchange);
std::vector<const Template*> templatesOf(const Exchange& exchange);

using Tape = std::vector<Exchange>;

// The statuses that a tape can hold.
inline constexpr unsigned kLeastStatus = 200;
inline constexpr unsigned kMostStatus = 599;

// How long a header's name and value may be, each.
inline constexpr std::size_t kLongestHeader = 65'500;

// What is wrong with a tape, and in which line.
class TapeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    TapeError(std::size_t line, const std::string& what)
        : std::runtime_error("line " + std::to_string(line) + ": " + what)
    {
    }
};

// The exchanges of a tape's text, in their order; never none. Throws TapeError.
Tape readTape(std::string_view text);

// One exchange as it stands on a tape, with a comment line that names it. Reading it gives the same exchange.
std::string textOf(const Exchange& exchange, std::size_t number);

// What stands above the first exchange.
std::string titleText();

}  // namespace service::tape
