#pragma once

#include <string_view>

#include "service/xml/Node.h"

namespace service::xml {

// A form value that starts with a literal "<" holds XML whose texts alone are percent-encoded: they are decoded after
// the markup has been read, so that a "&" or "<" in a name stays part of the name.
enum class Texts { plain, percentEncoded };

// Reads one element with everything in it. Anything that is not well-formed XML is refused, and so are document type
// declarations and elements nested too deeply.
Node read(std::string_view text, Texts texts);

// Whether an element may have this name.
bool isName(std::string_view text);

}  // namespace service::xml
