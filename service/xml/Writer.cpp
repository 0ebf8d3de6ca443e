#include "service/xml/Writer.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "service/base/Text.h"
#include "service/xml/Reader.h"

namespace service::xml {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

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

// Which bytes go out as they are: a character each.
constexpr std::array<bool, 256> plainBytes()
{
    std::array<bool, 256> plain{};
    for (std::size_t byte = 0x20; byte < 0x80; ++byte) plain[byte] = true;
    for (const char c : {'\t', '\n'}) plain[static_cast<unsigned char>(c)] = true;
    for (const char c : {'&', '<', '>'}) plain[static_cast<unsigned char>(c)] = false;
    return plain;
}
constexpr std::array<bool, 256> kPlain = plainBytes();

bool isPlain(char c)
{
    return kPlain[static_cast<unsigned char>(c)];
}

// Whatever is not plain ASCII: an escape, a longer sequence or something that cannot go out. Returns the bytes read.
template <class Out>
std::size_t putSpecial(Out& out, std::string_view text)
{
    if (const std::string_view escape = escapeOf(text[0]); !escape.empty()) {
        out.put(escape);
        return 1;
    }
    std::uint32_t character = 0;
    const std::size_t length = sequenceLength(text, character);
    const bool canGoOut = length != 0 && isXmlCharacter(character);
    out.put(canGoOut ? text.substr(0, length) : kReplacement);
    return std::max<std::size_t>(length, 1);
}

template <class Out>
void putEscaped(Out& out, std::string_view text)
{
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && isPlain(text[plain])) ++plain;
        out.put(text.substr(0, plain));
        text.remove_prefix(plain);
        if (!text.empty()) text.remove_prefix(putSpecial(out, text));
    }
}

template <class Out>
void putNode(Out& out, const Node& node)
{
    if (node.matchOnly) return;
    out.put("<");
    out.putName(node.name);
    out.put(">");
    putEscaped(out, node.text);
    for (const Node& child : node.children) putNode(out, child);
    out.put("</");
    out.put(node.name);
    out.put(">");
}

// How long it becomes.
class Measure {
public:
    void put(std::string_view piece) { size_ += piece.size(); }
    void putName(std::string_view name)
    {
        if (!isName(name)) throw std::logic_error("no element can be called " + inQuotes(name));
        put(name);
    }
    std::size_t size() const { return size_; }

private:
    std::size_t size_ = 0;
};

// Into room that is there.
class Fill {
public:
    explicit Fill(char* to) : to_(to) {}
    void put(std::string_view piece) { to_ = std::copy(piece.begin(), piece.end(), to_); }
    void putName(std::string_view name) { put(name); }

private:
    char* to_;
};

}  // namespace

void append(std::string& out, const Node& node, std::string_view behind)
{
    Measure measure;
    putNode(measure, node);
    const std::size_t at = out.size();
    out.resize(at + measure.size() + behind.size());
    Fill fill(out.data() + at);
    putNode(fill, node);
    fill.put(behind);
}

}  // namespace service::xml
