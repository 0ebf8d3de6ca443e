// The wide string of the library, and its way to and from UTF-8.
#pragma once

#include "pvutil/Platform.h"  // first: it says whether a compiler can use what follows

#include <string>
#include <string_view>

namespace kzn::pvutil::stringex {

using CStringT = std::basic_string<CharT>;
using CStringView = std::basic_string_view<CharT>;

/// UTF-8 of a UTF-16 text. A surrogate without its partner becomes U+FFFD.
PVWAPI_API std::string ToUtf8(const CStringT& text);

/// UTF-16 of a UTF-8 text. Each ill-formed sequence becomes one U+FFFD, as Unicode recommends.
PVWAPI_API CStringT FromUtf8(std::string_view utf8);

/// A text that an XML document can carry as it stands: "&", "<" and ">" become references, and what XML 1.0 has no
/// place for (most control characters, lone surrogates, U+FFFE, U+FFFF) is dropped.
PVWAPI_API CStringT XmlText(const CStringT& text);

}  // namespace kzn::pvutil::stringex

using kzn::pvutil::stringex::CStringT;
