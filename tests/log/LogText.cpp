#include "tests/log/LogText.h"

#include <algorithm>

namespace logtest {

using namespace logreader;

std::string entry(std::string_view text, std::string_view pid, std::string_view tid, std::string_view endOfLine,
                  std::string_view level)
{
    std::string whole = "\r\n<";
    whole.append(kTime).append(", pid=").append(pid).append(", tid=").append(tid).append("> ");
    return whole.append(level).append(":  ").append(text).append(endOfLine);
}

std::string call(std::string_view request, std::string_view reply, std::string_view pid, std::string_view tid)
{
    return entry(request, pid, tid) + entry(reply, pid, tid);
}

std::string failure(std::string_view reason, std::string_view exceptionID)
{
    std::string reply = "<kznapi><response><result>FAILURE</result><reason>";
    return reply.append(reason)
        .append("</reason><exceptionID>")
        .append(exceptionID)
        .append("</exceptionID></response></kznapi>");
}

std::vector<Call> callsOf(std::string_view log, std::size_t piece)
{
    std::vector<Call> calls;
    CallReader reader([&](Call&& call) { calls.push_back(std::move(call)); });
    while (!log.empty()) {
        reader.feed(log.substr(0, piece));
        log.remove_prefix(std::min(piece, log.size()));
    }
    reader.end();
    return calls;
}

std::vector<std::string> resultsOf(std::string_view log)
{
    std::vector<std::string> results;
    for (const Call& call : callsOf(log)) {
        results.push_back(call.operation + " " + std::string(nameOf(call.outcome.kind)));
    }
    return results;
}

}  // namespace logtest
