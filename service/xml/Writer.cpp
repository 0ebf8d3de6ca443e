#include "service/xml/Writer.h"

#include <stdexcept>

#include "service/base/Text.h"
#include "service/xml/Reader.h"

namespace service::xml {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

std::string_view escapeOf(char c)
{
    switch (c) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '\r': return "&#13;";  // a parser would turn it into a line feed
    default: return {};
    }
}

bool isPlain(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x80U && escapeOf(c).empty() && isXmlCharacter(byte);
}

// Whatever is not plain ASCII: an escape, a longer sequence or something that cannot go out. Returns the bytes read.
std::size_t appendSpecial(std::string& out, std::string_view text)
{
    if (const std::string_view escape = escapeOf(text[0]); !escape.empty()) {
        out += escape;
        return 1;
    }
    std::uint32_t character = 0;
    const std::size_t length = sequenceLength(text, character);
    if (length != 0 && isXmlCharacter(character)) {
        out += text.substr(0, length);
        return length;
    }
    appendUtf8(out, kReplacement);
    return length == 0 ? 1 : length;
}

}  // namespace

void appendEscaped(std::string& out, std::string_view text)
{
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && isPlain(text[plain])) ++plain;
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (!text.empty()) text.remove_prefix(appendSpecial(out, text));
    }
}

void append(std::string& out, const Node& node)
{
    if (node.matchOnly) return;
    if (!isName(node.name)) throw std::logic_error("no element can be called " + quoted(node.name));
    out += '<';
    out += node.name;
    out += '>';
    appendEscaped(out, node.text);
    for (const Node& child : node.children) append(out, child);
    out += "</";
    out += node.name;
    out += '>';
}

}  // namespace service::xml
