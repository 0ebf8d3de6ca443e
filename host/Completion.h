// Scripts by which shells complete the commands, made from the table of commands.
#pragma once

#include <string>
#include <vector>

#include "host/Command.h"

namespace host {

std::vector<std::string> completionShells();

/// `shell` is one of them.
std::string completionScript(const Commands& all, const std::string& shell);

// What the scripts are made from.

/// A path of words with what can stand behind it: further words, the command's own options, its placed arguments. The
/// program itself, with the common options, is the empty path.
struct Spot {
    std::string path;
    std::vector<const Command*> commands;
    std::vector<Argument> options;
    std::vector<Argument> placed;
};

std::vector<Spot> spotsOf(const Commands& all);

/// "-v,--verbose" is two names.
std::vector<std::string> namesOf(const Argument& option);

/// The text between apostrophes, with `escaped` in the place of each apostrophe in it.
std::string quotedWord(const std::string& text, const std::string& escaped);

std::string bashCompletion(const std::vector<Spot>& spots);
std::string zshCompletion(const std::vector<Spot>& spots);
std::string fishCompletion(const std::vector<Spot>& spots);
std::string powerShellCompletion(const std::vector<Spot>& spots);

}  // namespace host
