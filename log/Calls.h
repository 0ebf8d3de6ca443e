// From the entries of a log to calls: a request and its reply.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <string>

#include "log/EntryReader.h"
#include "log/Form.h"
#include "log/Outcome.h"

namespace logreader {

struct Call {
    std::uint64_t number = 0;  ///< from 1, in the order in which calls were over
    std::string time;          ///< of the request; of the reply where there is no request
    std::string pid;
    std::string tid;
    std::string operation;
    std::optional<Entry> request;  ///< none: a proxied call, or one that began in an older log
    std::optional<Entry> reply;    ///< none: the log has none. An empty text: nothing came back
    Fields fields;                 ///< of the request, decoded
    Outcome outcome;
};

/// Takes a log in pieces of any size and hands on each call as soon as it is over, with one request held a thread.
///
/// A thread of the library writes a request and then its reply, so the two are told apart by process and thread, and by
/// the form of a request. A reply that looks like a request is taken for one: then its call is without a reply, but the
/// calls behind it are what they were.
class CallReader {
public:
    using Sink = std::function<void(Call&&)>;

    explicit CallReader(Sink sink);
    CallReader(const CallReader&) = delete;
    CallReader& operator=(const CallReader&) = delete;

    void feed(std::string_view bytes) { entries_.feed(bytes); }

    /// Nothing more has come for a while: a reply whose line has ended is over.
    void pause() { entries_.pause(); }

    /// What comes now is another file's. Requests may still find their reply there.
    void endFile() { entries_.end(); }

    /// Nothing more will come: every request that waits is without a reply.
    void end();

private:
    using Waiting = std::list<Entry>;
    using Thread = std::pair<std::string, std::string>;

    void take(Entry&& entry);
    void hold(Entry&& request);
    std::optional<Entry> release(Waiting::iterator place);
    std::optional<Entry> release(const Thread& thread);
    void hand(std::optional<Entry> request, std::optional<Entry> reply);

    Sink sink_;
    EntryReader entries_;
    Waiting waiting_;  // the oldest first
    std::map<Thread, Waiting::iterator> byThread_;
    std::size_t waitingBytes_ = 0;
    std::uint64_t count_ = 0;
};

}  // namespace logreader
