#include "bench/Timing.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <vector>

namespace kzn::bench {

namespace {

struct Pair {
    double subject = 0;
    double peer = 0;
};
using Pairs = std::vector<Pair>;

// One pair more than asked for comes first and is dropped: it finds everything cold.
Pairs timed(int count, const Work& subject, const Work& peer)
{
    Pairs pairs;
    for (int i = 0; i <= count; ++i) {
        Pair pair;
        if (i % 2 == 0) pair.peer = peer();
        pair.subject = subject();
        if (i % 2 != 0) pair.peer = peer();
        if (i != 0) pairs.push_back(pair);
    }
    return pairs;
}

// The value below which the share of all stands.
double quantile(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(static_cast<double>(values.size() - 1) * share)];
}

template <typename Of>
std::vector<double> each(Pairs::const_iterator first, Pairs::const_iterator last, Of of)
{
    std::vector<double> values;
    std::transform(first, last, std::back_inserter(values), of);
    return values;
}

double ratioOfFastest(Pairs::const_iterator first, Pairs::const_iterator last)
{
    constexpr double kFiftieth = 0.02;
    return quantile(each(first, last, [](const Pair& pair) { return pair.subject; }), kFiftieth) /
           quantile(each(first, last, [](const Pair& pair) { return pair.peer; }), kFiftieth);
}

}  // namespace

double wallTime()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Ratio compare(int pairs, const Work& subject, const Work& peer)
{
    const Pairs all = timed(pairs, subject, peer);
    const auto ratios = each(all.begin(), all.end(), [](const Pair& pair) { return pair.subject / pair.peer; });
    return {quantile(ratios, 0.5), quantile(ratios, 0.25), quantile(ratios, 0.75)};
}

Ratio compareUndisturbed(int pairs, const Work& subject, const Work& peer)
{
    const Pairs all = timed(pairs, subject, peer);
    constexpr std::ptrdiff_t kParts = 9;
    const auto length = std::max<std::ptrdiff_t>(std::ssize(all) / kParts, 1);
    std::vector<double> ratios;
    for (auto at = all.begin(); all.end() - at >= length; at += length)
        ratios.push_back(ratioOfFastest(at, at + length));
    return {ratioOfFastest(all.begin(), all.end()), quantile(ratios, 0.25), quantile(ratios, 0.75)};
}

}  // namespace kzn::bench
