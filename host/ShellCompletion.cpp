// The scripts for bash and zsh, which differ in how they show what was found.
#include "host/Completion.h"
#include "host/Words.h"

namespace host {

namespace {

std::string quoted(const std::string& text)
{
    return quotedWord(text, R"('\'')");
}

/// The pattern of the place where the value of an option stands; a common option's is everywhere.
std::string placesOf(const Spot& spot, const Argument& option)
{
    std::vector<std::string> places;
    for (const std::string& name : namesOf(option)) {
        places.push_back(spot.path.empty() ? "*:" + name : quoted(spot.path + ":" + name));
    }
    return joined(places, " | ");
}

std::string pathPatterns(const std::vector<Spot>& spots)
{
    std::vector<std::string> paths;
    for (const Spot& spot : spots) {
        if (!spot.path.empty()) paths.push_back(quoted(spot.path));
    }
    return joined(paths, " | ");
}

std::string valuePatterns(const std::vector<Spot>& spots)
{
    std::vector<std::string> places;
    for (const Spot& spot : spots) {
        for (const Argument& option : spot.options) {
            if (option.kind != Kind::flag) places.push_back(placesOf(spot, option));
        }
    }
    return joined(places, " | ");
}

/// The walk through the words before the one that is completed: `at` is the command that they make, and `placed` how
/// many arguments stand behind it.
std::string walk(const std::vector<Spot>& spots, const std::string& words, const std::string& from,
                 const std::string& until)
{
    return R"(    local at= skip= word i placed=0
    for ((i = )" +
           from + "; i < " + until + R"(; ++i)); do
        word=${)" +
           words + R"([i]}
        [[ $word == = ]] && { skip=yes; continue; }
        [[ -n $skip ]] && { skip=; continue; }
        case "$at:$word" in
            )" +
           valuePatterns(spots) + R"() skip=yes; continue ;;
            *:-*) continue ;;
        esac
        [[ $placed == 0 ]] && case "${at:+$at }$word" in
            )" +
           pathPatterns(spots) + R"() at="${at:+$at }$word"; continue ;;
        esac
        placed=$((placed + 1))
    done
)";
}

using Shower = std::string (*)(const std::vector<std::string>& words, const std::vector<std::string>& helps);

/// What adds the words to those that are found.
std::string addWords(const std::vector<std::string>& words, const std::vector<std::string>&)
{
    return "found+=(" + joined(words, " ") + ")";
}

std::string addDescribed(const std::vector<std::string>& words, const std::vector<std::string>& helps)
{
    std::vector<std::string> described;
    for (std::size_t at = 0; at < words.size(); ++at) {
        const bool hasHelp = at < helps.size();
        described.push_back(quoted(hasHelp ? words[at] + ":" + helps[at] : words[at]));
    }
    return "found+=(" + joined(described, " ") + ")";
}

/// A case for each place that has a value of its own to complete.
std::string valueCases(const std::vector<Spot>& spots, Shower show, const std::string& files)
{
    std::string cases;
    for (const Spot& spot : spots) {
        for (const Argument& option : spot.options) {
            if (option.kind == Kind::flag) continue;
            const std::string what = option.kind == Kind::file ? files : show(option.choices, {});
            cases += "        " + placesOf(spot, option) + ") " + what + " ;;\n";
        }
    }
    return cases;
}

/// Words with what they are for.
struct Described {
    std::vector<std::string> words;
    std::vector<std::string> helps;
};

Described optionsOf(const Spot& spot)
{
    Described options;
    for (const Argument& option : spot.options) {
        for (const std::string& name : namesOf(option)) {
            options.words.push_back(name);
            options.helps.push_back(option.help);
        }
    }
    return options;
}

std::string optionCases(const std::vector<Spot>& spots, Shower show)
{
    std::string cases;
    for (const Spot& spot : spots) {
        const Described options = optionsOf(spot);
        if (options.words.empty()) continue;
        const std::string add = show(options.words, options.helps);
        if (spot.path.empty()) cases += "    " + add + "\n    case \"$at\" in\n";
        else cases += "        " + quoted(spot.path) + ") " + add + " ;;\n";
    }
    return cases + "    esac\n";
}

std::string placeCase(const Spot& spot, std::size_t place, const std::string& what)
{
    return "        " + quoted(spot.path + ":" + std::to_string(place)) + ") " + what + " ;;\n";
}

std::string commandCase(const Spot& spot, Shower show)
{
    Described commands;
    for (const Command* const command : spot.commands) {
        commands.words.push_back(command->path.substr(command->path.rfind(' ') + 1));
        commands.helps.push_back(command->help);
    }
    return commands.words.empty() ? std::string() : placeCase(spot, 0, show(commands.words, commands.helps));
}

std::string wordCases(const std::vector<Spot>& spots, Shower show, const std::string& files)
{
    std::string cases;
    for (const Spot& spot : spots) {
        cases += commandCase(spot, show);
        for (std::size_t at = 0; at < spot.placed.size(); ++at) {
            const Argument& argument = spot.placed[at];
            if (argument.kind == Kind::file) cases += placeCase(spot, at, files);
            else if (!argument.choices.empty()) cases += placeCase(spot, at, show(argument.choices, {}));
        }
    }
    return cases;
}

}  // namespace

std::string bashCompletion(const std::vector<Spot>& spots)
{
    const std::string files = "compopt -o filenames 2>/dev/null; COMPREPLY=($(compgen -f -- \"$cur\")); return";
    return "# Completes the commands of pvwapi in bash.\n_pvwapi()\n{\n" +
           walk(spots, "COMP_WORDS", "1", "COMP_CWORD") +
           R"(    local cur=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} found=()
    COMPREPLY=()
    # A value behind "=" stands in a word of its own, as the sign does.
    [[ $cur == = ]] && cur= || { [[ $before == = ]] && before=${COMP_WORDS[COMP_CWORD - 2]}; }
    case "$at:$before" in
)" + valueCases(spots, addWords, files) +
           R"(        *)
    if [[ $cur == -* ]]; then
)" + optionCases(spots, addWords) +
           R"(    else
    case "$at:$placed" in
)" + wordCases(spots, addWords, files) +
           R"(    esac
    fi ;;
    esac
    COMPREPLY=($(compgen -W "${found[*]}" -- "$cur"))
}
complete -F _pvwapi pvwapi
)";
}

std::string zshCompletion(const std::vector<Spot>& spots)
{
    const std::string files = "_files; return";
    return "#compdef pvwapi\n# Completes the commands of pvwapi in zsh.\n_pvwapi()\n{\n" +
           walk(spots, "words", "2", "CURRENT") +
           R"(    local -a found
    case "$at:${words[CURRENT - 1]}" in
)" + valueCases(spots, addDescribed, files) +
           R"(        *)
    if [[ ${words[CURRENT]} == -* ]]; then
)" + optionCases(spots, addDescribed) +
           R"(    else
    case "$at:$placed" in
)" + wordCases(spots, addDescribed, files) +
           R"(    esac
    fi ;;
    esac
    _describe pvwapi found
}
if [[ ${funcstack[1]} == _pvwapi ]]; then _pvwapi "$@"; else compdef _pvwapi pvwapi; fi
)";
}

}  // namespace host
