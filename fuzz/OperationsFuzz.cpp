// Every operation with any reply. The first line of the input names the operation, the rest is the reply. The arguments
// are those of the operation's first wire example; the network is replaced, so that a call costs no exchange.
#include <algorithm>
#include <filesystem>
#include <map>
#include <string>

#include "fuzz/Check.h"
#include "pvutil/HttpTransport.h"
#include "tests/client/WireOperations.h"

namespace {

std::string_view g_reply;

/// Operations by their names, with the arguments of an example; those that send nothing have no place here.
class Calls {
public:
    Calls()
    {
        const std::filesystem::path folder = std::filesystem::path(PVWAPI_SOURCE_DIR) / "tests/wire";
        for (const std::string& name : wireCaseNames(folder)) {
            WireCase wire = readWireCase(folder, name);
            if (wire.result != 1 || !wire.request || arguments_.contains(wire.operation)) continue;
            for (WireField& argument : wire.arguments) {
                argument.value = withPlaceholder(argument.value, "url", "http://service.invalid/op.do");
                argument.value = withPlaceholder(argument.value, "server", "http://service.invalid");
            }
            arguments_.emplace(wire.operation, std::move(wire.arguments));
        }
    }

    /// An unknown name means some operation all the same.
    const WireOperation& named(std::string_view name) const
    {
        const auto found = std::ranges::find(wireOperations(), name, &WireOperation::name);
        if (found != wireOperations().end()) return *found;
        return wireOperations()[static_cast<std::size_t>(fuzz::hash(name) % wireOperations().size())];
    }

    WireFields argumentsOf(const WireOperation& operation) const
    {
        const auto found = arguments_.find(operation.name);
        return found == arguments_.end() ? WireFields{{"extra1", ""}, {"extra2", ""}} : found->second;
    }

private:
    std::map<std::string, WireFields> arguments_;
};

void noteOutcome(CWapiClient& client, const WireCall& call, int result)
{
    fuzz::note(std::to_string(result));
    const WAPIMESSAGE message = client.GetLstMsg();
    for (const CStringT& text : {message.reason, message.exceptionID, message.response}) fuzz::note(text);
    for (const std::string& line : call.outputs()) fuzz::note(line);
}

bool handsThrough(const std::string& operation)
{
    return operation == "logout" || operation == "WapiProxyCall";
}

}  // namespace

namespace kzn::pvutil {

bool transport(HttpExchange& exchange)
{
    exchange.contentType = "text/xml; charset=utf-8";
    return exchange.begin(200, g_reply.size()) && exchange.receive(g_reply);
}

}  // namespace kzn::pvutil

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Calls kCalls;
    const std::string_view input = fuzz::bytes(data, size);
    const std::size_t line = std::min(input.find('\n'), input.size());
    const WireOperation& operation = kCalls.named(input.substr(0, line));
    g_reply = input.substr(std::min(line + 1, input.size()));

    CWapiClient client(kzn::pvutil::stringex::FromUtf8("http://service.invalid/op.do"));
    WireCall call(kCalls.argumentsOf(operation));
    const int result = operation.call(client, call);
    fuzz::check(result == 0 || result == 1, "done or failed");
    noteOutcome(client, call, result);
    if (result == 0 && !handsThrough(operation.name))
        fuzz::check(call.outputs() == call.outputsBefore(), "a failure leaves the outputs");
    if (result == 1) fuzz::check(client.GetLstMsg().reason.empty(), "a success leaves no message");
    return 0;
}
