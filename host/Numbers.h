// Numbers and times as they are typed.
#pragma once

#include <optional>
#include <string>

namespace host {

/// Nothing where the text is no time in seconds that the library can take.
std::optional<unsigned int> millisecondsIn(const std::string& text);

/// Why the text is none; empty where it is one.
std::string secondsProblem(const std::string& text);
std::string numberProblem(const std::string& text);

}  // namespace host
