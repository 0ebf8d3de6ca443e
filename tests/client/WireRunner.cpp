#include "tests/client/WireRunner.h"

#include <algorithm>
#include <optional>

#include "tests/client/ClientState.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/LogLines.h"
#include "tests/support/TestSystem.h"
#include "tests/support/Text.h"
#include "tests/support/TraceLines.h"

namespace {

using kzn::test::CapturedRequest;
using kzn::test::CaptureServer;
using kzn::test::Script;

std::string shown(const WireLines& lines)
{
    std::string text;
    for (const std::string& line : lines) text.append("\n        ").append(line);
    return text.empty() ? "\n        (nothing)" : text;
}

class WireRun {
public:
    WireRun(const WireCase& wire, const WireOperation& operation)
        : wire_(wire),
          operation_(operation),
          server_(std::in_place),
          address_(server_->address()),
          client_(server_->url("/kznconnect/op.do"))
    {
    }

    std::vector<std::string> differences()
    {
        prepare();
        call();
        compareClient();
        return differences_;
    }

private:
    bool meetsServer() const { return !wire_.reply || wire_.reply->connection; }

    std::string filled(std::string text) const { return filledWith(wire_, address_, std::move(text)); }

    WireLines filled(WireLines lines) const
    {
        for (std::string& line : lines) line = filled(std::move(line));
        return lines;
    }

    /// Brings the client into the state that every example begins with.
    void prepare()
    {
        client_.setRootCred(wide("cred before"));
        server_->reply(200, "text/xml",
                       "<kznapi><response><result>SUCCESS</result></response><return><sessionInfo><sessionDuration>"
                       "50000000</sessionDuration></sessionInfo></return></kznapi>");
        client_.getSessionInfo(wide(""));
        if (meetsServer()) {
            server_->script(Script().send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\ncut off").close());
        } else {
            server_->reply(
                200, "text/xml",
                "<kznapi><response><result>FAILURE</result><reason>reason before</reason></response></kznapi>");
        }
        client_.callWapi(wide(""), wide("cmd=before"));
        before_ = stateOf(client_);
        expectEqual("networkError before", meetsServer() ? "1" : "0", before_["networkError"]);
        expectEqual("refreshInterval before", "25000000", before_["refreshInterval"]);
    }

    void call()
    {
        const std::size_t requestsBefore = server_->received();
        if (!meetsServer()) {
            server_.reset();
        } else if (wire_.reply) {
            server_->reply(wire_.reply->status, wire_.reply->contentType, wire_.reply->body);
        }

        WireFields arguments = wire_.arguments;
        for (WireField& argument : arguments) argument.value = filled(argument.value);
        WireCall call(arguments);
        const LogLines log(logFile());
        const TraceLines trace;
        const int result = operation_.call(client_, call);

        expectEqual("result", std::to_string(wire_.result), std::to_string(result));
        expectEqual("arguments that the operation does not have", WireLines(), call.unusedArguments());
        expectEqual("outputs", wire_.outputs ? filled(*wire_.outputs) : call.outputsBefore(), call.outputs());
        if (wire_.trace) expectEqual("trace", filled(*wire_.trace), withoutCauses(TraceLines::all()));
        if (wire_.log) expectEqual("log", filled(*wire_.log), log.sinceMade());
        if (server_) compareRequests(requestsBefore);
    }

    // Why there was no connection is said in the system's words, in a line of its own behind the one that says so; the
    // examples leave it out.
    WireLines withoutCauses(WireLines lines)
    {
        constexpr std::string_view kCause = "0 Error: CWapiClient: ";
        constexpr std::string_view kNoConnection = "0 Error: Network error. Unable to connect to";
        constexpr std::string_view kNoStatus = "http return code is not 200. It is-1";
        for (std::size_t at = 0; at < lines.size(); ++at) {
            if (!lines[at].starts_with(kNoConnection) && !lines[at].ends_with(kNoStatus)) continue;
            const bool follows = at + 1 < lines.size() && lines[at + 1].starts_with(kCause);
            expectEqual("the cause is traced behind the failure", "yes", follows ? "yes" : "no");
            if (follows) lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(at) + 1);
        }
        return lines;
    }

    void compareRequests(std::size_t requestsBefore)
    {
        const std::vector<CapturedRequest> requests = server_->requests();
        const std::size_t sent = requests.size() - requestsBefore;
        expectEqual("requests sent", wire_.request ? "1" : "0", std::to_string(sent));
        if (!wire_.request || sent == 0) return;

        const WireRequest& wanted = *wire_.request;
        const CapturedRequest& got = requests[requestsBefore];
        expectEqual("method", wanted.method, got.method);
        expectEqual("target", wanted.target, got.target);
        expectEqual("body", wanted.body, got.body);
        if (wanted.method == "POST") {
            expectEqual("Content-Type", "application/x-www-form-urlencoded", got.header("Content-Type"));
        }
        for (const WireField& header : wanted.headers) {
            expectEqual("header " + header.name, header.value, got.header(header.name));
        }
    }

    void compareClient()
    {
        ClientState wanted = before_;
        if (wire_.reply) wanted["networkError"] = meetsServer() ? "0" : "1";
        if (!wire_.messageUnchanged) {
            wanted["reason"] = filled(wire_.message.reason);
            wanted["exceptionID"] = filled(wire_.message.exceptionID);
            wanted["response"] = filled(wire_.message.response);
        }
        for (const WireField& field : wire_.client) wanted[field.name] = field.value;

        const ClientState got = stateOf(client_);
        for (const auto& [name, value] : wanted) {
            const auto found = got.find(name);
            expectEqual(name + " of the client", value, found == got.end() ? "(no such member)" : found->second);
        }
    }

    void expectEqual(const std::string& what, const std::string& wanted, const std::string& got)
    {
        if (wanted != got) differences_.push_back(what + "\n    promised: " + wanted + "\n    found:    " + got);
    }

    void expectEqual(const std::string& what, const WireLines& wanted, const WireLines& got)
    {
        if (wanted != got)
            differences_.push_back(what + "\n    promised:" + shown(wanted) + "\n    found:" + shown(got));
    }

    const WireCase& wire_;
    const WireOperation& operation_;
    std::optional<CaptureServer> server_;
    std::string address_;
    CWapiClient client_;
    ClientState before_;
    std::vector<std::string> differences_;
};

}  // namespace

std::string filledWith(const WireCase& wire, const std::string& address, std::string text)
{
    text = withPlaceholder(std::move(text), "url", address + "/kznconnect/op.do");
    text = withPlaceholder(std::move(text), "server", address);
    text = withPlaceholder(std::move(text), "body", wire.request ? wire.request->body : "");
    return withPlaceholder(std::move(text), "reply", wire.reply ? wire.reply->body : "");
}

const WireOperation& operationOf(const WireCase& wire, const WireOperations& operations)
{
    const auto operation = std::ranges::find(operations, wire.operation, &WireOperation::name);
    if (operation == operations.end()) throw WireFileError("no such operation: " + wire.operation);
    return *operation;
}

std::vector<std::string> runWireCase(const WireCase& wire, const WireOperations& operations)
{
    return WireRun(wire, operationOf(wire, operations)).differences();
}
