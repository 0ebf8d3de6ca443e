#include "tests/support/WireFile.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>

namespace {

struct Section {
    std::string name;
    std::string argument;
    WireLines lines;
    std::size_t at = 0;
};

[[noreturn]] void fail(std::size_t line, const std::string& what)
{
    throw WireFileError("line " + std::to_string(line) + ": " + what);
}

std::string_view withoutIndent(std::string_view line)
{
    const auto first = line.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view() : line.substr(first);
}

int number(std::string_view text, int base, std::size_t line)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size()) fail(line, "not a number: " + std::string(text));
    return value;
}

std::string unescape(std::string_view text, std::size_t line)
{
    static const std::map<char, char> kEscapes = {{'s', ' '}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'\\', '\\'}};
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            plain += text[i];
            continue;
        }
        const char kind = ++i < text.size() ? text[i] : '\0';
        if (const auto known = kEscapes.find(kind); known != kEscapes.end()) {
            plain += known->second;
        } else if (kind == 'x' && i + 2 < text.size()) {
            plain += static_cast<char>(number(text.substr(i + 1, 2), 16, line));
            i += 2;
        } else {
            fail(line, "unknown escape");
        }
    }
    return plain;
}

Section openSection(std::string_view line, std::size_t at)
{
    const auto close = line.find(']');
    if (close == std::string_view::npos) fail(at, "a section's name ends in ]");
    return {std::string(line.substr(1, close - 1)), std::string(withoutIndent(line.substr(close + 1))), {}, at};
}

/// The title first, as a section without a name.
std::vector<Section> splitSections(std::string_view text)
{
    std::vector<Section> sections(1);
    for (std::size_t at = 1; !text.empty(); ++at) {
        const auto end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);

        if (line.starts_with('[')) {
            sections.push_back(openSection(line, at));
            continue;
        }
        const std::string_view content = withoutIndent(line);
        if (content.empty() || (sections.size() > 1 && content.starts_with('#'))) continue;
        sections.back().lines.push_back(sections.size() > 1 ? unescape(content, at) : std::string(content));
    }
    return sections;
}

std::string joined(const Section& section)
{
    std::string text;
    for (const std::string& line : section.lines) text += line;
    return text;
}

WireFields fields(const Section& section, std::string_view separator)
{
    WireFields all;
    for (const std::string& line : section.lines) {
        const auto at = line.find(separator);
        if (at == std::string::npos) fail(section.at, "no \"" + std::string(separator) + "\" in: " + line);
        all.push_back({line.substr(0, at), line.substr(at + separator.size())});
        // "name =" alone is an empty value, "name = " would need a blank that nobody sees
        all.back().name.erase(all.back().name.find_last_not_of(' ') + 1);
        if (all.back().value.starts_with(' ')) all.back().value.erase(0, 1);
    }
    return all;
}

WireRequest& request(WireCase& wire)
{
    if (!wire.request) wire.request.emplace();
    return *wire.request;
}

WireReply readReply(const Section& section)
{
    WireReply reply;
    reply.body = joined(section);
    if (section.argument.empty()) return reply;
    reply.connection = section.argument != "no connection";
    if (!reply.connection) return reply;

    const auto blank = std::min(section.argument.find(' '), section.argument.size());
    reply.status = number(section.argument.substr(0, blank), 10, section.at);
    if (blank < section.argument.size()) reply.contentType = section.argument.substr(blank + 1);
    return reply;
}

void readMessage(WireCase& wire, const Section& section)
{
    wire.messageUnchanged = section.argument == "unchanged";
    for (const WireField& field : fields(section, "=")) {
        if (field.name == "reason") wire.message.reason = field.value;
        else if (field.name == "exceptionID") wire.message.exceptionID = field.value;
        else if (field.name == "response") wire.message.response = field.value;
        else fail(section.at, "no such text of a last message: " + field.name);
    }
}

using SectionReader = std::function<void(WireCase&, const Section&)>;

const std::map<std::string, SectionReader, std::less<>>& sectionReaders()
{
    static const std::map<std::string, SectionReader, std::less<>> kReaders = {
        {"call",
         [](WireCase& wire, const Section& section) {
             wire.operation = section.argument;
             wire.arguments = fields(section, "=");
         }},
        {"body", [](WireCase& wire, const Section& section) { request(wire).body = joined(section); }},
        {"request",
         [](WireCase& wire, const Section& section) {
             request(wire).method = section.argument;
             request(wire).target = joined(section);
         }},
        {"headers", [](WireCase& wire, const Section& section) { request(wire).headers = fields(section, ":"); }},
        {"nothing sent", [](WireCase&, const Section&) {}},
        {"reply", [](WireCase& wire, const Section& section) { wire.reply = readReply(section); }},
        {"result",
         [](WireCase& wire, const Section& section) { wire.result = number(section.argument, 10, section.at); }},
        {"outputs", [](WireCase& wire, const Section& section) { wire.outputs = section.lines; }},
        {"client", [](WireCase& wire, const Section& section) { wire.client = fields(section, "="); }},
        {"last message", readMessage},
        {"trace", [](WireCase& wire, const Section& section) { wire.trace = section.lines; }},
        {"log", [](WireCase& wire, const Section& section) { wire.log = section.lines; }},
    };
    return kReaders;
}

/// What a file must say for its case to mean one thing.
void checkWhole(const WireCase& wire, const std::vector<Section>& sections)
{
    const auto count = [&](std::string_view name) {
        return std::ranges::count(sections, name,
                                  [](const Section& section) { return std::string_view(section.name); });
    };
    for (const auto& [name, reader] : sectionReaders()) {
        if (count(name) > 1) fail(1, "[" + name + "] stands twice");
    }
    if (wire.title.empty()) fail(1, "no title");
    if (count("call") != 1 || count("result") != 1) fail(1, "[call] and [result] stand once");
    if (wire.request.has_value() != wire.reply.has_value()) fail(1, "a request has a reply, a reply its request");
    if (wire.request.has_value() == (count("nothing sent") == 1)) fail(1, "either [body] or [nothing sent]");
}

}  // namespace

WireCase parseWireCase(std::string_view text)
{
    const std::vector<Section> sections = splitSections(text);
    WireCase wire;
    if (!sections.front().lines.empty()) wire.title = sections.front().lines.front();
    for (auto section = sections.begin() + 1; section != sections.end(); ++section) {
        const auto reader = sectionReaders().find(section->name);
        if (reader == sectionReaders().end()) fail(section->at, "no such section: " + section->name);
        reader->second(wire, *section);
    }
    checkWhole(wire, sections);
    return wire;
}

WireCase readWireCase(const std::filesystem::path& folder, const std::string& name)
{
    std::ifstream file(folder / (name + ".txt"), std::ios::binary);
    if (!file) throw WireFileError("cannot be opened");
    return parseWireCase(std::string(std::istreambuf_iterator<char>(file), {}));
}

std::vector<std::string> wireCaseNames(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != ".txt") continue;
        names.push_back(std::filesystem::relative(entry.path(), folder).replace_extension().generic_string());
    }
    std::ranges::sort(names);
    return names;
}

std::string withPlaceholder(std::string text, const std::string& name, const std::string& value)
{
    const std::string placeholder = "{" + name + "}";
    for (auto at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder, at + value.size())) {
        text.replace(at, placeholder.size(), value);
    }
    return text;
}

std::string wireTestName(std::string name)
{
    std::ranges::replace_if(
        name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}
