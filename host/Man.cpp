#include "host/Man.h"

#include <algorithm>

#include "host/Guide.h"
#include "host/Page.h"
#include "pvutil/Platform.h"

namespace host {

namespace {

/// As the formatter is to show it: no letter stands for a command, and a hyphen can be copied into a shell.
std::string plain(const std::string& text)
{
    std::string result;
    if (text.starts_with('.') || text.starts_with('\'')) result = "\\&";
    for (const char letter : text) {
        if (letter == '\\') result += "\\e";
        else if (letter == '-') result += "\\-";
        else result += letter;
    }
    return result;
}

std::string capitals(std::string text)
{
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return text;
}

std::string quoted(const std::string& text)
{
    return "\"" + plain(text) + "\"";
}

std::string entries(const std::vector<Entry>& all)
{
    std::string text;
    for (const Entry& entry : all) {
        if (entry.term.empty()) text += ".PP\n";
        else text += ".TP\n\\fB" + plain(entry.term) + "\\fR\n";
        text += plain(entry.text) + '\n';
    }
    return text;
}

/// A command of a topic is a part of the commands; anything else stands for itself.
std::string section(const Section& part)
{
    const bool isCommand = part.heading.starts_with("pvwapi ");
    const std::string name = isCommand ? part.heading : capitals(part.heading.substr(0, part.heading.find(',')));
    return (isCommand ? ".SS " : ".SH ") + quoted(name) + '\n' + entries(part.entries);
}

std::string synopsis(const Page& page)
{
    std::string text = ".SH SYNOPSIS\n.nf\n";
    for (const std::string& usage : page.usages) text += "\\fB" + plain(usage) + "\\fR\n";
    return text + ".fi\n";
}

std::string guideSections()
{
    std::string text;
    for (const Guide& guide : guides()) {
        text += ".SH " + capitals(guide.name) + '\n' + plain(guide.summary) + ".\n" + entries(guide.entries);
    }
    return text;
}

std::string others(const Commands& all, const std::string& topic)
{
    std::string text = ".SH SEE ALSO\n";
    if (!topic.empty()) return text + ".BR pvwapi (1)\n";
    const std::vector<const Command*> topics = commandsUnder(all, "");
    for (const Command* const command : topics) {
        text += ".BR " + plain("pvwapi-" + command->path) + (command == topics.back() ? " (1)\n" : " (1),\n");
    }
    return text;
}

}  // namespace

std::string manPage(const Commands& all, const std::string& topic)
{
    const Page page = topic.empty() ? pageOf(all, "") : wholePageOf(all, topic);
    const std::string name = topic.empty() ? "pvwapi" : "pvwapi-" + topic;
    std::string text = ".TH " + quoted(capitals(name)) + " 1 \"\" \"pvwapi " PVWAPI_VERSION "\" \"User Commands\"\n";
    text += ".SH NAME\n" + plain(name) + " \\- " + plain(page.summary) + '\n';
    text += synopsis(page);
    for (const Section& part : page.sections) text += section(part);
    if (topic.empty()) text += guideSections();
    return text + others(all, topic);
}

}  // namespace host
