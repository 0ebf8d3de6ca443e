#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "service/tape/Template.h"

namespace service::tape {

// What a recorder finds in the texts of requests and replies. It looks for signs rather than structure: what it reads
// may be any service's, and need not be well-formed.

// What may be an identifier or a moment: a run of letters, digits and "-_.:".
struct Token {
    std::size_t at = 0;
    std::string_view text;
    bool isTag = false;  // an element's name
};

std::vector<Token> tokensOf(std::string_view text);

bool looksLikeTime(std::string_view token);

// Holds a row of digits that nobody would choose.
bool looksMade(std::string_view token);

// Could be an identifier: no plain word, and no small number.
bool couldIdentify(std::string_view token);

// What may stand beside a value that is looked for.
enum class Beside {
    anything,
    noLetter,   // nor a digit: it is a word of its own
    noAddress,  // nor what goes on with a host's name or port
};

// What may stand beside a secret.
Beside besideSecret(std::string_view value);

// Whether what is there stands so.
bool stands(std::string_view text, std::size_t at, std::size_t length, Beside beside);

// Puts the piece in the place of each of the spellings.
void replace(Template& text, const std::vector<std::string>& spellings, const Piece& piece, Beside beside);

}  // namespace service::tape
