#include "service/tape/Secrets.h"

#include <algorithm>
#include <string>
#include <utility>

#include "log/Form.h"
#include "log/Xml.h"
#include "service/base/Text.h"
#include "service/tape/Headers.h"
#include "service/tape/Template.h"

namespace service::tape {

namespace {

constexpr int kDeepestLayer = 2;

bool holds(std::string_view text, std::string_view part)
{
    return text.find(part) != std::string_view::npos;
}

char firstOf(std::string_view text)
{
    const std::size_t at = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    return at == std::string_view::npos ? '\0' : text[at];
}

// The name of a tag, behind its "<" or "</" and without a prefix.
std::string_view localNameOf(std::string_view tag)
{
    tag.remove_prefix(tag.starts_with("</") ? 2 : 1);
    const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/<>"));
    return name.substr(name.rfind(':') + 1);
}

// Where a tag ends; nowhere where it is none. What begins like a secret's ends somewhere.
std::size_t endOfTag(std::string_view text)
{
    const std::size_t end = logreader::tagEnd(text);
    if (end != std::string_view::npos || !logreader::isSecretName(localNameOf(text.substr(0, 64)))) return end;
    return text.find('>');
}

// A text without markup in an element whose content is secret; comments and sections may part it.
struct SecretRun {
    std::vector<std::string_view> pieces;
    std::string_view first;  // with the section that it stands in
    std::string_view last;
    std::string value;

    std::string_view spelled() const
    {
        if (pieces.size() == 1) return pieces.front();
        return {first.data(), static_cast<std::size_t>(last.data() + last.size() - first.data())};
    }
};

// Goes over a text from its beginning to its end, and over what is escaped in it once more, unescaped.
class SecretSearch {
public:
    SecretSearch(std::vector<Found>& found, int layer) : found_(found), layer_(layer) {}

    void run(std::string_view text)
    {
        const std::size_t before = found_.size();
        const char first = firstOf(text);
        std::vector<std::string_view> parts{text};
        // In JSON a "<" is a sign like any other.
        if (first == '{' || first == '[') parts = takeMembers(text, Quoting::text, found_);
        for (const std::string_view part : parts) takeMarkup(part);
        if (layer_ > 0) addSpellings(before);
    }

    void takeMarkup(std::string_view text)
    {
        while (!text.empty()) {
            const std::size_t open = markupIn(text);
            takeText(text.substr(0, open));
            text.remove_prefix(open);
            if (!text.empty()) text.remove_prefix(takeOne(text));
        }
        takeRun();
        // An element without an end: what stands in it is all of the rest, and no longer the secret.
        if (depth_ > 0 && !pending_.empty()) pending_.resize(1);
        commit();
    }

    void fieldsAreTakenElsewhere() { fieldsToo_ = false; }

private:
    static std::size_t markupIn(std::string_view text)
    {
        std::size_t at = text.find('<');
        while (at != std::string_view::npos && !isMarkup(text.substr(at))) at = text.find('<', at + 1);
        return std::min(at, text.size());
    }

    static bool isMarkup(std::string_view text)
    {
        if (text.starts_with("<!--") || text.starts_with("<![CDATA[")) return true;
        return text.size() > 1 && !holds(" \t\r\n<>=\"'0123456789", text.substr(1, 1)) &&
               endOfTag(text) != std::string_view::npos;
    }

    // Returns how long it is.
    std::size_t takeOne(std::string_view text)
    {
        constexpr std::string_view kComment = "<!--";
        constexpr std::string_view kSection = "<![CDATA[";
        if (text.starts_with(kComment)) return takeSection(text, kComment.size(), "-->", false);
        if (text.starts_with(kSection)) return takeSection(text, kSection.size(), "]]>", true);
        const std::size_t end = endOfTag(text);
        takeTag(text.substr(0, end));
        return end + 1;
    }

    std::size_t takeSection(std::string_view text, std::size_t opening, std::string_view closing, bool isText)
    {
        const std::size_t end = std::min(text.find(closing, opening), text.size());
        const std::string_view inner = text.substr(opening, end - opening);
        const std::size_t length = std::min(end + closing.size(), text.size());
        if (!isSecretHere()) again(inner);
        else if (isText) takePiece(inner, text.substr(0, length), std::string(inner));
        return length;
    }

