#include "host/Encoding.h"

#include "host/Errors.h"
#include "host/Text.h"

namespace host {

namespace {

using kzn::pvutil::stringex::XmlText;

/// A carriage return as it stands would reach the reader of the XML as a line feed.
constexpr std::string_view kReturn = "&#13;";

CStringT replaced(CStringT text, std::string_view from, std::string_view to)
{
    const CStringT what = FromUtf8(from);
    const CStringT with = FromUtf8(to);
    for (std::size_t at = 0; (at = text.find(what, at)) != CStringT::npos; at += with.size()) {
        text.replace(at, what.size(), with);
    }
    return text;
}

bool isUnreserved(unsigned char byte)
{
    const bool letter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    return letter || (byte >= '0' && byte <= '9') || std::string_view("-_.~").find(static_cast<char>(byte)) < 4;
}

}  // namespace

bool isUtf8(std::string_view bytes)
{
    return ToUtf8(FromUtf8(bytes)) == bytes;
}

bool fitsXml(const CStringT& text)
{
    // The three that are written otherwise get longer; whatever cannot be written at all is missing afterwards.
    std::size_t expected = text.size();
    for (const auto unit : text) {
        if (unit == '&') expected += 4;
        if (unit == '<' || unit == '>') expected += 3;
    }
    return XmlText(text).size() == expected;
}

void requireXml(const CStringT& text, const std::string& what)
{
    if (!fitsXml(text)) throw LocalProblem(what + ": holds a character that no request can carry");
}

CStringT xmlOf(const CStringT& text)
{
    return replaced(XmlText(text), "\r", kReturn);
}

CStringT cdataOf(const CStringT& text)
{
    return replaced(replaced(text, "]]>", "]]]]><![CDATA[>"), "\r", "]]>&#13;<![CDATA[");
}

CStringT percentOf(const CStringT& text)
{
    CStringT encoded;
    for (const char c : ToUtf8(text)) {
        const auto byte = static_cast<unsigned char>(c);
        const auto digit = [](unsigned value) {
            return static_cast<CStringT::value_type>("0123456789ABCDEF"[value & 0xFU]);
        };
        if (isUnreserved(byte)) encoded.push_back(byte);
        else encoded.append({'%', digit(byte >> 4U), digit(byte)});
    }
    return encoded;
}

}  // namespace host
