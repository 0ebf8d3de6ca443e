#pragma once

#include <algorithm>
#include <ctime>

namespace service::test {

// The processor time that something takes, whatever else the machine does meanwhile: the least of a few runs.
template <class Something>
double workOf(const Something& something)
{
    std::clock_t least = 0;
    for (int i = 0; i < 3; ++i) {
        const std::clock_t start = std::clock();
        something();
        const std::clock_t work = std::clock() - start;
        least = i == 0 ? work : std::min(least, work);
    }
    return static_cast<double>(std::max<std::clock_t>(least, 1));
}

// What ten times as much may cost: ten times the work in truth, a hundred where each looks at all the others.
inline constexpr double kTenfold = 40;

}  // namespace service::test
