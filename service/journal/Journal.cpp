#include "service/journal/Journal.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <iterator>
#include <utility>

#include "service/journal/Reading.h"
#include "service/journal/Shape.h"
#include "service/store/Database.h"
#include "service/work/Allowance.h"

namespace service::journal {

namespace {

constexpr std::chrono::milliseconds kPause{25};  // in which others join the first
constexpr std::size_t kBatch = 500;
constexpr std::size_t kMostBytes = std::size_t{32} * 1024 * 1024;

}  // namespace

Journal::Journal(store::Database& database, Later later, const Limits& limits)
    : database_(database),
      later_(std::move(later)),
      limits_(limits),
      totals_(store::exchangeTotals(database)),
      number_(totals_.last),
      readUpTo_(totals_.last),
      reader_([this] { readOn(); })
{
}

Journal::~Journal()
{
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    heardMore_.notify_one();
    reader_.join();
    write();
}

void Journal::add(Heard heard)
{
    std::unique_lock lock(mutex_);
    readMore_.wait(lock, [this] { return heardBytes_ < kMostBytes; });
    heard.number = ++number_;
    heardBytes_ += sizeOf(heard);
    heard_.push_back(std::move(heard));
    if (heard_.size() == 1 || heard_.size() == kBatch || heardBytes_ >= kMostBytes) heardMore_.notify_one();
}

std::vector<Heard> Journal::nextBatch(std::unique_lock<std::mutex>& lock)
{
    heardMore_.wait(lock, [this] { return !heard_.empty() || isEnding_; });
    heardMore_.wait_for(lock, kPause, [this] {
        return heard_.size() >= kBatch || heardBytes_ >= kMostBytes || hurried_ > 0 || isEnding_;
    });
    return std::exchange(heard_, {});
}

void Journal::readOn()
{
    std::unique_lock lock(mutex_);
    for (std::vector<Heard> batch = nextBatch(lock); !batch.empty(); batch = nextBatch(lock)) {
        heardBytes_ = 0;
        const long long until = batch.back().number;
        lock.unlock();
        readMore_.notify_all();
        std::vector<store::Exchange> exchanges;
        exchanges.reserve(batch.size());
        for (const Heard& heard : batch) exchanges.push_back(exchangeOf(heard));
        lock.lock();
        readUpTo_ = until;
        std::ranges::move(exchanges, std::back_inserter(read_));
        readMore_.notify_all();
        if (!std::exchange(writesSoon_, true)) later_([this] { write(); });
    }
}

void Journal::settle()
{
    {
        std::unique_lock lock(mutex_);
        const long long until = number_;
        ++hurried_;
        heardMore_.notify_one();
        readMore_.wait(lock, [this, until] { return readUpTo_ >= until; });
        --hurried_;
    }
    write();
}

void Journal::write()
{
    std::vector<store::Exchange> exchanges;
    {
        const std::lock_guard lock(mutex_);
        writesSoon_ = false;
        exchanges.swap(read_);
    }
    if (exchanges.empty()) return;
    try {
        keep(exchanges);
    } catch (const work::Interrupted&) {
        takeBack(std::move(exchanges));
        throw;
    } catch (const std::exception& error) {
        std::clog << std::to_string(exchanges.size()) + " requests are not in the journal: " + error.what() + '\n'
                  << std::flush;
    }
}

// They are written with those that have come since.
void Journal::takeBack(std::vector<store::Exchange> exchanges)
{
    const std::lock_guard lock(mutex_);
    std::ranges::move(read_, std::back_inserter(exchanges));
    read_ = std::move(exchanges);
    writesSoon_ = true;
}

store::ExchangeTotals Journal::totals()
{
    const std::lock_guard lock(mutex_);
    return totals_;
}

void Journal::keep(const std::vector<store::Exchange>& exchanges)
{
    store::ExchangeTotals totals = this->totals();
    store::Transaction transaction(database_);
    for (const store::Exchange& exchange : exchanges) {
        store::insertExchange(database_, exchange);
        totals.last = exchange.number;
        totals.count += 1;
        totals.bytes += store::sizeOf(exchange);
    }
    while (totals.count > 1 && (totals.count > limits_.count || totals.bytes > limits_.bytes)) {
        totals.bytes -= store::deleteOldestExchange(database_);
        totals.count -= 1;
    }
    transaction.commit();
    {
        const std::lock_guard lock(mutex_);
        totals_ = totals;
    }
    events_.tell([&exchanges] {
        std::string told;
        for (const store::Exchange& exchange : exchanges) told += eventText(exchange);
        return told;
    });
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
