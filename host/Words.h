// The words of the command line on their way to the parser, and lists of words.
#pragma once

#include <string>
#include <vector>

#include "host/Command.h"

namespace host {

std::string joined(const std::vector<std::string>& words, const std::string& separator);

/// The words as the parser is to see them: the first "--" is gone, and what stands behind it, or begins with '[', has a
/// shield before it, so that the parser finds neither an option nor a list in it. `arguments` are all that may take the
/// word behind them for their value.
std::vector<std::string> shielded(const std::vector<std::string>& words, const std::vector<Argument>& arguments);

/// The word without the shield, if it has one.
std::string bare(const std::string& word);

}  // namespace host
