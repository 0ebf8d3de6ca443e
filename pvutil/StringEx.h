// The wide string of the library, and its way to and from UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "pvutil/Platform.h"

namespace kzn::pvutil::stringex {

using CStringT = std::basic_string<CharT>;
using CStringView = std::basic_string_view<CharT>;

/// UTF-8 of a UTF-16 text. A surrogate without its partner becomes U+FFFD.
PVWAPI_API std::string ToUtf8(const CStringT& text);

/// UTF-16 of a UTF-8 text. Each ill-formed sequence becomes one U+FFFD, as Unicode recommends.
PVWAPI_API CStringT FromUtf8(std::string_view utf8);

}  // namespace kzn::pvutil::stringex

using kzn::pvutil::stringex::CStringT;
