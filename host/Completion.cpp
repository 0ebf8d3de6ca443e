#include "host/Completion.h"

#include "host/CommandLine.h"
#include "host/Page.h"

namespace host {

namespace {

Spot spotOf(const Commands& all, const std::string& path, const std::vector<Argument>& arguments)
{
    Spot spot{path, commandsUnder(all, path), {}, {}};
    for (const Argument& argument : arguments) (isOption(argument) ? spot.options : spot.placed).push_back(argument);
    return spot;
}

}  // namespace

std::vector<std::string> completionShells()
{
    return {"bash", "zsh", "fish", "powershell"};
}

std::string completionScript(const Commands& all, const std::string& shell)
{
    const std::vector<Spot> spots = spotsOf(all);
    if (shell == "bash") return bashCompletion(spots);
    if (shell == "zsh") return zshCompletion(spots);
    return shell == "fish" ? fishCompletion(spots) : powerShellCompletion(spots);
}

std::vector<Spot> spotsOf(const Commands& all)
{
    std::vector<Argument> common = commonArguments();
    common.push_back({"--help", "Print help and end", Kind::flag});
    common.push_back({"--version", "Print the version and end", Kind::flag});
    std::vector<Spot> spots{spotOf(all, "", common)};
    for (const Command& command : all) spots.push_back(spotOf(all, command.path, command.arguments));
    return spots;
}

std::vector<std::string> namesOf(const Argument& option)
{
    std::vector<std::string> names;
    for (std::size_t from = 0; from <= option.name.size();) {
        const std::size_t end = std::min(option.name.find(',', from), option.name.size());
        names.push_back(option.name.substr(from, end - from));
        from = end + 1;
    }
    return names;
}

std::string quotedWord(const std::string& text, const std::string& escaped)
{
    std::string quoted = "'";
    for (const char letter : text) {
        if (letter == '\'') quoted += escaped;
        else quoted += letter;
    }
    return quoted + "'";
}

}  // namespace host
