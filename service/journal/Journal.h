#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "service/http/Events.h"
#include "service/journal/Heard.h"
#include "service/store/Exchanges.h"

namespace service::journal {

// How much is kept; the oldest go first.
struct Limits {
    long long count = 10'000;
    long long bytes = 64LL * 1024 * 1024;
};

// Keeps what is asked and answered in the data file, and tells those who watch. An answer does not wait for it: a
// thread of the journal's own reads what was heard, and several together are written when the data file's turn for it
// comes. Those that were not yet written are lost where the process is killed.
class Journal {
public:
    // Has something done soon, where the data file may be written.
    using Later = std::function<void(std::function<void()>)>;

    Journal(store::Database& database, Later later, const Limits& limits = {});

    // Keeps what it has heard.
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // May be called by any thread; holds it up only where very much waits to be read.
    void add(Heard heard);

    // Where the data file may be written, and outside of a transaction: from here on all that was added is in it.
    void settle();

    // Where the data file may be written, within a transaction; and once that is over.
    void clear();
    void cleared();

    http::Events& events() { return events_; }

    // The number of the last one that is written, and how many there are.
    store::ExchangeTotals totals();

private:
    void readOn();
    std::vector<Heard> nextBatch(std::unique_lock<std::mutex>& lock);
    void write();
    void takeBack(std::vector<store::Exchange> exchanges);
    void keep(const std::vector<store::Exchange>& exchanges);

    store::Database& database_;
    Later later_;
    Limits limits_;
    http::Events events_;

    std::mutex mutex_;  // of all that follows
    store::ExchangeTotals totals_;
    std::condition_variable heardMore_;
    std::condition_variable readMore_;
    long long number_;    // of the last one that was heard
    long long readUpTo_;  // of the last one that was read
    std::vector<Heard> heard_;
    std::size_t heardBytes_ = 0;
    std::vector<store::Exchange> read_;
    bool writesSoon_ = false;
    int hurried_ = 0;  // how many wait until all is read
    bool isEnding_ = false;

    std::thread reader_;
};

}  // namespace service::journal
