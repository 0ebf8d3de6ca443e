// Every operation with any reply. The first line of the input names the operation, the rest is the reply. The arguments
// are those of the operation's first wire example; the network is replaced, so that a call costs no exchange.
#include <algorithm>
#include <string>

#include "fuzz/Calls.h"
#include "fuzz/Check.h"
#include "pvutil/HttpTransport.h"

namespace {

std::string_view g_reply;

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

void shutDownTransport() noexcept {}

}  // namespace kzn::pvutil

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const fuzz::Calls kCalls("http://service.invalid");
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
