#include "service/commands/Fields.h"

#include <algorithm>

#include "service/base/Refusal.h"
#include "service/base/Text.h"

namespace service::commands {

namespace {

constexpr std::size_t kMaxNameCharacters = 1000;
constexpr std::size_t kMaxTexts = 100;

[[noreturn]] void refuse(const std::string& reason)
{
    throw Refusal(exceptionid::kBadRequest, reason);
}

// `path` leads from the outer element to `xml`, with a slash behind it.
void expectPathsBelow(const xml::Node& xml, const std::string& outer, const std::string& path,
                      std::initializer_list<std::string_view> paths)
{
    for (const xml::Node& child : xml.children) {
        const std::string childPath = path + child.name;
        const bool known = std::ranges::any_of(paths, [&](std::string_view each) {
            return each.starts_with(childPath) && (each.size() == childPath.size() || each[childPath.size()] == '/');
        });
        if (!known) refuse("unknown element " + inQuotes(child.name) + " in " + inQuotes(outer));
        expectPathsBelow(child, outer + '/' + child.name, childPath + '/', paths);
    }
}

}  // namespace

void expectElement(const xml::Node& xml, std::string_view name)
{
    if (xml.name != name) refuse("the xml must be a " + inQuotes(name) + " element, not " + inQuotes(xml.name));
}

void expectPaths(const xml::Node& xml, std::initializer_list<std::string_view> paths)
{
    expectPathsBelow(xml, xml.name, {}, paths);
}

std::string requiredID(const xml::Node& xml, std::string_view path)
{
    const std::string_view id = trimmed(xml.textAt(path));
    if (id.empty()) refuse(std::string(path) + " is missing");
    return std::string(id);
}

std::string requiredName(const xml::Node& xml, std::string_view path)
{
    std::string name = xml.textAt(path);
    checkName(name, path);
    return name;
}

void checkName(const std::string& name, std::string_view what)
{
    if (trimmed(name).empty()) refuse(std::string(what) + " is missing or empty");
    if (characterCount(name) > kMaxNameCharacters) {
        refuse(std::string(what) + " is longer than " + std::to_string(kMaxNameCharacters) + " characters");
    }
}

long long numberField(const xml::Node& xml, std::string_view path, long long least, long long most, long long absent)
{
    const xml::Node* const element = xml.at(path);
    if (element == nullptr) return absent;
    const std::optional<long long> number = wholeNumber(trimmed(element->text), least, most);
    if (!number) {
        refuse(std::string(path) + " must be a number from " + std::to_string(least) + " to " + std::to_string(most) +
               ", not " + inQuotes(element->text));
    }
    return *number;
}

bool truthField(const xml::Node& xml, std::string_view path)
{
    const xml::Node* const element = xml.at(path);
    if (element == nullptr) return false;
    const std::string_view text = trimmed(element->text);
    if (text != "true" && text != "false") {
        refuse(std::string(path) + " must be true or false, not " + inQuotes(element->text));
    }
    return text == "true";
}

std::vector<std::string> descriptionTexts(const xml::Node& workspace)
{
    std::vector<std::string> texts = xml::textsAt(workspace, "ext/KZN/description/text");
    if (texts.size() > kMaxTexts) refuse("the description has too many texts");
    return texts;
}

}  // namespace service::commands
