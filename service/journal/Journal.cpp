#include "service/journal/Journal.h"

#include <chrono>
#include <iostream>
#include <optional>
#include <utility>

#include "service/base/Process.h"
#include "service/journal/Reading.h"
#include "service/journal/Shape.h"
#include "service/store/Database.h"

namespace service::journal {

namespace {

constexpr std::chrono::milliseconds kPause{25};  // in which others join the first
constexpr std::size_t kBatch = 500;
constexpr std::size_t kMostBytes = std::size_t{32} * 1024 * 1024;  // that wait
constexpr std::size_t kPieceBytes = std::size_t{4} * 1024 * 1024;  // that are written together
constexpr std::size_t kLargeBytes = std::size_t{8} * 1024 * 1024;  // worth giving back

std::size_t bytesOf(const store::Exchange& exchange)
{
    return static_cast<std::size_t>(store::sizeOf(exchange));
}

}  // namespace

Journal::Journal(store::Database& database, Later later, const Limits& limits)
    : database_(database),
      later_(std::move(later)),
      limits_(limits),
      totals_(store::exchangeTotals(database)),
      number_(totals_.last),
      readUpTo_(totals_.last),
      writtenUpTo_(totals_.last),
      reader_([this] { readOn(); })
{
}

Journal::~Journal()
{
    std::deque<Waiting> forgotten;
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        forgotten.swap(waiting_);
    }
    heardMore_.notify_one();
    reader_.join();
    while (writePiece()) {
    }
}

// What does not fit is given up after the lock, and so are those that would not be kept in the end.
void Journal::add(Heard heard)
{
    Heard whole;
    Heard oldest;
    const Lock lock(mutex_);
    if (waitingBytes_ + sizeOf(heard) > kMostBytes) {
        whole = std::move(heard);
        heard = headOf(whole);
    }
    heard.number = ++number_;
    const std::size_t bytes = sizeOf(heard);
    heardBytes_ += bytes;
    waitingBytes_ += bytes;
    heard_.push_back(std::move(heard));
    if (heard_.size() > static_cast<std::size_t>(limits_.count)) {
        oldest = std::move(heard_.front());
        heard_.pop_front();
        heardBytes_ -= sizeOf(oldest);
        waitingBytes_ -= sizeOf(oldest);
    }
    if (heard_.size() == 1 || heard_.size() == kBatch || heardBytes_ >= kLargeBytes) heardMore_.notify_one();
}

// False where there is nothing to come.
bool Journal::waitForMore(Lock& lock)
{
    heardMore_.wait(lock, [this] { return !heard_.empty() || isEnding_ || hasToGiveBack(); });
    if (heard_.empty()) return !isEnding_;
    heardMore_.wait_for(lock, kPause, [this] {
        return heard_.size() >= kBatch || heardBytes_ >= kLargeBytes || hurried_ > 0 || !waiting_.empty() || isEnding_;
    });
    return true;
}

void Journal::readOn()
{
    Lock lock(mutex_);
    while (waitForMore(lock)) {
        if (heard_.empty()) giveBack(lock);
        else readHeard(lock);
    }
}

// Each is given up as soon as it is read: what is kept of it may be as large.
void Journal::readHeard(Lock& lock)
{
    std::deque<Heard> batch = std::exchange(heard_, {});
    const std::size_t bytes = std::exchange(heardBytes_, 0);
    const long long until = batch.back().number;
    lock.unlock();
    std::vector<store::Exchange> exchanges;
    exchanges.reserve(batch.size());
    for (; !batch.empty(); batch.pop_front()) exchanges.push_back(exchangeOf(batch.front()));
    lock.lock();
    readUpTo_ = until;
    waitingBytes_ -= bytes;
    heardMuch_ = heardMuch_ || bytes >= kLargeBytes;
    takeRead(std::move(exchanges));
    readMore_.notify_all();
    if (!std::exchange(writesSoon_, true)) later_([this] { writeOn(); });
}

void Journal::takeRead(std::vector<store::Exchange> exchanges)
{
    for (store::Exchange& exchange : exchanges) {
        readBytes_ += bytesOf(exchange);
        waitingBytes_ += bytesOf(exchange);
        read_.push_back(std::move(exchange));
    }
    while (read_.size() > 1 && (read_.size() > static_cast<std::size_t>(limits_.count) ||
                                readBytes_ > static_cast<std::size_t>(limits_.bytes))) {
        forgetOldest();
    }
}

