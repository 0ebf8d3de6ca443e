#include <algorithm>
#include <array>

#include "service/tape/Escapes.h"
#include "service/tape/Tape.h"

namespace service::tape {

namespace {

constexpr std::size_t kWidth = 110;
constexpr std::size_t kDeepest = 12;

// Lines for the eye: a reader of the tape joins them without anything between.
class Lines {
public:
    explicit Lines(std::string& out) : out_(out) {}

    // Puts what stands together; a line never begins or ends with a blank that counts, nor begins like a comment.
    void put(std::string_view unit)
    {
        if (column_ + unit.size() > kWidth) breakLine(0);
        if (column_ == 0) {
            out_.append(indent_, ' ');
            if (unit == " ") unit = "\\s";
            else if (unit == "#") unit = "\\x23";
            else if (unit == "[") unit = "\\x5B";
        }
        column_ += unit.size();
        out_ += unit;
    }

    void breakLine(std::size_t depth)
    {
        indent_ = 2 * std::min(depth, kDeepest);
        if (column_ == 0) return;
        if (out_.ends_with(' ')) out_.replace(out_.size() - 1, 1, "\\s");
        out_ += '\n';
        column_ = 0;
    }

private:
    std::string& out_;
    std::size_t column_ = 0;
    std::size_t indent_ = 0;
};

// What a line is never broken before, and no element begins or ends with.
constexpr std::array<bool, 256> kOrdinary = [] {
    std::array<bool, 256> all{};
    all.fill(true);
    for (const char c : {'<', '>', '&', '%'}) all.at(static_cast<unsigned char>(c)) = false;
    return all;
}();

std::size_t ordinaryLength(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size() && kOrdinary[static_cast<unsigned char>(text[length])]) ++length;
    return length;
}

// Where a line of a text is best broken: before a form's fields, and between the elements of XML.
class Layout {
public:
    Layout(std::string& out, bool isXml) : lines_(out), isXml_(isXml) {}

    void literal(std::string_view text)
    {
        while (!text.empty()) {
            // A picture has millions of bytes, and few of the others.
            const std::size_t ordinary = ordinaryLength(text);
            put(text.substr(0, ordinary));
            text.remove_prefix(ordinary);
            if (text.empty()) return;
            breakBefore(text);
            if (isXml_) count(text);
            put(text.substr(0, 1));
            text.remove_prefix(1);
        }
    }

    void placeholder(const Piece& piece)
    {
        lines_.put(placeholderText(piece));
        remember("}");
    }

    void finish() { lines_.breakLine(0); }

private:
    void breakBefore(std::string_view text)
    {
        const bool betweenEscaped = text.starts_with("%3C") && before_ == "%3E";
        const bool between = text.starts_with('<') && before_.ends_with('>');
        const bool closing = isXml_ && text.starts_with("</");
        if (between) lines_.breakLine(closing && depth_ > 0 ? depth_ - 1 : depth_);
        else if (!isXml_ && (text.front() == '&' || betweenEscaped)) lines_.breakLine(0);
    }

    // How deep the elements stand behind this character.
    void count(std::string_view text)
    {
        const bool opens =
            text.starts_with('<') && !text.starts_with("</") && !text.starts_with("<?") && !text.starts_with("<!");
        const bool closes = text.starts_with("</") || (text.front() == '>' && before_.ends_with('/'));
        if (opens) ++depth_;
        else if (closes && depth_ > 0) --depth_;
    }

    void put(std::string_view text)
    {
        remember(text);
        while (!text.empty()) {
            const Unit unit = unitAt(text);
            lines_.put(unit.text());
            text.remove_prefix(unit.taken);
        }
    }

    void remember(std::string_view written)
    {
        before_ += written.substr(written.size() - std::min(written.size(), kRemembered));
        if (before_.size() > kRemembered) before_.erase(0, before_.size() - kRemembered);
    }

    static constexpr std::size_t kRemembered = 3;

    Lines lines_;
    bool isXml_;
    std::string before_;
    std::size_t depth_ = 0;
};

void appendLines(std::string& out, const Template& text)
{
    const bool isXml = !text.empty() && text.front().kind == Kind::literal && text.front().text.starts_with('<');
    Layout layout(out, isXml);
    for (const Piece& piece : text) {
        if (piece.kind == Kind::literal) layout.literal(piece.text);
        else layout.placeholder(piece);
    }
    layout.finish();
}

// What would be lost at a value's ends is escaped.
std::string valueText(const Template& value)
{
    std::string out;
    for (const Piece& piece : value) {
        out += piece.kind == Kind::literal ? escaped(piece.text) : placeholderText(piece);
    }
    if (out.starts_with(' ')) out.replace(0, 1, "\\s");
    if (out.ends_with(' ')) out.replace(out.size() - 1, 1, "\\s");
    return out;
}

// One header a line.
void appendHeaders(std::string& out, const std::vector<HeaderTemplate>& headers)
{
    for (const HeaderTemplate& header : headers) {
        out += header.name + (header.value.empty() ? ":" : ": ") + valueText(header.value) + "\n";
    }
}

}  // namespace

std::string titleText()
{
    return "What a service answered, as pvwapi-service record wrote it down\n";
}

std::string textOf(const Exchange& exchange, std::size_t number)
{
    std::string out = "\n# exchange " + std::to_string(number) + "\n[request] " + exchange.method + "\n";
    appendLines(out, exchange.target);
    if (!exchange.headers.empty()) out += "[headers]\n";
    appendHeaders(out, exchange.headers);
    if (!exchange.body.empty()) out += "[body]\n";
    appendLines(out, exchange.body);
    out += "[reply] " + std::to_string(exchange.status);
    if (!exchange.contentType.empty()) out += " " + exchange.contentType;
    out += '\n';
    appendLines(out, exchange.reply);
    if (!exchange.replyHeaders.empty()) out += "[reply headers]\n";
    appendHeaders(out, exchange.replyHeaders);
    return out;
}

}  // namespace service::tape
