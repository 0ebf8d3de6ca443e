// Every operation over the library's own transport, and a server that answers with any bytes. The first line of the
// input names the operation, the rest is what the server sends, in pieces, before it closes the connection. Its first
// byte says how long the pieces are.
#include <algorithm>
#include <memory>
#include <string>

#include "fuzz/Calls.h"
#include "fuzz/Check.h"
#include "tests/support/CaptureServer.h"

namespace {

using kzn::test::CaptureServer;
using kzn::test::Script;

// The server keeps every request; a new one now and then forgets them.
constexpr int kInputsPerServer = 1000;
constexpr std::size_t kMostPieces = 16;

struct Server {
    CaptureServer server;
    std::string address = server.address();
    fuzz::Calls calls{address};
};

Server& standing()
{
    static std::unique_ptr<Server> server;
    static int inputs = 0;
    if (inputs++ % kInputsPerServer == 0) {
        server.reset();
        server = std::make_unique<Server>();
    }
    return *server;
}

Script answer(std::string_view bytes)
{
    const std::size_t wanted = fuzz::takeByte(bytes) + 1;
    const std::size_t size = std::max(wanted, bytes.size() / kMostPieces + 1);
    Script script;
    for (std::size_t at = 0; at < bytes.size(); at += size) script.send(std::string(bytes.substr(at, size)));
    return script.close();
}

/// A redirect may lead anywhere: what is not the server is not asked.
bool isServers(const CWapiClient::Exchange& exchange, const std::string& address)
{
    return exchange.status != 0 || exchange.url.starts_with(address + "/");
}

void checkOutcome(CWapiClient& client, const WireCall& call, int result, bool handsThrough)
{
    const int kind = client.getNetworkErrorKind();
    fuzz::check(result == 0 || result == 1, "done or failed");
    fuzz::check(kind >= CWapiClient::NETWORK_NONE && kind <= CWapiClient::NETWORK_LOCAL, "a cause that has a name");
    const std::string words = kzn::pvutil::stringex::ToUtf8(client.getNetworkErrorText());
    fuzz::check(kind != CWapiClient::NETWORK_LOCAL, ("nothing is wrong with this machine: " + words).c_str());
    if (handsThrough) return;
    if (result == 0) fuzz::check(call.outputs() == call.outputsBefore(), "a failure leaves the outputs");
    fuzz::check(result == 0 || client.getNetworkError() == 0, "a success met the server");
    fuzz::check(client.getNetworkError() == 0 || !words.empty(), "a cause has words");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input = fuzz::bytes(data, size);
    const std::size_t line = std::min(input.find('\n'), input.size());
    auto& [server, address, calls] = standing();
    const WireOperation& operation = calls.named(input.substr(0, line));
    server.otherwise(answer(input.substr(std::min(line + 1, input.size()))));

    CWapiClient client(server.url("/op.do"));
    client.setDeadline(5000);
    client.onExchange([&here = address](const CWapiClient::Exchange& exchange) { return isServers(exchange, here); });
    WireCall call(calls.argumentsOf(operation));
    const int result = operation.call(client, call);
    checkOutcome(client, call, result, operation.name == "logout" || operation.name == "WapiProxyCall");
    return 0;
}
