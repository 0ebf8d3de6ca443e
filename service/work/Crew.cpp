#include "service/work/Crew.h"

#include <algorithm>
#include <utility>

#include "service/store/Database.h"

namespace service::work {

namespace {

constexpr int kBriefRows = 100;           // what is done on the spot
constexpr int kPiece = 50;                // rows between two looks at who is waiting
constexpr std::size_t kMostPages = 1000;  // in the log before it is written back
constexpr std::chrono::milliseconds kFirstTurn{50};

std::size_t readerCount()
{
    return std::clamp<std::size_t>(std::thread::hardware_concurrency() + 2U, 4, 16);
}

// For as long as it lives, the connection's work may take so much.
class Allowed {
public:
    Allowed(store::Database& database, Allowance& allowance) : database_(database)
    {
        database_.setAllowance(&allowance);
    }
    ~Allowed() { database_.setAllowance(nullptr); }
    Allowed(const Allowed&) = delete;
    Allowed& operator=(const Allowed&) = delete;

private:
    store::Database& database_;
};

}  // namespace

Crew::Crew(store::Database& database) : writer_(database), own_(database.reader())
{
    for (std::size_t i = 0; i < readerCount(); ++i) readers_.push_back(database.reader());
    try {
        threads_.emplace_back([this] { writeOn(); });
        for (std::size_t i = 0; i < readers_.size(); ++i) {
            threads_.emplace_back([this, i] { readOn(*readers_[i], i == 0); });
        }
    } catch (...) {
        end();
        throw;
    }
}

Crew::~Crew()
{
    end();
}

void Crew::end()
{
    {
        const std::scoped_lock lock(mutex_);
        isEnding_ = true;
    }
    moreToRead_.notify_all();
    moreToWrite_.notify_all();
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
}

void Crew::read(Work work, Length length)
{
    {
        const std::scoped_lock lock(mutex_);
        (length == Length::brief ? brief_ : open_).push_back({std::move(work), kFirstTurn});
    }
    // One call alone might wake the one thread that takes nothing but what is brief.
    if (length == Length::brief) return moreToRead_.notify_one();
    moreToRead_.notify_all();
}

void Crew::write(Work work)
{
    {
        const std::scoped_lock lock(mutex_);
        writing_.push_back({std::move(work), kFirstTurn});
    }
    moreToWrite_.notify_one();
}

void Crew::aside(std::function<void()> work)
{
    read([work = std::move(work)](store::Database&) { work(); }, Length::open);
}

void Crew::readNow(Work work, Length length)
{
    if (!isDoneBriefly(work, *own_)) read(std::move(work), length);
}

void Crew::writeNow(Work work)
{
    if (!takeTurn()) return write(std::move(work));
    // The first change after the log was written back waits for the disk.
    const bool atOnce = writer_.unsettledPages() != 0 && writer_.unsettledPages() < kMostPages;
    const bool done = atOnce && isDoneBriefly(work, writer_);
    settleSoon();
    giveTurnBack();
    if (!done) write(std::move(work));
}

bool Crew::isDone(const Work& work, store::Database& database, Allowance allowance)
{
    const Allowed allowed(database, allowance);
    try {
        work(database);
        return true;
    } catch (const Interrupted&) {
        return false;
    }
}

bool Crew::isDoneBriefly(const Work& work, store::Database& database)
{
    return isDone(work, database, Allowance(kBriefRows));
}

bool Crew::isTurnDone(const Turn& turn, store::Database& database, const std::deque<Turn>& others)
{
    const auto end = std::chrono::steady_clock::now() + turn.length;
    return isDone(turn.work, database, Allowance(kPiece, [this, end, &others] {
                      const std::scoped_lock lock(mutex_);
                      return !isEnding_ && (others.empty() || std::chrono::steady_clock::now() < end);
                  }));
}

void Crew::readOn(store::Database& database, bool onlyBrief)
{
    while (std::optional<Turn> turn = nextRead(onlyBrief)) {
        if (isTurnDone(*turn, database, open_)) continue;
        {
            const std::scoped_lock lock(mutex_);
            open_.push_back({std::move(turn->work), 2 * turn->length});
        }
        moreToRead_.notify_all();
    }
}

std::optional<Crew::Turn> Crew::nextRead(bool onlyBrief)
{
    std::unique_lock lock(mutex_);
    moreToRead_.wait(lock, [&] { return isEnding_ || !brief_.empty() || (!onlyBrief && !open_.empty()); });
    if (isEnding_) return std::nullopt;
    std::deque<Turn>& from = brief_.empty() ? open_ : brief_;
    Turn turn = std::move(from.front());
    from.pop_front();
    return turn;
}

void Crew::writeOn()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        moreToWrite_.wait(lock, [this] { return isEnding_ || (!isWriting_ && !writing_.empty()); });
        if (isEnding_) return;
        Turn turn = std::move(writing_.front());
        writing_.pop_front();
        isWriting_ = true;
        lock.unlock();
        const bool done = isTurnDone(turn, writer_, writing_);
        settleSoon();
        if (done) turn.work = nullptr;
        lock.lock();
        isWriting_ = false;
        if (!done) writing_.push_back({std::move(turn.work), 2 * turn.length});
    }
}

// For who does not wait for it.
bool Crew::takeTurn()
{
    const std::scoped_lock lock(mutex_);
    if (isWriting_ || !writing_.empty()) return false;
    isWriting_ = true;
    return true;
}

void Crew::giveTurnBack()
{
    bool more = false;
    {
        const std::scoped_lock lock(mutex_);
        isWriting_ = false;
        more = !writing_.empty();
    }
    if (more) moreToWrite_.notify_one();
}

// The disk is waited for where nobody else has to.
void Crew::settleSoon()
{
    if (writer_.unsettledPages() < kMostPages) return;
    {
        const std::scoped_lock lock(mutex_);
        if (isSettling_) return;
        isSettling_ = true;
    }
    read(
        [this](store::Database& database) {
            database.settle();
            const std::scoped_lock lock(mutex_);
            isSettling_ = false;
        },
        Length::open);
}

}  // namespace service::work
