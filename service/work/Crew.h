#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "service/work/Allowance.h"

namespace service::store {
class Database;
}

namespace service::work {

// Does what is asked with the data file: what only reads side by side, each on a connection of its own that sees the
// file as it was at one moment, and what writes in turn. Nobody waits for what takes long but those for whom there is
// no other way:
// - What takes less time than to hand it over is done on the spot, where there is no need to wait.
// - One thread is kept for what cannot take long.
// - What takes long makes room for others that wait for the same, and is done again behind them, with a longer turn.
class Crew {
public:
    // Work may throw Interrupted from within the database, and is done again then: what it did there has to be undone
    // by then. Nothing else may leave it.
    using Work = std::function<void(store::Database& database)>;

    enum class Length { brief, open };  // whether there is a bound to what it takes

    // The connection is the one that writes. It is not to be used by anyone else as long as there is a crew.
    explicit Crew(store::Database& database);

    ~Crew();
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    // Waits for no work to end: what is under way is interrupted, what is waiting is forgotten.
    void end();

    void read(Work work, Length length);
    void write(Work work);

    // By the one thread that asks so: does it at once where it is short, and has it done soon where it is not.
    void readNow(Work work, Length length);
    void writeNow(Work work);

    // What needs no data file.
    void aside(std::function<void()> work);

private:
    struct Turn {
        Work work;
        std::chrono::milliseconds length;
    };

    static bool isDone(const Work& work, store::Database& database, Allowance allowance);
    static bool isDoneBriefly(const Work& work, store::Database& database);
    bool isTurnDone(const Turn& turn, store::Database& database, const std::deque<Turn>& others);
    void readOn(store::Database& database, bool onlyBrief);
    std::optional<Turn> nextRead(bool onlyBrief);
    void writeOn();
    bool takeTurn();
    void giveTurnBack();
    void settleSoon();

    store::Database& writer_;
    std::unique_ptr<store::Database> own_;  // of readNow
    std::vector<std::unique_ptr<store::Database>> readers_;

    std::mutex mutex_;  // of all that follows
    std::condition_variable moreToRead_;
    std::condition_variable moreToWrite_;
    std::deque<Turn> brief_;
    std::deque<Turn> open_;
    std::deque<Turn> writing_;
    bool isWriting_ = false;
    bool isSettling_ = false;
    bool isEnding_ = false;

    std::vector<std::thread> threads_;
};

}  // namespace service::work
