// The rows of the table that a run prints, and whether all limits hold.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "bench/Timing.h"

namespace kzn::bench {

class Report {
public:
    /// With "--quick" among the arguments every piece of work is done a few times, and no limit on time counts: those
    /// numbers say nothing then. Memory and counts are judged always; nothing else on the machine moves them.
    Report(int argc, char** argv);

    bool quick() const noexcept { return quick_; }

    /// How many pairs to time: `usual` of them, or two in a quick run.
    int pairs(int usual) const noexcept { return quick_ ? 2 : usual; }

    /// A ratio that may be `limit` at most.
    void atMost(std::string_view name, const Ratio& measured, double limit);

    /// A ratio that has to be `limit` at least.
    void atLeast(std::string_view name, const Ratio& measured, double limit);

    /// A ratio that may differ from 1 by `share` at most.
    void near(std::string_view name, const Ratio& measured, double share);

    /// A count or a share of memory that may be `limit` at most, with the unit it is told in.
    void atMost(std::string_view name, double measured, double limit, std::string_view unit);

    /// A count that must be this one.
    void exactly(std::string_view name, std::size_t measured, std::size_t wanted);

    /// Measured for the record; no limit stands on it.
    void note(std::string_view name, const Ratio& measured);
    void note(std::string_view name, double measured, std::string_view unit);

    /// What a benchmark needs is not so: it ends the program's success, in a quick run too.
    void require(bool holds, std::string_view what);

    /// The program's exit status.
    int status() const noexcept { return failed_ ? 1 : 0; }

private:
    void judge(std::string_view name, const std::string& measured, const std::string& limit, bool held,
               bool counts = true);

    bool quick_ = false;
    bool failed_ = false;
};

}  // namespace kzn::bench
