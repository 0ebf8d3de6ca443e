// Percent-encoding of form values.
#pragma once

#include <string>
#include <string_view>

#include "pvutil/StringEx.h"

namespace kzn::pvutil {

/// Letters, digits and `-` `_` `.` `~` stay; every other byte becomes `%` and two upper-case hexadecimal digits.
class URLEncoder {
public:
    static std::string EncodeA(std::string_view bytes);

    /// Appends the encoded text to a body in one pass, with no copy in between: ASCII as it stands in the source, wide
    /// text by way of its UTF-8 bytes.
    static void append(stringex::CStringT& body, std::string_view ascii);
    static void append(stringex::CStringT& body, const stringex::CStringT& text);
};

}  // namespace kzn::pvutil
