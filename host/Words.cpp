#include "host/Words.h"

#include <algorithm>

namespace host {

namespace {

// No word of a command line can hold it.
constexpr char kShield = '\0';

bool takesNext(const std::string& word, const std::vector<Argument>& arguments)
{
    return std::ranges::any_of(arguments, [&](const Argument& argument) {
        return argument.kind != Kind::flag && argument.name.starts_with('-') && argument.name == word;
    });
}

}  // namespace

std::string joined(const std::vector<std::string>& words, const std::string& separator)
{
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : separator) + word;
    return text;
}

std::vector<std::string> shielded(const std::vector<std::string>& words, const std::vector<Argument>& arguments)
{
    std::vector<std::string> result;
    bool isPlaced = false;
    bool isValue = false;
    for (const std::string& word : words) {
        const bool isMark = !isPlaced && !isValue && word == "--";
        if (!isMark && !isValue && (isPlaced || word.starts_with('['))) result.push_back(kShield + word);
        else if (!isMark) result.push_back(word);
        isValue = !isPlaced && !isValue && takesNext(word, arguments);
        isPlaced = isPlaced || isMark;
    }
    return result;
}

std::string bare(const std::string& word)
{
    return word.starts_with(kShield) ? word.substr(1) : word;
}

}  // namespace host
