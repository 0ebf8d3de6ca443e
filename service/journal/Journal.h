#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
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
// comes, no more of them than others can wait for. Where more comes than can be read and written, of what is new the
// head alone is kept. Those that were not yet written are lost where the process is killed.
class Journal {
public:
    // Has something done soon, where the data file may be written.
    using Later = std::function<void(std::function<void()>)>;

    Journal(store::Database& database, Later later, const Limits& limits = {});

    // Keeps what it has heard.
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // May be called by any thread, and holds none up.
    void add(Heard heard);

    // Where the data file may be written, and outside of a transaction: from here on all that was added is in it.
    void settle();

    // Has something done once all that was added before is in the data file: on the spot, or where the data file may be
    // written.
    void whenSettled(std::function<void()> work);

    // Where the data file may be written, within a transaction; and once that is over.
    void clear();
    void cleared();

    http::Events& events() { return events_; }

    // The number of the last one that is written, and how many there are.
    store::ExchangeTotals totals();

private:
    using Lock = std::unique_lock<std::mutex>;

    // Some of those that are to be written.
    struct Piece {
        std::vector<store::Exchange> exchanges{};
        std::size_t bytes = 0;
    };

    struct Waiting {
        long long until;  // this one is written
        std::function<void()> work;
    };

    void readOn();
    bool waitForMore(Lock& lock);
    void readHeard(Lock& lock);
    void takeRead(std::vector<store::Exchange> exchanges);
    void forgetOldest();
    bool hasToGiveBack() const;
    void giveBack(Lock& lock);
    void writeOn();
    bool writePiece();
    Piece nextPiece();
    void written(long long until, std::size_t bytes);
    void keep(const Piece& piece);
    void makeRoom(store::ExchangeTotals& totals, const Piece& piece);

    store::Database& database_;
    Later later_;
    Limits limits_;
    http::Events events_;

    std::mutex mutex_;  // of all that follows
    store::ExchangeTotals totals_;
    std::condition_variable heardMore_;
    std::condition_variable readMore_;
    long long number_;       // of the last one that was heard
    long long readUpTo_;     // of the last one that was read
    long long writtenUpTo_;  // of the last one that was written
    std::deque<Heard> heard_;
    std::deque<store::Exchange> read_;
    std::size_t heardBytes_ = 0;
    std::size_t readBytes_ = 0;
    std::size_t waitingBytes_ = 0;  // of both, and of what is being read or written
    bool heardMuch_ = false;        // since memory was given back
    bool writesSoon_ = false;
    int hurried_ = 0;  // how many wait until all is read
    std::deque<Waiting> waiting_;
    bool isEnding_ = false;

    std::thread reader_;
};

}  // namespace service::journal
