// The body of a request: name=value pairs, written in the order of the wire.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <utility>

#include "client/Text.h"
#include "pvutil/StringEx.h"
#include "pvutil/UrlEncoder.h"

namespace wapi {

/// A text inside a CDATA section. It goes in as it stands: "]]>" in it ends the section early.
struct Cdata {
    const CStringT& text;
};

/// Pieces are ASCII literals, wide texts, decimal numbers and CDATA sections. What is encoded is converted to UTF-8 and
/// percent-encoded straight into the body.
class FormBody {
public:
    FormBody() { text_.reserve(kUsual); }

    /// `name` as it stands, such as "&xml=", then the pieces encoded.
    template <typename... Pieces>
    FormBody& encoded(std::string_view name, const Pieces&... pieces)
    {
        appendAscii(text_, name);
        return more(pieces...);
    }

    /// Further encoded pieces of the same value.
    template <typename... Pieces>
    FormBody& more(const Pieces&... pieces)
    {
        (encode(pieces), ...);
        return *this;
    }

    /// The pieces as they stand.
    template <typename... Pieces>
    FormBody& literal(const Pieces&... pieces)
    {
        (plain(pieces), ...);
        return *this;
    }

    operator const CStringT&() const noexcept { return text_; }

    CStringT taken() noexcept { return std::move(text_); }

private:
    static constexpr std::size_t kUsual = 256;

    void encode(std::string_view ascii) { kzn::pvutil::URLEncoder::append(text_, ascii); }
    void encode(const CStringT& text) { kzn::pvutil::URLEncoder::append(text_, text); }
    void encode(int number) { plain(number); }  // sign and digits stay as they are under the encoding
    void encode(const Cdata& section) { more("<![CDATA[", section.text, "]]>"); }

    void plain(std::string_view ascii) { appendAscii(text_, ascii); }
    void plain(const CStringT& text) { text_ += text; }
    void plain(int number)
    {
        std::array<char, 12> digits;
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        text_.append(digits.data(), end);
    }

    CStringT text_;
};

}  // namespace wapi
