#include "log/Outcome.h"

#include <algorithm>
#include <optional>

#include "log/Xml.h"

namespace logreader {

namespace {

/// Collects the texts of the response element. A text counts once its element is closed.
class ResponseTexts {
public:
    /// Behind the tree's own step.
    void step(const XmlToken& token, const XmlTree& tree)
    {
        const auto& open = tree.open();
        if (open.size() < 2 || open.size() > 3 || open[0] != "kznapi" || open[1] != "response") return;
        if (open.size() == 3) stepInside(token);
        else stepOutside(token);
    }

    std::optional<std::string> result;
    std::string reason;
    std::string exceptionID;

private:
    void stepInside(const XmlToken& token)
    {
        constexpr std::size_t kOpening = std::string_view("<![CDATA[").size();
        constexpr std::size_t kClosing = std::string_view("]]>").size();
        if (token.kind == XmlKind::open) text_.clear();
        if (token.kind == XmlKind::text) text_.append(withoutReferences(token.raw));
        if (token.kind == XmlKind::cdata) {
            text_.append(token.raw.substr(kOpening, token.raw.size() - kOpening - kClosing));
        }
    }

    void stepOutside(const XmlToken& token)
    {
        if (token.kind == XmlKind::empty) text_.clear();
        if (token.kind == XmlKind::close || token.kind == XmlKind::empty) keep(token.name);
    }

    void keep(std::string_view name)
    {
        if (name == "result") result = text_;
        if (name == "reason") reason = text_;
        if (name == "exceptionID") exceptionID = text_;
    }

    std::string text_;
};

bool isSuccess(std::string_view result)
{
    return std::ranges::equal(result, std::string_view("SUCCESS"), [](char is, char large) {
        return is == large || (is >= 'a' && is <= 'z' && is - 'a' + 'A' == large);
    });
}

}  // namespace

Outcome outcomeOf(std::string_view reply)
{
    if (reply.empty()) return {};
    XmlScanner scanner(reply);
    XmlTree tree;
    ResponseTexts texts;
    bool isSound = true;
    for (bool goesOn = true; goesOn;) {
        const XmlToken token = scanner.next();
        isSound = tree.step(token);
        if (isSound) texts.step(token, tree);
        goesOn = isSound && token.kind != XmlKind::end;
    }
    Outcome outcome{Outcome::Kind::failure, std::move(texts.reason), std::move(texts.exceptionID)};
    if (isSuccess(texts.result.value_or(""))) outcome.kind = Outcome::Kind::success;
    else if (!texts.result) outcome.kind = isSound ? Outcome::Kind::noResult : Outcome::Kind::notXml;
    return outcome;
}

std::string_view nameOf(Outcome::Kind kind)
{
    switch (kind) {
    case Outcome::Kind::success: return "SUCCESS";
    case Outcome::Kind::failure: return "FAILURE";
    case Outcome::Kind::noResult: return "no result";
    case Outcome::Kind::notXml: return "not XML";
    case Outcome::Kind::noReply: return "no reply";
    }
    return {};
}

}  // namespace logreader
