// The script for fish.
#include "host/Completion.h"
#include "host/Words.h"

namespace host {

namespace {

std::string quoted(const std::string& text)
{
    return quotedWord(text, R"(\')");
}

std::string pathList(const std::vector<Spot>& spots)
{
    std::string list;
    for (const Spot& spot : spots) {
        if (!spot.path.empty()) list += " " + quoted(spot.path);
    }
    return list;
}

/// Only the paths and the options with values are needed to find the command that the words make.
std::string walk(const std::vector<Spot>& spots)
{
    std::string options;
    for (const Spot& spot : spots) {
        for (const Argument& option : spot.options) {
            if (option.kind == Kind::flag) continue;
            for (const std::string& name : namesOf(option)) options += " " + quoted(spot.path + ":" + name);
        }
    }
    return R"(function __pvwapi_at --description 'Whether the words make this command and so many arguments'
    set -l at ''
    set -l placed 0
    set -l skip 0
    for word in (commandline -opc)[2..-1]
        if test $skip = 1
            set skip 0
        else if contains -- "$at:$word" $__pvwapi_values; or contains -- ":$word" $__pvwapi_values
            set skip 1
        else if string match -q -- '-*' $word
        else if test $placed = 0; and contains -- (string trim -- "$at $word") $__pvwapi_paths
            set at (string trim -- "$at $word")
        else
            set placed (math $placed + 1)
        end
    end
    test "$at" = "$argv[1]"; and begin
        test (count $argv) = 1; or test $placed = $argv[2]
    end
end
set -g __pvwapi_paths)" +
           pathList(spots) + "\nset -g __pvwapi_values" + options + "\n";
}

/// What stands behind an option, or at a place: words to choose from, a file, or anything.
std::string valueOf(const Argument& argument)
{
    if (argument.kind == Kind::flag) return {};
    if (argument.kind == Kind::file) return " -r -F";
    if (argument.choices.empty()) return " -x";
    return " -x -a " + quoted(joined(argument.choices, " "));
}

std::string condition(const std::string& path, const std::string& placed)
{
    return " -n " + quotedWord("__pvwapi_at \"" + path + "\"" + (placed.empty() ? "" : " " + placed), R"(\')");
}

std::string optionLines(const Spot& spot)
{
    std::string lines;
    for (const Argument& option : spot.options) {
        lines += "complete -c pvwapi";
        if (!spot.path.empty()) lines += condition(spot.path, "");
        for (const std::string& name : namesOf(option)) {
            lines += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        }
        lines += valueOf(option) + " -d " + quoted(option.help) + '\n';
    }
    return lines;
}

std::string wordLines(const Spot& spot)
{
    std::string lines;
    for (const Command* const command : spot.commands) {
        lines += "complete -c pvwapi" + condition(spot.path, "0") + " -a " +
                 command->path.substr(command->path.rfind(' ') + 1) + " -d " + quoted(command->help) + '\n';
    }
    for (std::size_t at = 0; at < spot.placed.size(); ++at) {
        const Argument& argument = spot.placed[at];
        if (argument.kind != Kind::file && argument.choices.empty()) continue;
        lines += "complete -c pvwapi" + condition(spot.path, std::to_string(at));
        lines += argument.kind == Kind::file ? " -F" : " -a " + quoted(joined(argument.choices, " "));
        lines += " -d " + quoted(argument.help) + '\n';
    }
    return lines;
}

}  // namespace

std::string fishCompletion(const std::vector<Spot>& spots)
{
    std::string script = "# Completes the commands of pvwapi in fish.\n" + walk(spots) + "complete -c pvwapi -f\n";
    for (const Spot& spot : spots) script += optionLines(spot) + wordLines(spot);
    return script;
}

}  // namespace host
