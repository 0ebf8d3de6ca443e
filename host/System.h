// What the operating systems do differently. All text is UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace host::system {

/// The arguments behind the program's name.
std::vector<std::string> arguments(int argc, const char* const* argv);

/// The environment variable, empty where it is not set.
std::string environment(const std::string& name);

/// The folder for the user's configuration of programs; empty where nothing names one.
std::string configFolder();

/// Lets the two output streams carry bytes as they are, and a console show them as UTF-8.
void prepareOutput();

/// Whether somebody looks at standard error as it is written.
bool errorIsTerminal();

/// The whole of a file that nobody but its owner can read. Throws LocalProblem where it is readable by others, is not a
/// regular file, is larger than `limit` or cannot be read.
std::string readPrivateFile(const std::string& path, std::size_t limit);

/// Replaces the file by one with this text that nobody but its owner can read; it is never half written.
/// Throws LocalProblem where that fails.
void writePrivateFile(const std::string& path, const std::string& text);

}  // namespace host::system
