#include "host/Suggest.h"

#include <algorithm>
#include <numeric>

namespace host {

namespace {

// Nobody mistypes a longer word into a command, and the work grows with the square of it.
constexpr std::size_t kLongest = 40;

/// How many letters are missing, too many, wrong or in the order of their neighbours.
std::size_t distance(const std::string& left, const std::string& right)
{
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(right.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= left.size(); ++i) {
        std::vector<std::size_t> row{i};
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const bool same = left[i - 1] == right[j - 1];
            std::size_t least = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0U : 1U)});
            const bool swapped = i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
            if (swapped) least = std::min(least, beforeLast[j - 2] + 1);
            row.push_back(least);
        }
        beforeLast = std::move(last);
        last = std::move(row);
    }
    return last.back();
}

/// A third of the word may be wrong, and one letter of a short one.
std::size_t allowed(const std::string& word)
{
    return std::max<std::size_t>(1, word.size() / 3);
}

}  // namespace

std::string nearest(const std::string& word, const std::vector<std::string>& known)
{
    if (word.size() < 2 || word.size() > kLongest) return {};
    std::string best;
    std::size_t least = allowed(word) + 1;
    for (const std::string& candidate : known) {
        const std::size_t away = distance(word, candidate);
        if (away >= least) continue;
        least = away;
        best = candidate;
    }
    return best;
}

std::string didYouMean(const std::string& word, const std::vector<std::string>& known)
{
    const std::string meant = nearest(word, known);
    return meant.empty() ? std::string() : "; did you mean '" + meant + "'?";
}

}  // namespace host