// It would be written to be deleted.
void Journal::forgetOldest()
{
    const std::size_t bytes = bytesOf(read_.front());
    readBytes_ -= bytes;
    waitingBytes_ -= bytes;
    read_.pop_front();
}

bool Journal::hasToGiveBack() const
{
    return heardMuch_ && waitingBytes_ == 0;
}

void Journal::giveBack(Lock& lock)
{
    heardMuch_ = false;
    lock.unlock();
    returnMemory();
    lock.lock();
}

void Journal::settle()
{
    {
        Lock lock(mutex_);
        const long long until = number_;
        ++hurried_;
        heardMore_.notify_one();
        readMore_.wait(lock, [this, until] { return readUpTo_ >= until; });
        --hurried_;
    }
    while (writePiece()) {
    }
}

void Journal::whenSettled(std::function<void()> work)
{
    {
        const Lock lock(mutex_);
        if (writtenUpTo_ < number_) {
            waiting_.push_back({number_, std::move(work)});
            heardMore_.notify_one();
            return;
        }
    }
    work();
}

// The rest takes its turn behind others.
void Journal::writeOn()
{
    writePiece();
    const Lock lock(mutex_);
    writesSoon_ = !read_.empty();
    if (writesSoon_) later_([this] { writeOn(); });
}

// Goes to its end: it is short, and would be done again. False where there was nothing.
bool Journal::writePiece()
{
    std::optional<Piece> piece(nextPiece());
    if (piece->exchanges.empty()) return false;
    const std::size_t bytes = piece->bytes;
    const long long until = piece->exchanges.back().number;
    try {
        keep(*piece);
    } catch (const std::exception& error) {
        std::clog << std::to_string(piece->exchanges.size()) + " requests are not in the journal: " + error.what() +
                         '\n'
                  << std::flush;
    }
    piece.reset();
    written(until, bytes);
    return true;
}

Journal::Piece Journal::nextPiece()
{
    Piece piece;
    const Lock lock(mutex_);
    while (!read_.empty() && piece.exchanges.size() < kBatch) {
        const std::size_t bytes = bytesOf(read_.front());
        if (piece.bytes > 0 && piece.bytes + bytes > kPieceBytes) break;
        piece.bytes += bytes;
        piece.exchanges.push_back(std::move(read_.front()));
        read_.pop_front();
    }
    readBytes_ -= piece.bytes;
    return piece;
}

void Journal::written(long long until, std::size_t bytes)
{
    std::vector<std::function<void()>> works;
    {
        const Lock lock(mutex_);
        writtenUpTo_ = until;
        waitingBytes_ -= bytes;
        for (; !waiting_.empty() && waiting_.front().until <= until; waiting_.pop_front()) {
            works.push_back(std::move(waiting_.front().work));
        }
        if (hasToGiveBack()) heardMore_.notify_one();
    }
    for (const auto& work : works) work();
}

store::ExchangeTotals Journal::totals()
{
    const std::lock_guard lock(mutex_);
    return totals_;
}

void Journal::keep(const Piece& piece)
{
    store::ExchangeTotals totals = this->totals();
    const store::Unlimited whole(database_);
    store::Transaction transaction(database_);
    makeRoom(totals, piece);
    for (const store::Exchange& exchange : piece.exchanges) store::insertExchange(database_, exchange);
    totals.last = piece.exchanges.back().number;
    totals.count += static_cast<long long>(piece.exchanges.size());
    totals.bytes += static_cast<long long>(piece.bytes);
    transaction.commit();
    {
        const std::lock_guard lock(mutex_);
        totals_ = totals;
    }
    events_.tell([&piece] {
        std::string told;
        for (const store::Exchange& exchange : piece.exchanges) told += eventText(exchange);
        return told;
    });
}

// Before they are written, so that the data file does not grow for it.
void Journal::makeRoom(store::ExchangeTotals& totals, const Piece& piece)
{
    const long long count = limits_.count - static_cast<long long>(piece.exchanges.size());
    const long long bytes = limits_.bytes - static_cast<long long>(piece.bytes);
    while (totals.count > 0 && (totals.count > count || totals.bytes > bytes)) {
        totals.bytes -= store::deleteOldestExchange(database_);
        totals.count -= 1;
    }
}

void Journal::clear()
{
    store::deleteExchanges(database_);
}

// Numbers go on, so that whoever watches never takes a new exchange for an old one.
void Journal::cleared()
{
    {
        const std::lock_guard lock(mutex_);
        totals_.count = 0;
        totals_.bytes = 0;
    }
    events_.tell([] { return std::string("event: cleared\ndata: {}\n\n"); });
}

}  // namespace service::journal