    void takeText(std::string_view text)
    {
        if (isSecretHere()) return takePiece(trimmed(text), trimmed(text), logreader::withoutReferences(text));
        if (!fieldsToo_) return;
        for (const std::string_view part : takeMembers(text, Quoting::text, found_)) takeEscaped(part);
    }

    bool isSecretHere() const { return depth_ > 0 || isValueNext_; }

    void takePiece(std::string_view inner, std::string_view whole, const std::string& value)
    {
        if (trimmed(inner).empty()) return;
        if (run_.pieces.empty()) run_.first = whole;
        run_.last = whole;
        run_.pieces.push_back(inner);
        run_.value += value;
    }

    void takeRun()
    {
        const SecretRun run = std::exchange(run_, {});
        isValueNext_ = false;
        if (run.pieces.empty()) return;
        pending_.push_back({name_, std::string(run.spelled()), std::string(trimmed(run.value))});
        // Nobody knows how the signs between them are spelled where all of it is escaped.
        if (run.pieces.size() == 1 || layer_ == 0) return;
        for (const std::string_view piece : run.pieces)
            pending_.push_back({name_, std::string(piece), std::string(piece)});
    }

    void takeTag(std::string_view tag)
    {
        takeRun();
        if (tag.starts_with("</")) return takeEnd(tag);
        const std::string_view name = localNameOf(tag);
        const bool isSecret = logreader::isSecretName(name);
        if (isSecret && depth_ == 0) name_ = name;
        const bool isNamed = !isSecret && isNamedSo(tag);
        if (isSecret || isNamed || depth_ > 0) takeValues(tag);
        for (const std::string_view part : takeMembers(tag, Quoting::tag, found_)) takeEscaped(part);
        if (!tag.ends_with('/')) enter(isSecret, isNamed && !isField(name));
        if (depth_ == 0) commit();
    }

    void enter(bool isSecret, bool isNamed)
    {
        if (isSecret) ++depth_;
        isValueNext_ = isNamed;
    }

    void takeEnd(std::string_view tag)
    {
        if (depth_ > 0 && logreader::isSecretName(localNameOf(tag))) --depth_;
        if (depth_ == 0) commit();
    }

    // Of a page: it has a value, and no content.
    static bool isField(std::string_view name) { return isSameName(name, "input") || isSameName(name, "meta"); }

    // As in <input name="token" value="..."> and <field name="token">...</field>.
    bool isNamedSo(std::string_view tag)
    {
        if (depth_ > 0) return false;
        std::string_view value = attributeOf(tag, "name");
        if (!logreader::isSecretName(value)) value = attributeOf(tag, "key");
        if (!logreader::isSecretName(value)) return false;
        name_ = value;
        return true;
    }

    void takeValues(std::string_view tag)
    {
        for (const std::string_view attribute : {"value", "content"}) {
            const std::string_view raw = attributeOf(tag, attribute);
            if (!raw.empty()) pending_.push_back({name_, std::string(raw), logreader::withoutReferences(raw)});
        }
    }

    void commit()
    {
        found_.insert(found_.end(), pending_.begin(), pending_.end());
        pending_.clear();
    }

    // Markup, members and addresses that are spelled as the text of something else.
    void takeEscaped(std::string_view text)
    {
        if (layer_ == kDeepestLayer) return;
        if (holds(text, "&lt;") || holds(text, "&quot;") || holds(text, "&apos;") || holds(text, "&#")) {
            again(logreader::withoutReferences(text));
        }
        // A "<", a "=" or a ":" is in all of them.
        if (holds(text, "%3")) again(logreader::percentDecoded(text));
        if (holds(text, "\\\"") || holds(text, "\\u00")) again(withoutBackslashes(text));
    }

    void again(std::string_view text)
    {
        if (layer_ < kDeepestLayer) SecretSearch(found_, layer_ + 1).run(text);
    }

    // What was unescaped stands there in another spelling.
    void addSpellings(std::size_t from)
    {
        for (std::size_t i = from, end = found_.size(); i < end; ++i) {
            const Found one = found_[i];
            for (std::string& other : spellings(one.spelled)) {
                if (other != one.spelled) found_.push_back({one.name, std::move(other), one.value});
            }
        }
    }

