#include "service/xml/Markup.h"

#include <array>
#include <charconv>

#include "service/base/Refusal.h"
#include "service/base/Text.h"

namespace service::xml {

namespace {

constexpr int kMaxDepth = 100;
constexpr std::size_t kLongestReference = 12;
constexpr std::array<std::string_view, 5> kEntities{"amp", "lt", "gt", "quot", "apos"};

[[noreturn]] void refuse(const std::string& what)
{
    throw Refusal(exceptionid::kBadXml, "the XML is not well-formed: " + what);
}

bool isCharacterReference(std::string_view body)
{
    body.remove_prefix(1);
    const bool hex = body.starts_with('x');
    if (hex) body.remove_prefix(1);
    std::uint32_t character = 0;
    const char* const end = body.data() + body.size();
    const auto [stop, error] = std::from_chars(body.data(), end, character, hex ? 16 : 10);
    return error == std::errc() && stop == end && isXmlCharacter(character);
}

class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    void run()
    {
        while (at_ < text_.size()) {
            if (text_[at_] == '<') {
                markup();
            } else {
                characterData();
            }
        }
        if (depth_ != 0) refuse("an element is not closed");
    }

private:
    bool startsWith(std::string_view what) const { return text_.substr(at_).starts_with(what); }

    void skipPast(std::string_view what)
    {
        const std::size_t found = text_.find(what, at_);
        if (found == std::string_view::npos) refuse("\"" + std::string(what) + "\" is missing");
        at_ = found + what.size();
    }

    void reference()
    {
        const std::size_t end = text_.substr(0, at_ + kLongestReference).find(';', at_);
        if (end == std::string_view::npos) refuse("\"&\" starts no reference");
        const std::string_view body = text_.substr(at_ + 1, end - at_ - 1);
        bool known = body.starts_with('#') && isCharacterReference(body);
        for (const std::string_view entity : kEntities) known = known || body == entity;
        if (!known) refuse("unknown reference " + quoted(body));
        at_ = end + 1;
    }

    void characterData()
    {
        if (startsWith("]]>")) refuse("\"]]>\" stands in text");
        if (text_[at_] == '&') {
            reference();
        } else {
            ++at_;
        }
    }

    void markup()
    {
        if (startsWith("<!--")) {
            at_ += 4;
            skipPast("-->");
        } else if (startsWith("<![CDATA[")) {
            skipPast("]]>");
        } else if (startsWith("<?")) {
            skipPast("?>");
        } else if (startsWith("<!")) {
            throw Refusal(exceptionid::kBadXml, "the XML holds a declaration, which is not accepted");
        } else {
            tag();
        }
    }

    void tag()
    {
        const bool closing = startsWith("</");
        if (!closing && ++depth_ > kMaxDepth) {
            throw Refusal(exceptionid::kLimitExceeded, "the XML is nested deeper than " + std::to_string(kMaxDepth));
        }
        ++at_;
        while (at_ < text_.size() && text_[at_] != '>') tagCharacter();
        if (at_ == text_.size()) refuse("a tag is not closed");
        if (closing || text_[at_ - 1] == '/') --depth_;
        if (depth_ < 0) refuse("an element is closed that was not opened");
        ++at_;
    }

    void tagCharacter()
    {
        const char c = text_[at_];
        if (c == '<') refuse("\"<\" stands in a tag");
        if (c == '"' || c == '\'') {
            attributeValue(c);
        } else {
            ++at_;
        }
    }

    void attributeValue(char quote)
    {
        ++at_;
        while (at_ < text_.size() && text_[at_] != quote) {
            if (text_[at_] == '<') refuse("\"<\" stands in an attribute");
            if (text_[at_] == '&') {
                reference();
            } else {
                ++at_;
            }
        }
        if (at_ == text_.size()) refuse("an attribute is not closed");
        ++at_;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    int depth_ = 0;
};

}  // namespace

void checkMarkup(std::string_view text)
{
    Scanner(text).run();
}

}  // namespace service::xml
