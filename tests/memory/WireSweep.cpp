#include "tests/memory/WireSweep.h"

#include <algorithm>
#include <array>
#include <exception>
#include <optional>
#include <string_view>
#include <utility>

#include "pvutil/HttpClient.h"
#include "pvutil/XmlParser.h"
#include "tests/client/ClientState.h"
#include "tests/client/WireRunner.h"
#include "tests/memory/FailingHeap.h"
#include "tests/memory/HostSystem.h"
#include "tests/support/CaptureServer.h"

namespace {

using kzn::test::CapturedRequest;
using kzn::test::CaptureServer;
using kzn::test::Failing;
using kzn::test::FailingHeap;
using kzn::test::NotedHeap;

// Nobody listens on the first port of all.
constexpr const char* kNobody = "http://127.0.0.1:1";

constexpr std::array<const char*, 4> kHeld{"rootCred", "userID", "namespaceID", "refreshInterval"};
constexpr std::array<const char*, 4> kMessage{"code", "reason", "exceptionID", "response"};

struct Outcome {
    bool wasMade = true;  // false: the test itself had no memory for an argument
    int result = 0;
    std::size_t allocations = 0;
    WireLines outputsBefore;
    WireLines outputs;
    ClientState before;
    ClientState after;
};

std::string shown(const WireLines& lines)
{
    std::string text;
    for (const std::string& line : lines) text.append(line).append("; ");
    return text;
}

class WireSweep {
public:
    WireSweep(const WireCase& wire, const WireOperation& operation) : wire_(wire), operation_(operation)
    {
        if (wire.reply && !wire.reply->connection) return;
        server_.emplace();
        address_ = server_->address();
        const WireReply reply = wire.reply.value_or(WireReply());
        server_->otherwise(reply.status, reply.contentType, reply.body);
    }

    SweepResult run(std::size_t most)
    {
        makeClient();
        call(0, Failing::once);  // what stays for the life of the process is made now
        plain_ = call(0, Failing::once);
        result_.allocations = plain_.allocations;
        keepRequests();
        const std::size_t first = firstOfLibrary();
        const std::size_t step = most == 0 ? 1 : std::max<std::size_t>(1, (plain_.allocations - first) / most);
        kzn::pvutil::CZelHttpClient::DropKept();
        EXPAT_EX::dropParsers();
        NotedHeap::forget();
        client_.reset();
        makeClient();
        for (std::size_t nth = first + (plain_.allocations % step); nth <= plain_.allocations; nth += step)
            for (const Failing failing : {Failing::once, Failing::fromThenOn}) tryOne(nth, failing);
        lookForLeaks();
        return std::move(result_);
    }

private:
    void makeClient()
    {
        const CStringT url = wide(address_ + "/kznconnect/op.do");
        const NotedHeap noted;
        client_.emplace(url);
    }

    Outcome call(std::size_t nth, Failing failing)
    {
        client_->setRootCred(wide("cred before"));
        WireFields arguments = wire_.arguments;
        for (WireField& argument : arguments) argument.value = filledWith(wire_, address_, argument.value);
        WireCall call(arguments);
        Outcome outcome;
        outcome.before = stateOf(*client_);
        EXPAT_EX::dropParsers();  // each call makes its own, and can fail to
        try {
            const NotedHeap noted;
            const FailingHeap heap(nth, failing);
            outcome.result = operation_.call(*client_, call);
            outcome.allocations = FailingHeap::asked();
        } catch (const std::exception&) {  // none leaves a member of the client: an argument could not be made
            outcome.wasMade = false;
        }
        outcome.outputsBefore = call.outputsBefore();
        outcome.outputs = call.outputs();
        outcome.after = stateOf(*client_);
        return outcome;
    }

    // The arguments are made first, by the test itself.
    std::size_t firstOfLibrary()
    {
        std::size_t nth = 1;
        while (nth <= plain_.allocations && !call(nth, Failing::once).wasMade) ++nth;
        keepRequests();
        return nth;
    }

    void tryOne(std::size_t nth, Failing failing)
    {
        at_ = "allocation " + std::to_string(nth) + (failing == Failing::once ? " alone" : " and all behind it") +
              " of " + std::to_string(plain_.allocations) + ": ";
        ++result_.calls;
        const Outcome outcome = call(nth, failing);
        const std::size_t faultsBefore = result_.faults.size();
        if (!outcome.wasMade) fault("the arguments could not be made");
        if (outcome.result == 1) compareSuccess(outcome);
        else compareFailure(outcome);
        compareNetwork(outcome.after);
        compareRequests();
        compareNext(call(0, failing));
        compareRequests();
        if (result_.faults.size() > faultsBefore + 3) result_.faults.resize(faultsBefore + 3);
    }