    std::vector<Found>& found_;
    int layer_;
    bool fieldsToo_ = true;
    int depth_ = 0;             // how many open elements have a secret's name
    bool isValueNext_ = false;  // behind a tag that is named like a secret by an attribute
    std::string name_;          // of the outermost of them
    SecretRun run_;
    std::vector<Found> pending_;
};

void takeField(std::vector<Found>& found, std::string_view field)
{
    const std::size_t equals = std::min(field.find('='), field.size());
    const std::string name = logreader::percentDecoded(field.substr(0, equals));
    const std::string_view raw = field.substr(std::min(equals + 1, field.size()));
    std::string value = logreader::percentDecoded(raw);
    if (logreader::isSecretName(name)) {
        if (!value.empty()) found.push_back({name, std::string(raw), std::move(value)});
    } else if (!holds(field, "<")) {
        SecretSearch(found, 1).run(equals == field.size() ? name : value);
    }
}

// An "&" in an element that was not encoded parts fields like any other.
void takeForm(std::vector<Found>& found, std::string_view form)
{
    for (const std::string_view field : split(form, '&')) takeField(found, field);
    if (!holds(form, "<")) return;
    SecretSearch elements(found, 0);
    elements.fieldsAreTakenElsewhere();
    elements.takeMarkup(form);
}

bool isBinary(std::string_view text)
{
    constexpr std::size_t kEnough = 512;
    return text.substr(0, kEnough).find('\0') != std::string_view::npos;
}

// One part of a form, from its name on. Returns how long it is.
std::size_t takePart(std::vector<Found>& found, std::string_view text)
{
    constexpr std::string_view kType = "content-type:";
    const std::size_t start = text.find("\r\n\r\n");
    if (start == std::string_view::npos) return text.size();
    const std::size_t end = std::min(text.find("\r\n--", start + 4), text.size());
    const std::string_view raw = text.substr(start + 4, end - std::min(start + 4, end));
    const std::string_view name = text.substr(0, text.find('"'));
    const std::string head = lower(text.substr(0, start));
    const std::size_t type = head.find(kType);
    const bool isFile = holds(head, "filename=");
    if (logreader::isSecretName(name)) {
        if (!raw.empty()) found.push_back({std::string(name), std::string(raw), std::string(raw)});
    } else if (!isFile || !(isBinary(raw) ||
                            (type != std::string::npos && isPicture(trimmed(head.substr(type + kType.size())), raw)))) {
        SecretSearch(found, 0).run(raw);
    }
    return end;
}

void takeParts(std::vector<Found>& found, std::string_view text)
{
    constexpr std::string_view kName = "; name=\"";
    for (std::size_t at = text.find(kName); at != std::string_view::npos; at = text.find(kName, at)) {
        at += kName.size();
        at += takePart(found, text.substr(at));
    }
}

}  // namespace

std::vector<Found> secretsIn(std::string_view text)
{
    std::vector<Found> found;
    SecretSearch(found, 0).run(text);
    return found;
}

std::vector<Found> secretsOfAddress(std::string_view address)
{
    const std::size_t path = std::min(address.find_first_of("?#"), address.size());
    std::vector<Found> found = secretsIn(address.substr(0, path));
    if (path == address.size()) return found;
    for (const std::string_view form : split(address.substr(path + 1), '#')) takeForm(found, form);
    return found;
}

std::vector<Found> secretsOfBody(std::string_view contentType, std::string_view body)
{
    std::vector<Found> found;
    const char first = firstOf(body);
    if (isMultipart(contentType)) takeParts(found, body);
    else if (isPicture(contentType, body)) return found;
    else if (first == '<' || first == '{' || first == '[') return secretsIn(body);
    else takeForm(found, body);
    return found;
}

std::vector<Found> secretsOfHeader(std::string_view name, std::string_view value)
{
    const std::string plain = lower(name);
    const bool isSecret =
        logreader::isSecretName(plain) || plain.ends_with("authorization") || plain.ends_with("cookie");
    if (isSecret) return {{plain, std::string(value), std::string(value)}};
    return secretsOfAddress(value);
}

bool isPicture(std::string_view contentType, std::string_view body)
{
    const std::string type = lower(contentType);
    const char first = firstOf(body);
    // One that is drawn in XML, and a failure that is called a picture, are texts.
    if (first == '<' || first == '{') return false;
    return type.starts_with("image/") || type.starts_with("audio/") || type.starts_with("video/");
}

}  // namespace service::tape
