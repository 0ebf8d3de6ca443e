// The script for PowerShell.
#include "host/Completion.h"

namespace host {

namespace {

std::string quoted(const std::string& text)
{
    return quotedWord(text, "''");
}

std::string list(const std::vector<std::string>& words)
{
    std::string all;
    for (const std::string& word : words) all += (all.empty() ? "" : ", ") + quoted(word);
    return "@(" + all + ")";
}

/// The lines of one table: a path, or a path with an option or a place behind a colon, and the words that can follow.
struct Tables {
    std::string words;
    std::string options;
    std::string values;
    std::string placed;
};

void addOptions(Tables& tables, const Spot& spot)
{
    std::vector<std::string> names;
    for (const Argument& option : spot.options) {
        for (const std::string& name : namesOf(option)) {
            names.push_back(name);
            if (option.kind == Kind::flag) continue;
            tables.values += "        " + quoted(spot.path + ":" + name) + " = " + list(option.choices) + "\n";
        }
    }
    if (!names.empty()) tables.options += "        " + quoted(spot.path) + " = " + list(names) + "\n";
}

void addWords(Tables& tables, const Spot& spot)
{
    std::vector<std::string> words;
    for (const Command* const command : spot.commands) {
        words.push_back(command->path.substr(command->path.rfind(' ') + 1));
    }
    tables.words += "        " + quoted(spot.path) + " = " + list(words) + "\n";
    for (std::size_t at = 0; at < spot.placed.size(); ++at) {
        if (spot.placed[at].choices.empty()) continue;
        const std::string place = spot.path + ":" + std::to_string(at);
        tables.placed += "        " + quoted(place) + " = " + list(spot.placed[at].choices) + "\n";
    }
}

constexpr const char* kWalk = R"(    $at = ''
    $placed = 0
    $value = $null
    $before = @($commandAst.CommandElements | Select-Object -Skip 1 | ForEach-Object { $_.ToString() })
    if ($wordToComplete -ne '' -and $before.Count -gt 0) { $before = @($before | Select-Object -SkipLast 1) }
    foreach ($word in $before) {
        if ($null -ne $value) { $value = $null; continue }
        if ($word.StartsWith('-')) {
            foreach ($place in @("${at}:$word", ":$word")) {
                if ($values.ContainsKey($place)) { $value = $place; break }
            }
            continue
        }
        $next = "$at $word".Trim()
        if ($placed -eq 0 -and $words.ContainsKey($next)) { $at = $next } else { $placed++ }
    }
    $found = @()
    if ($null -ne $value) { $found = $values[$value] }
    elseif ($wordToComplete.StartsWith('-')) { $found = @($options['']) + @($options[$at]) }
    elseif ($placed -eq 0 -and $words[$at].Count -gt 0) { $found = $words[$at] }
    else { $found = $places["${at}:$placed"] }
    $found | Where-Object { $_ -and $_.StartsWith($wordToComplete) } | Select-Object -Unique | ForEach-Object {
        [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_)
    }
}
)";

}  // namespace

std::string powerShellCompletion(const std::vector<Spot>& spots)
{
    Tables tables;
    for (const Spot& spot : spots) {
        addOptions(tables, spot);
        addWords(tables, spot);
    }
    return "# Completes the commands of pvwapi in PowerShell.\n"
           "Register-ArgumentCompleter -Native -CommandName pvwapi, pvwapi.exe -ScriptBlock {\n"
           "    param($wordToComplete, $commandAst, $cursorPosition)\n"
           "    $words = @{\n" +
           tables.words + "    }\n    $options = @{\n" + tables.options + "    }\n    $values = @{\n" + tables.values +
           "    }\n    $places = @{\n" + tables.placed + "    }\n" + kWalk;
}

}  // namespace host
