// Times two pieces of work against each other: always as a ratio of one run, never as seconds that a limit hangs on.
#pragma once

#include <functional>
#include <utility>

namespace kzn::bench {

/// A clock in seconds from some start.
using Clock = double (*)();

/// Processor time of the calling thread, where the system counts it finely enough: for work that waits for nothing,
/// blind to what else the machine does.
double threadTime();

/// Time as it passes: for work that waits for another process.
double wallTime();

/// The heap keeps from now on what it once had of the system, as that of a program that has been running for long; else
/// the system's zeroed pages are most of what is timed.
void keepHeap();

/// Client and server take turns on one processor from now on. On two, either side may pay for waking an idle one, which
/// takes longer than the whole call. False where the system does not let the program.
bool stayOnOneProcessor();

/// A ratio, and how far it strays within the run.
struct Ratio {
    double value = 0;
    double low = 0;
    double high = 0;
};

/// Does one piece of work and returns its seconds.
using Work = std::function<double()>;

/// Times `subject` against `peer` in pairs that stand next to each other in time, in turns the one and the other first.
/// The value is the median of the pairs' ratios, low and high are their quartiles.
Ratio compare(int pairs, const Work& subject, const Work& peer);

/// The same for work that waits: on a busy machine most of it waits for a processor too, which says nothing of either.
/// The value is the ratio of the two fastest fiftieths, low and high are the quartiles of that over nine parts.
Ratio compareUndisturbed(int pairs, const Work& subject, const Work& peer);

/// The seconds that a call takes.
template <typename Call>
double secondsOf(Clock clock, Call&& call)
{
    const double start = clock();
    std::forward<Call>(call)();
    return clock() - start;
}

}  // namespace kzn::bench
