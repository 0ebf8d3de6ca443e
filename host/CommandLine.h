// From the words of the command line to the command, its values and the settings.
#pragma once

#include <string>
#include <vector>

#include "host/Call.h"
#include "host/Command.h"

namespace host {

struct Request {
    const Command* command = nullptr;  ///< none where `help` has what was asked for instead
    Values values;
    Settings settings;
    std::string help;  ///< or the list of operations
};

/// The arguments that every command takes.
std::vector<Argument> commonArguments();

/// What keeps the argument from having this value; nothing where it can.
std::string problemWith(const Argument& argument, const std::string& value);

/// Throws LocalProblem where the words make no command. The request points into `commands`.
Request readCommandLine(const Commands& commands, const std::vector<std::string>& words);

}  // namespace host
