#include "service/tape/Difference.h"

#include <algorithm>
#include <utility>

#include "service/tape/Escapes.h"
#include "service/tape/Scan.h"

namespace service::tape {

namespace {

constexpr std::size_t kExcerpt = 40;
constexpr const char* kMask = "***";

std::string quoted(std::string_view text, bool isAll)
{
    return "\"" + std::string(text) + (isAll ? "\"" : "...\"");
}

// Where secrets stand in a text.
using Stretches = std::vector<std::pair<std::size_t, std::size_t>>;

void addStretches(Stretches& stretches, std::string_view text, const std::string& spelled)
{
    if (spelled.empty()) return;
    const Beside beside = besideSecret(spelled);
    for (std::size_t at = text.find(spelled); at != std::string_view::npos; at = text.find(spelled, at)) {
        if (stands(text, at, spelled.size(), beside)) stretches.emplace_back(at, at + spelled.size());
        at += spelled.size();
    }
}

Stretches stretchesOf(std::string_view text, const std::vector<Found>& found)
{
    Stretches stretches;
    for (const Found& one : found) {
        addStretches(stretches, text, one.spelled);
        for (const std::string& other : spellings(one.value)) addStretches(stretches, text, other);
    }
    std::ranges::sort(stretches);
    return stretches;
}

// The text from a place on; one that begins within a secret begins with the mask.
std::string shownFrom(std::string_view text, std::size_t at, const Stretches& secrets)
{
    std::string out;
    std::size_t left = kExcerpt;
    for (const auto& [begin, end] : secrets) {
        if (end <= at) continue;
        const std::size_t before = begin - std::min(begin, at);
        if (before >= left) break;
        out += escaped(text.substr(at, before)) + kMask;
        left -= before;
        at = end;
    }
    return quoted(out + escaped(text.substr(at, left)), text.size() - at <= left);
}

}  // namespace

std::string excerptOf(std::string_view text)
{
    return quoted(escaped(text.substr(0, kExcerpt)), text.size() <= kExcerpt);
}

std::string differenceText(std::string_view what, const Fit& fit, std::string_view text, std::vector<Found> found,
                           const Bindings& bindings)
{
    for (const std::string& secret : bindings.secrets()) found.push_back({{}, secret, secret});
    const bool isEnd = fit.at >= text.size();
    return std::string(what) + " differs at byte " + std::to_string(fit.at) + ": the tape has " + fit.wanted +
           ", and not " + (isEnd ? "the end" : shownFrom(text, fit.at, stretchesOf(text, found)));
}

}  // namespace service::tape
