// What somebody may have meant who wrote a word that does not exist.
#pragma once

#include <string>
#include <vector>

namespace host {

/// The one of `known` that is nearest to the word, if it is near enough to be meant; else an empty text.
std::string nearest(const std::string& word, const std::vector<std::string>& known);

/// "; did you mean 'X'?" for the nearest one, or nothing.
std::string didYouMean(const std::string& word, const std::vector<std::string>& known);

}  // namespace host
