// How far the measurements go on this system, and what holds there.
#pragma once

namespace kzn::bench {

/// What reading a listing may cost of the bare parser's work.
extern const double kReadingLimit;

/// How many pairs of whole calls are timed.
extern const int kCallPairs;

/// How many calls of the service are timed as one, and how many pairs of these. So many that what it does later, for
/// all that it has heard at once, is in each of them, and that the steps in which a process's time moves are nothing
/// beside them.
extern const int kServedBatch;
extern const int kServedPairs;

/// The least that a constant may take of each call of the service.
struct ServedLimits {
    double getSessionInfo;
    double getTabs;
    double editTab;
    double getWkspList;
};
extern const ServedLimits kServedLimits;

}  // namespace kzn::bench