    void compareSuccess(const Outcome& outcome)
    {
        if (plain_.result != 1) fault("1 where the reply is none of success");
        if (outcome.outputs != plain_.outputs) fault("1 with other outputs: " + shown(outcome.outputs));
        for (const char* name : kHeld) expectSame(name, plain_.after, outcome.after);
    }

    void compareFailure(const Outcome& outcome)
    {
        const bool asOtherwise =
            (plain_.result == 0 && outcome.outputs == plain_.outputs) || isEmptied(outcome.outputs);
        if (!asOtherwise && outcome.outputs != outcome.outputsBefore)
            fault("0, and an output is written: " + shown(outcome.outputs));
        for (const char* name : kHeld) expectSame(name, outcome.before, outcome.after);
        if (plain_.result == 1 && leavesMessage() && outcome.after.at("reason").empty()) fault("0 without a reason");
    }

    // A caller's own request empties the reply where it got none.
    bool isEmptied(const WireLines& outputs) const
    {
        return wire_.operation == "WapiProxyCall" && outputs == WireLines{"reply ="} &&
               client_->getNetworkErrorKind() != CWapiClient::NETWORK_NONE;
    }

    void compareNext(const Outcome& next)
    {
        if (next.result != plain_.result) fault("the next call gives " + std::to_string(next.result));
        if (next.outputs != plain_.outputs) fault("the next call has other outputs");
        for (const char* name : kHeld) expectSame(name, plain_.after, next.after);
        if (!leavesMessage()) return;
        expectSame("networkError", plain_.after, next.after);
        for (const char* name : kMessage) expectSame(name, plain_.after, next.after);
    }

    void compareNetwork(const ClientState& state)
    {
        if (wire_.operation == "WapiProxyCall" || wire_.operation == "logout") return;
        const bool hasCause = client_->getNetworkErrorKind() != CWapiClient::NETWORK_NONE;
        if (hasCause != (state.at("networkError") == "1")) fault("a network error and its cause disagree");
    }

    // Calls that send nothing may leave the message of an earlier one.
    bool leavesMessage() const { return !wire_.messageUnchanged && wire_.operation != "WapiProxyCall"; }

    void keepRequests()
    {
        if (!server_) return;
        const auto requests = server_->takeRequests();
        if (!requests.empty()) request_ = requests.front();
    }

    // One that arrives late is met behind a later call; what arrives is always the whole and the same.
    void compareRequests()
    {
        if (!server_) return;
        const auto requests = server_->takeRequests();
        sent_ += requests.size();
        for (const CapturedRequest& request : requests)
            if (!request_ || request.method != request_->method || request.target != request_->target ||
                request.body != request_->body)
                fault("another request is sent: " + request.method + ' ' + request.target + ' ' + request.body);
    }

    void lookForLeaks()
    {
        const std::size_t most = request_ ? 2 * result_.calls : 0;
        at_ = "all calls: ";
        if (sent_ > most) fault("more requests than calls");
        client_.reset();
        kzn::pvutil::CZelHttpClient::DropKept();
        EXPAT_EX::dropParsers();
        const auto held = NotedHeap::held();
        for (std::size_t i = 0; i < std::min<std::size_t>(held.size(), 3); ++i)
            fault(std::to_string(held.size()) + " blocks are held, one of " + std::to_string(held[i].bytes) +
                  " bytes, number " + std::to_string(held[i].number));
    }

    void expectSame(const std::string& name, const ClientState& wanted, const ClientState& got)
    {
        if (wanted.at(name) != got.at(name)) fault(name + " is " + got.at(name) + ", not " + wanted.at(name));
    }

    void fault(const std::string& what) { result_.faults.push_back(at_ + what); }

    const WireCase& wire_;
    const WireOperation& operation_;
    std::optional<CaptureServer> server_;
    std::string address_ = kNobody;
    std::optional<CWapiClient> client_;
    std::optional<CapturedRequest> request_;  // the call's only one, where it sends one
    std::size_t sent_ = 0;
    Outcome plain_;
    std::string at_;
    SweepResult result_;
};

}  // namespace

SweepResult sweepWireCase(const WireCase& wire, const WireOperations& operations, std::size_t most)
{
    const std::size_t openBefore = openFiles();
    SweepResult result = WireSweep(wire, operationOf(wire, operations)).run(most);
    const std::size_t openNow = openFiles();
    if (openNow > openBefore) result.faults.push_back("open files left: " + std::to_string(openNow - openBefore));
    return result;
}
