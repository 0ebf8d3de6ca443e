#pragma once

#include <string_view>

namespace service::xml {

// Refuses what the tree parser would let pass: stray "&", unknown entities, "]]>" in text, references to characters
// that XML does not have, document type declarations, and nesting deeper than a recursive reader can bear.
void checkMarkup(std::string_view text);

}  // namespace service::xml
