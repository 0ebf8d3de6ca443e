// The character sets that a reply may come in.
#pragma once

#include <string_view>

#include "pvutil/StringEx.h"

namespace kzn::pvutil {

enum class Charset { utf8, utf16, latin1, windows1252, ascii };

/// What a Content-Type declares; UTF-8 where it declares nothing, or nothing that is known here.
Charset charsetOf(std::string_view contentType) noexcept;

/// The text of `bytes` without a byte order mark. What stands for no character becomes U+FFFD.
stringex::CStringT decoded(std::string_view bytes, Charset charset);

/// `bytes` behind the byte order mark of UTF-8, if they begin with it.
std::string_view withoutUtf8Mark(std::string_view bytes) noexcept;

}  // namespace kzn::pvutil
