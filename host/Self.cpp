// What the program tells of itself: help, completion for shells, man pages.
#include <algorithm>

#include "host/Completion.h"
#include "host/Errors.h"
#include "host/Guide.h"
#include "host/Help.h"
#include "host/Man.h"
#include "host/Suggest.h"
#include "host/Topics.h"
#include "host/Words.h"

namespace host {

namespace {

[[noreturn]] void refuse(const std::string& topic, const std::vector<std::string>& known, const std::string& what)
{
    const std::string meant = didYouMean(topic, known);
    throw LocalProblem("'" + topic + "' is no " + what + (meant.empty() ? "; see" : meant + " See") + " pvwapi --help");
}

std::vector<std::string> wordsOf(const Values& values, const std::string& name)
{
    const auto found = values.find(name);
    return found != values.end() ? found->second : std::vector<std::string>();
}

std::string help(const Commands& all, const Values& values, const Look& look)
{
    const std::string topic = joined(wordsOf(values, "topic"), " ");
    if (topic.empty() || commandAt(all, topic) != nullptr) return helpText(pageOf(all, topic), look);
    std::vector<std::string> known;
    for (const Command& command : all) known.push_back(command.path);
    for (const Guide& guide : guides()) {
        known.push_back(guide.name);
        if (guide.name == topic) return helpText({topic, guide.summary, {}, {{guide.name, guide.entries}}}, look);
    }
    refuse(topic, known, "command or topic");
}

std::string completion(const Commands& all, const Values& values, const Look&)
{
    return completionScript(all, values.at("shell").back());
}

std::string man(const Commands& all, const Values& values, const Look&)
{
    const std::string topic = joined(wordsOf(values, "topic"), " ");
    std::vector<std::string> known;
    for (const Command* const command : commandsUnder(all, "")) known.push_back(command->path);
    if (values.contains("--list")) {
        std::string lines;
        for (const std::string& name : known) lines += name + '\n';
        return lines;
    }
    if (!topic.empty() && std::ranges::find(known, topic) == known.end()) refuse(topic, known, "topic");
    return manPage(all, topic);
}

Command telling(std::string path, std::string help, std::vector<Argument> arguments, decltype(Command::tell) tell)
{
    Command command{std::move(path), std::move(help), std::move(arguments), nullptr};
    command.tell = tell;
    return command;
}

}  // namespace

Commands selfCommands()
{
    return {
        telling("help", "Print the help of a command or of a topic",
                {{"topic", "Such as spaces, spaces create or credentials", Kind::list}}, help),
        telling("completion", "Print the script by which a shell completes these commands",
                {{"shell", "The shell", Kind::text, completionShells()}}, completion),
        telling("man", "Print the source of a man page",
                {{"--list", "Print the topics that have one of their own instead", Kind::flag},
                 {"topic", "Such as spaces; the program itself unless given", Kind::list}},
                man),
    };
}

}  // namespace host
