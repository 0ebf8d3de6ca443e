#include "host/Page.h"

#include <algorithm>

#include "host/CommandLine.h"
#include "host/Guide.h"
#include "host/Words.h"

namespace host {

namespace {

constexpr const char* kSummary = "Work with the workspaces of the service from the command line";

/// What stands for an option's value.
std::string valueOf(const Argument& argument)
{
    if (argument.kind == Kind::flag) return {};
    if (!argument.choices.empty()) return " " + joined(argument.choices, "|");
    if (argument.kind == Kind::number) return " <number>";
    if (argument.kind == Kind::seconds) return " <seconds>";
    return argument.kind == Kind::file ? " <file>" : " <text>";
}

bool leadsOn(const Command& command)
{
    return command.run == nullptr && command.tell == nullptr;
}

/// Choices of a placed argument stand in no term.
std::string helpOf(const Argument& argument)
{
    if (isOption(argument) || argument.choices.empty()) return argument.help;
    return argument.help + ": " + joined(argument.choices, ", ");
}

void addArguments(Page& page, const Command& command)
{
    Section placed{"Arguments", {}};
    Section options{"Options", {}};
    for (const Argument& argument : command.arguments) {
        Section& section = isOption(argument) ? options : placed;
        section.entries.push_back({termOf(argument), helpOf(argument)});
    }
    for (Section& section : {std::ref(placed), std::ref(options)}) {
        if (!section.entries.empty()) page.sections.push_back(std::move(section));
    }
    if (command.columns == nullptr) return;
    page.sections.push_back({"Columns", {{"", joined(command.columns(), ", ")}}});
}

void addCommands(Page& page, const Commands& all)
{
    Section section{"Commands", {}};
    for (const Command* const command : commandsUnder(all, page.name)) {
        section.entries.push_back({lastWord(*command), command->help});
    }
    if (!section.entries.empty()) page.sections.push_back(std::move(section));
}

void addUsages(Page& page, const Commands& all)
{
    const std::string program = page.name.empty() ? "pvwapi" : "pvwapi " + page.name;
    const Command* const command = commandAt(all, page.name);
    if (command != nullptr && !leadsOn(*command)) page.usages.push_back(usageOf(*command));
    if (!commandsUnder(all, page.name).empty()) page.usages.push_back(program + " <command> [options]");
}

}  // namespace

const Command* commandAt(const Commands& all, const std::string& path)
{
    const auto found = std::ranges::find(all, path, &Command::path);
    return found != all.end() ? &*found : nullptr;
}

std::vector<const Command*> commandsUnder(const Commands& all, const std::string& path)
{
    const std::string begin = path.empty() ? "" : path + " ";
    std::vector<const Command*> found;
    for (const Command& command : all) {
        const bool under = command.path.starts_with(begin) && command.path.size() > begin.size();
        if (under && command.path.find(' ', begin.size()) == std::string::npos) found.push_back(&command);
    }
    return found;
}

std::string lastWord(const Command& command)
{
    return command.path.substr(command.path.rfind(' ') + 1);
}

bool isOption(const Argument& argument)
{
    return argument.name.starts_with('-');
}

std::string termOf(const Argument& argument)
{
    if (isOption(argument)) return argument.name + valueOf(argument);
    std::string name = "<" + argument.name + ">";
    if (argument.kind != Kind::list) return name;
    return argument.needsOne ? name + "..." : "[" + name + "...]";
}

std::string usageOf(const Command& command)
{
    std::string usage = "pvwapi " + command.path + " [options]";
    for (const Argument& argument : command.arguments) {
        if (!isOption(argument)) usage += " " + termOf(argument);
    }
    return usage;
}

Section commonOptions()
{
    Section section{"Common options", {}};
    for (const Argument& argument : commonArguments()) section.entries.push_back({termOf(argument), argument.help});
    section.entries.push_back({"-h, --help", "Print the help of the command and end"});
    return section;
}

Page pageOf(const Commands& all, const std::string& path)
{
    Page page{path, kSummary, {}, {}};
    const Command* const command = commandAt(all, path);
    if (command != nullptr) page.summary = command->help;
    addUsages(page, all);
    if (command != nullptr) addArguments(page, *command);
    addCommands(page, all);
    page.sections.push_back(commonOptions());
    if (!path.empty()) return page;

    page.sections.back().entries.push_back({"--version", "Print the version and end"});
    Section topics{"Further help, with pvwapi help <topic>", {}};
    for (const Guide& guide : guides()) topics.entries.push_back({guide.name, guide.summary});
    page.sections.push_back(std::move(topics));
    return page;
}

Page wholePageOf(const Commands& all, const std::string& topic)
{
    Page whole = pageOf(all, topic);
    std::erase_if(whole.sections, [](const Section& section) { return section.heading == "Common options"; });
    for (const Command* const command : commandsUnder(all, topic)) {
        Page page{command->path, command->help, {}, {}};
        addArguments(page, *command);
        Section section{usageOf(*command), {{"", page.summary + "."}}};
        whole.usages.push_back(section.heading);
        for (const Section& part : page.sections) {
            for (const Entry& entry : part.entries) {
                const bool isColumns = entry.term.empty();
                section.entries.push_back(isColumns ? Entry{"", part.heading + ": " + entry.text} : entry);
            }
        }
        whole.sections.push_back(std::move(section));
    }
    whole.sections.push_back(commonOptions());
    return whole;
}

}  // namespace host
