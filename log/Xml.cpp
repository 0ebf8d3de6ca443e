#include "log/Xml.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace logreader {

namespace {

constexpr std::size_t kDeepest = 1000;
constexpr std::string_view kBlanks = " \t\r\n";

bool isBlank(std::string_view text)
{
    return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

std::string_view withoutMark(std::string_view text)
{
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    return text.starts_with(kMark) ? text.substr(kMark.size()) : text;
}

bool mayBeginName(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || static_cast<signed char>(c) < 0;
}

void appendUtf8(std::string& text, unsigned long code)
{
    const auto more = [](unsigned long bits) { return static_cast<char>(0x80U | (bits & 0x3FU)); };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text.append({static_cast<char>(0xC0U | (code >> 6U)), more(code)});
    } else if (code < 0x10000) {
        text.append({static_cast<char>(0xE0U | (code >> 12U)), more(code >> 6U), more(code)});
    } else {
        text.append({static_cast<char>(0xF0U | (code >> 18U)), more(code >> 12U), more(code >> 6U), more(code)});
    }
}

bool appendNumbered(std::string& text, std::string_view digits)
{
    const bool isHexadecimal = digits.starts_with('x');
    if (isHexadecimal) digits.remove_prefix(1);
    unsigned long code = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, code, isHexadecimal ? 16 : 10);
    const bool isCharacter = code > 0 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    if (error != std::errc() || stop != end || !isCharacter) return false;
    appendUtf8(text, code);
    return true;
}

bool appendReference(std::string& text, std::string_view name)
{
    using Named = std::pair<std::string_view, char>;
    static constexpr std::array kNamed = {Named{"amp", '&'}, Named{"lt", '<'}, Named{"gt", '>'}, Named{"quot", '"'},
                                          Named{"apos", '\''}};
    if (name.starts_with('#')) return appendNumbered(text, name.substr(1));
    const auto found = std::ranges::find(kNamed, name, &Named::first);
    if (found == kNamed.end()) return false;
    text += found->second;
    return true;
}

/// Writes well-formed XML with a line an element.
class Indenter {
public:
    explicit Indenter(const std::function<void(std::string_view)>& write) : write_(write) {}

    void step(const XmlToken& token)
    {
        const bool isText = token.kind == XmlKind::text || token.kind == XmlKind::cdata;
        if (isText && isBlank(token.raw)) return;
        if (token.kind == XmlKind::close) --depth_;
        place(isText || token.kind == XmlKind::close);
        write_(token.raw);
        if (token.kind == XmlKind::open) ++depth_;
        isInline_ = isText || token.kind == XmlKind::open;
    }

private:
    static constexpr std::size_t kDeepestIndent = 20;

    /// Begins a line, unless what comes may stay in this one, or it is the first.
    void place(bool mayStay)
    {
        const bool isFirst = std::exchange(isFirst_, false);
        if (isFirst || (mayStay && isInline_)) return;
        write_(std::string_view(margin_).substr(0, 1 + 2 * std::min(depth_, kDeepestIndent)));
    }

    const std::function<void(std::string_view)>& write_;
    std::string margin_ = "\n" + std::string(2 * kDeepestIndent, ' ');
    std::size_t depth_ = 0;
    bool isFirst_ = true;
    bool isInline_ = false;  // behind a text, or behind a tag that a text or its own end may follow
};

}  // namespace

std::size_t tagEnd(std::string_view text)
{
    std::size_t at = 1;
    while ((at = text.find_first_of("\"'<>", at)) != std::string_view::npos) {
        if (text[at] == '>') return at;
        if (text[at] == '<') return std::string_view::npos;
        at = text.find(text[at], at + 1);
        if (at == std::string_view::npos) return at;
        ++at;
    }
    return at;
}

XmlToken XmlScanner::next()
{
    if (rest_.empty()) return {};
    if (rest_.front() != '<') return cut(XmlKind::text, std::min(rest_.find('<'), rest_.size()));
    if (rest_.starts_with("<![CDATA[")) return upTo(XmlKind::cdata, "]]>");
    if (rest_.starts_with("<!--")) return upTo(XmlKind::other, "-->");
    if (rest_.starts_with("<?")) return upTo(XmlKind::other, "?>");
    return tag();
}

XmlToken XmlScanner::cut(XmlKind kind, std::size_t length, std::string_view name)
{
    const XmlToken token{kind, name, rest_.substr(0, length)};
    rest_.remove_prefix(token.raw.size());
    return token;
}

XmlToken XmlScanner::upTo(XmlKind kind, std::string_view closing)
{
    constexpr std::size_t kOpening = 2;
    const std::size_t end = rest_.find(closing, kOpening);
    if (end == std::string_view::npos) return cut(XmlKind::broken, rest_.size());
    return cut(kind, end + closing.size());
}

XmlToken XmlScanner::tag()
{
    const bool closes = rest_.starts_with("</");
    const std::size_t nameAt = closes ? 2 : 1;
    const std::size_t end = tagEnd(rest_);
    if (end == std::string_view::npos || nameAt >= end || !mayBeginName(rest_[nameAt])) {
        return cut(XmlKind::broken, rest_.size());
    }
    const bool isEmpty = !closes && rest_[end - 1] == '/';
    std::string_view name = rest_.substr(nameAt, end - nameAt);
    name = name.substr(0, name.find_first_of(" \t\r\n/"));
    if (closes) return cut(XmlKind::close, end + 1, name);
    return cut(isEmpty ? XmlKind::empty : XmlKind::open, end + 1, name);
}

bool XmlTree::enter(const XmlToken& token)
{
    if ((open_.empty() && hasRoot_) || open_.size() >= kDeepest) return false;
    hasRoot_ = true;
    if (token.kind == XmlKind::open) open_.push_back(token.name);
    return true;
}

bool XmlTree::step(const XmlToken& token)
{
    switch (token.kind) {
    case XmlKind::open:
    case XmlKind::empty: return enter(token);
    case XmlKind::close:
        if (open_.empty() || open_.back() != token.name) return false;
        open_.pop_back();
        return true;
    case XmlKind::text: return !open_.empty() || isBlank(withoutMark(token.raw));
    case XmlKind::cdata: return !open_.empty();
    case XmlKind::other: return true;
    case XmlKind::broken: return false;
    case XmlKind::end: return isComplete();
    }
    return false;
}

std::string withoutReferences(std::string_view text)
{
    constexpr std::size_t kLongestReference = 12;
    std::string plain;
    plain.reserve(text.size());
    while (!text.empty()) {
        const std::size_t at = std::min(text.find('&'), text.size());
        plain.append(text.substr(0, at));
        text.remove_prefix(at);
        if (text.empty()) break;
        const std::size_t end = text.substr(0, kLongestReference).find(';');
        const bool isReference = end != std::string_view::npos && appendReference(plain, text.substr(1, end - 1));
        if (!isReference) plain += '&';
        text.remove_prefix(isReference ? end + 1 : 1);
    }
    return plain;
}

bool isWellFormed(std::string_view xml)
{
    XmlScanner scanner(xml);
    XmlTree tree;
    for (;;) {
        const XmlToken token = scanner.next();
        if (!tree.step(token)) return false;
        if (token.kind == XmlKind::end) return true;
    }
}

void writeIndented(std::string_view xml, const std::function<void(std::string_view)>& write)
{
    if (!isWellFormed(xml)) return write(xml);
    Indenter indenter(write);
    XmlScanner scanner(withoutMark(xml));
    for (XmlToken token = scanner.next(); token.kind != XmlKind::end; token = scanner.next()) indenter.step(token);
}

}  // namespace logreader
