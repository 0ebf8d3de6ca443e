#include "log/Calls.h"

#include <utility>

#include "log/Operations.h"

namespace logreader {

namespace {

// More threads than anybody has, and more than their requests hold: what a log says costs no more than this.
constexpr std::size_t kMostWaiting = 4096;
constexpr std::size_t kMostWaitingBytes = std::size_t{96} << 20;

}  // namespace

CallReader::CallReader(Sink sink) : sink_(std::move(sink)), entries_([this](Entry&& entry) { take(std::move(entry)); })
{
}

void CallReader::end()
{
    entries_.end();
    while (!waiting_.empty()) hand(release(waiting_.begin()), {});
}

void CallReader::take(Entry&& entry)
{
    const bool isHeadAlone = entry.text.empty() && !entry.isWhole;
    if (entry.level != Level::debug || isHeadAlone) return;
    std::optional<Entry> request = release(Thread(entry.pid, entry.tid));
    if (looksLikeForm(entry.text)) {
        if (request) hand(std::move(request), {});
        hold(std::move(entry));
    } else {
        hand(std::move(request), std::move(entry));
    }
}

void CallReader::hold(Entry&& request)
{
    waitingBytes_ += request.text.size();
    waiting_.push_back(std::move(request));
    byThread_[{waiting_.back().pid, waiting_.back().tid}] = std::prev(waiting_.end());
    while (waiting_.size() > 1 && (waiting_.size() > kMostWaiting || waitingBytes_ > kMostWaitingBytes)) {
        hand(release(waiting_.begin()), {});
    }
}

std::optional<Entry> CallReader::release(Waiting::iterator place)
{
    byThread_.erase({place->pid, place->tid});
    waitingBytes_ -= place->text.size();
    std::optional<Entry> request = std::move(*place);
    waiting_.erase(place);
    return request;
}

std::optional<Entry> CallReader::release(const Thread& thread)
{
    const auto found = byThread_.find(thread);
    return found != byThread_.end() ? release(found->second) : std::nullopt;
}

void CallReader::hand(std::optional<Entry> request, std::optional<Entry> reply)
{
    Call call;
    call.number = ++count_;
    const Entry& first = request ? *request : *reply;
    call.time = first.time;
    call.pid = first.pid;
    call.tid = first.tid;
    if (request) call.fields = fieldsOf(request->text);
    call.operation = request ? operationOf(call.fields) : std::string(kProxyCall);
    if (reply) call.outcome = outcomeOf(reply->text);
    call.request = std::move(request);
    call.reply = std::move(reply);
    sink_(std::move(call));
}

}  // namespace logreader
