// A whole call of the client, log and trace included, against the same post by one libcurl handle that is kept.
#include <curl/curl.h>
#include <sched.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "bench/HandMadeCall.h"
#include "bench/LogSize.h"
#include "bench/LoopbackServer.h"
#include "bench/Report.h"
#include "bench/Timing.h"
#include "client/WapiClient.h"

using namespace kzn::bench;
using kzn::pvutil::stringex::FromUtf8;

namespace {

constexpr int kPairs = 15'000;
constexpr int kBatch = 2;  // calls timed as one piece of work: short, so that some are left alone
constexpr int kCalls = 1'000;

constexpr std::string_view kCred = "5f0c2f7a-6d3b-4c6e-9a55-1d2f3e4b5c6d:us-00f1e2d3c4b5a697";
constexpr std::string_view kBody =
    "cmd=get&type=sessionInfo&id=sessioninfo&cred=5f0c2f7a-6d3b-4c6e-9a55-1d2f3e4b5c6d%3Aus-00f1e2d3c4b5a697";
constexpr std::string_view kReply =
    "<kznapi><response><result>SUCCESS</result></response><return><sessionInfo><userID>us-00f1e2d3c4b5a697</userID>"
    "<userName>anna.field@example.org</userName><sessionDuration>3600000</sessionDuration></sessionInfo></return></"
    "kznapi>";

std::size_t keep(const char* bytes, std::size_t one, std::size_t count, void* reply)
{
    static_cast<std::string*>(reply)->append(bytes, one * count);
    return one * count;
}

// Client and server take turns on one processor. On two, either side may pay for waking an idle one, which takes longer
// than the whole call.
void stayOnOneProcessor(Report& report)
{
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
    report.require(sched_setaffinity(0, sizeof one, &one) == 0, "the program cannot stay on one processor");
}

// The peer: the least that a caller of libcurl does for the same post and the same reply in memory.
class KeptHandle {
public:
    explicit KeptHandle(const std::string& url) : handle_(curl_easy_init())
    {
        lines_.reset(curl_slist_append(nullptr, "User-Agent: pvWapi/1.0"));
        curl_easy_setopt(handle_.get(), CURLOPT_URL, url.c_str());
        curl_easy_setopt(handle_.get(), CURLOPT_POSTFIELDS, kBody.data());
        curl_easy_setopt(handle_.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(kBody.size()));
        curl_easy_setopt(handle_.get(), CURLOPT_HTTPHEADER, lines_.get());
        curl_easy_setopt(handle_.get(), CURLOPT_WRITEFUNCTION, keep);
        curl_easy_setopt(handle_.get(), CURLOPT_WRITEDATA, &reply_);
    }

    bool post()
    {
        reply_.clear();
        return curl_easy_perform(handle_.get()) == CURLE_OK && reply_ == kReply;
    }

private:
    struct FreeHandle {
        void operator()(CURL* handle) const noexcept { curl_easy_cleanup(handle); }
    };
    struct FreeLines {
        void operator()(curl_slist* lines) const noexcept { curl_slist_free_all(lines); }
    };
    std::unique_ptr<curl_slist, FreeLines> lines_;
    std::unique_ptr<CURL, FreeHandle> handle_;
    std::string reply_;
};

template <typename Call>
double secondsOfBatch(Report& report, Call&& call)
{
    bool well = true;
    const double seconds = secondsOf(wallTime, [&] {
        for (int i = 0; i < kBatch; ++i) well = call() && well;
    });
    report.require(well, "a call has failed");
    return seconds;
}

void countConnections(Report& report, const LoopbackServer& server, CWapiClient& client, const CStringT& cred)
{
    const std::size_t before = server.connections();
    bool well = true;
    for (int i = 0; i < kCalls; ++i) well = client.getSessionInfo(cred) == 1 && well;
    report.require(well && client.getRefreshInterval() == 1'800'000, "a call has failed");
    report.exactly("connections that 1,000 calls open", server.connections() - before, 1);
}

void compareCalls(Report& report, const LoopbackServer& server, CWapiClient& client, const CStringT& cred)
{
    KeptHandle handle(server.url());
    const auto logBefore = logSize();
    const Ratio ratio = compareUndisturbed(
        report.pairs(kPairs), [&] { return secondsOfBatch(report, [&] { return client.getSessionInfo(cred) == 1; }); },
        [&] { return secondsOfBatch(report, [&] { return handle.post(); }); });
    const std::uintmax_t calls = std::uintmax_t{kBatch} * static_cast<std::uintmax_t>(report.pairs(kPairs) + 1);
    report.require(logSize() - logBefore > calls * (kBody.size() + kReply.size()), "the log was not written");
    report.note("getSessionInfo / the same post by a kept libcurl handle", ratio);
}

void compareWithHandMade(Report& report, const LoopbackServer& server, CWapiClient& client, const CStringT& cred)
{
    HandMadeCall byHand(server.url(), logFile() + ".by-hand");
    CStringT duration;
    const auto callByHand = [&] { return byHand.getSessionInfo(cred, duration) && duration.size() == 7; };
    const Ratio ratio = compareUndisturbed(
        report.pairs(kPairs), [&] { return secondsOfBatch(report, [&] { return client.getSessionInfo(cred) == 1; }); },
        [&] { return secondsOfBatch(report, callByHand); });
    report.atMost("getSessionInfo / the same by hand, with log and parser", ratio, 1.15);
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    stayOnOneProcessor(report);  // before the server's process is made, so that it stays there too
    const LoopbackServer server(kReply);
    CWapiClient client(FromUtf8(server.url()));
    const CStringT cred = FromUtf8(kCred);
    countConnections(report, server, client, cred);
    compareCalls(report, server, client, cred);
    compareWithHandMade(report, server, client, cred);
    return report.status();
}
