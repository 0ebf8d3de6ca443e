// The parser underneath: expat, made ready, and kept for the next text.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

struct XML_ParserStruct;

namespace EXPAT_EX {

/// An expat parser of UTF-8, whatever a text declares itself to be; but zeros among its first two bytes make it UTF-16
/// to expat.
class XmlParser {
public:
    /// Throws std::bad_alloc.
    XmlParser();
    XmlParser(const XmlParser&) = delete;
    XmlParser& operator=(const XmlParser&) = delete;

    XML_ParserStruct* get() const noexcept { return parser_.get(); }

    /// Forgets the text and whatever was set; false where it is of no use any more.
    bool restart() noexcept;

private:
    struct Free {
        void operator()(XML_ParserStruct* parser) const noexcept;
    };

    bool salt() noexcept;

    std::unique_ptr<XML_ParserStruct, Free> parser_;
    std::array<std::uint8_t, 16> salt_{};
    bool hasSalt_ = false;
};

/// A parser that is ready to begin. Throws as its constructor does.
std::unique_ptr<XmlParser> takeParser();

/// Keeps the parser for another text, unless the one of `read` bytes that it has read may have made it large.
void giveBack(std::unique_ptr<XmlParser> parser, std::size_t read) noexcept;
void dropParsers() noexcept;

}  // namespace EXPAT_EX
