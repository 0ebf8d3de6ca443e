// Commands of the caller's own making.
#include "host/Call.h"
#include "host/Errors.h"
#include "host/Text.h"
#include "host/Topics.h"

namespace host {

namespace {

constexpr std::size_t kQuotedReply = 300;

CStringT headerLines(const Call& call)
{
    CStringT lines;
    for (const CStringT& line : call.listAsTyped("--header")) {
        for (const auto unit : line) {
            if (unit < ' ' && unit != '\t') throw LocalProblem("--header: a line cannot hold control characters");
        }
        if (line.find(':') == CStringT::npos) throw LocalProblem("--header: not of the form Name: value");
        lines += line + FromUtf8("\r\n");
    }
    return lines;
}

/// The client keeps no message of such a call, so the reply itself has to say what went wrong. It is masked as a whole:
/// half a secret would be none that anybody knows.
std::string refusal(const CStringT& reply, const Secrets& secrets)
{
    if (reply.empty()) return "no reply";
    const CStringT shown = FromUtf8(secrets.masked(ToUtf8(reply)));
    return "the reply is not a success: " + ToUtf8(shown.substr(0, kQuotedReply)) +
           (shown.size() > kQuotedReply ? "…" : "");
}

void proxy(Call& call)
{
    const CStringT command = call.asTyped("command");
    if (command.find(FromUtf8("cmd=login")) != CStringT::npos) {
        throw LocalProblem("the client signs nobody in this way; use pvwapi login");
    }
    const bool withCred = !call.given("--no-cred");
    const CStringT url = call.given("--url") ? call.text("--url") : call.client().getOpURL();
    const auto method = call.text("--method") == FromUtf8("get") ? CWapiClient::METHOD_GET : CWapiClient::METHOD_POST;
    const CStringT headers = headerLines(call);
    const CStringT cred = withCred ? call.cred() : CStringT();
    CStringT reply;
    const int result = call.client().WapiProxyCall(cred, command, method, url, headers, withCred ? 1 : 0, reply);
    call.checkNetwork();
    // Without a credential nobody looks into the reply: that there is one is all the success there can be.
    if (withCred ? result != 1 : reply.empty()) throw OperationFailed(refusal(reply, call.wire().secrets()));
    call.showText("reply", reply);
}

void plainCall(Call& call)
{
    call.check(call.client().callWapi(call.cred(), call.asTyped("command")));
}

}  // namespace

Commands proxyCommands()
{
    const Argument command{"command", "The form text, such as \"cmd=get&type=user&id=current\", sent as it stands"};
    return {
        {"proxy",
         "Send a command of your own making and print the reply as it came",
         {command,
          {"--url", "Where to; the service's operation URL unless given"},
          {"--method",
           "post, the default, sends a form; get joins the command to the URL",
           Kind::text,
           {"get", "post"}},
          {"--header", "A further header line, \"Name: value\"; may be repeated", Kind::list},
          {"--no-cred", "Leave the session's credential out, and take any reply for a success", Kind::flag}},
         proxy,
         {"WapiProxyCall"}},
        {"call", "Send a command of your own making and see whether it succeeds", {command}, plainCall, {"callWapi"}},
    };
}

}  // namespace host
