#include "pvutil/HttpTransport.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "pvutil/posix/CurlApi.h"
#include "pvutil/posix/CurlFault.h"
#include "pvutil/posix/CurlLine.h"
#include "pvutil/posix/CurlRun.h"

namespace kzn::pvutil {

namespace {

using ErrorText = std::array<char, CURL_ERROR_SIZE>;

// A body in one piece goes out from where it stands.
void setBody(CURL* easy, const HttpExchange& exchange) noexcept
{
    if (exchange.method != HTTP_METHOD::POST) {
        curl.easySetopt(easy, CURLOPT_HTTPGET, 1L);
        return;
    }
    const bool inOnePiece = exchange.body.size() == 1 && !exchange.body.front().empty();
    const bool isEmpty = exchange.bodyBytes() == 0;
    const char* const bytes = inOnePiece ? exchange.body.front().data() : isEmpty ? "" : nullptr;
    curl.easySetopt(easy, CURLOPT_POST, 1L);
    curl.easySetopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(exchange.bodyBytes()));
    curl.easySetopt(easy, CURLOPT_POSTFIELDS, bytes);
}

// False where there is no memory for it.
bool setRequest(CurlLine& line, const HttpExchange& exchange, ErrorText& error)
{
    CURL* const easy = line.easy();
    curl.easySetopt(easy, CURLOPT_ERRORBUFFER, error.data());
    curl.easySetopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(exchange.limits.replyBytes));
    curl.easySetopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(exchange.limits.connect.count()));
    setBody(easy, exchange);
    return line.aim().set(easy, exchange);
}

// The handle outlives what it was told of this exchange.
void forgetRequest(CurlLine& line) noexcept
{
    CURL* const easy = line.easy();
    line.aim().forget(easy);
    curl.easySetopt(easy, CURLOPT_POSTFIELDS, nullptr);
    curl.easySetopt(easy, CURLOPT_ERRORBUFFER, nullptr);
}

std::string valueOf(CURL* easy, const char* name)
{
    curl_header* header = nullptr;
    if (curl.easyHeader(easy, name, 0, CURLH_HEADER, -1, &header) != CURLHE_OK) return {};
    return header->value;
}

// What cancel() wakes: the one place where a call waits.
class Wait : public CallControl::Waker {
public:
    Wait(CURLM* multi, CallControl* control) noexcept : multi_(multi), control_(control)
    {
        if (control_ != nullptr) control_->wakes(this);
    }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
    ~Wait()
    {
        if (control_ != nullptr) control_->wakes(nullptr);
    }

    void wake() noexcept override { curl.multiWakeup(multi_); }

    CURLMcode until(std::chrono::milliseconds time) noexcept
    {
        return curl.multiPoll(multi_, nullptr, 0, static_cast<int>(time.count()), nullptr);
    }

private:
    CURLM* multi_;
    CallControl* control_;
};

// What became of the exchange; nothing where it has not come to an end of its own.
CURLcode resultOf(CURLM* multi) noexcept
{
    int left = 0;
    while (const CURLMsg* const message = curl.multiInfoRead(multi, &left))
        if (message->msg == CURLMSG_DONE) return message->data.result;  // NOLINT(*-union-access): libcurl's own
    return CURLE_FAILED_INIT;
}

// Looked at only once a head stands, and what waits unread only where it matters: to ask the system each time would
// cost a short call some of its speed.
bool mayFrame(CurlLine& line, CurlRun& run) noexcept
{
    if (!run.headStands()) return true;
    const std::uint64_t received = line.received();
    return run.isFraming(received) || run.mayFrame(received - std::min(received, line.unread()));
}

// Until the exchange has come to its end or may not go on; the cause is kept then, and the code is of no matter.
CURLcode drive(CurlLine& line, Wait& wait, CurlRun& run) noexcept
{
    for (int running = 1;;) {
        if (curl.multiPerform(line.multi(), &running) != CURLM_OK) return CURLE_OUT_OF_MEMORY;
        if (running == 0) return resultOf(line.multi());
        if (!run.mayGoOn() || !mayFrame(line, run)) return CURLE_ABORTED_BY_CALLBACK;
        if (wait.until(run.patience()) != CURLM_OK) return CURLE_OUT_OF_MEMORY;
    }
}

CURLcode attempt(CurlLine& line, CurlRun& run, HttpExchange& exchange) noexcept
{
    Wait wait(line.multi(), exchange.control);
    if (curl.multiAddHandle(line.multi(), line.easy()) != CURLM_OK) return CURLE_OUT_OF_MEMORY;
    const CURLcode code = drive(line, wait, run);
    curl.multiRemoveHandle(line.multi(), line.easy());
    return code;
}

bool metAnErrorOfAKeptConnection(CURL* easy, CURLcode code) noexcept
{
    long made = 1;
    curl.easyGetinfo(easy, CURLINFO_NUM_CONNECTS, &made);
    return (code == CURLE_SEND_ERROR || code == CURLE_RECV_ERROR) && made == 0;
}

// libcurl would ask again by itself where it finds a kept connection at its end, but not where it meets an error of it.
CURLcode ask(CurlLine& line, CurlRun& run, HttpExchange& exchange) noexcept
{
    const CURLcode code = attempt(line, run, exchange);
    const bool metItsEnd = run.wasAskedAgain() || metAnErrorOfAKeptConnection(line.easy(), code);
    if (!metItsEnd || !run.mayRepeat()) return code;
    run.restart();
    return attempt(line, run, exchange);
}

bool perform(CurlLine& line, HttpExchange& exchange)
{
    CURL* const easy = line.easy();
    ErrorText error{};
    CurlRun run(easy, exchange);
    const bool isSetUp = setRequest(line, exchange, error);
    line.serve(&run);
    const CURLcode code = isSetUp ? ask(line, run, exchange) : CURLE_OUT_OF_MEMORY;
    const bool whole = code == CURLE_OK && run.headStands() && mayFrame(line, run) && run.finish();
    line.serve(nullptr);
    if (whole) {
        exchange.contentType = valueOf(easy, "Content-Type");
        exchange.location = valueOf(easy, "Location");
    } else {
        keepCause(easy, code == CURLE_OK ? CURLE_PARTIAL_FILE : code, error.data(), run, exchange);
    }
    forgetRequest(line);
    return whole;
}

}  // namespace

bool transport(HttpExchange& exchange)
{
    if (const char* const why = loadCurl()) return exchange.fail(HttpFault::local, HttpPhase::connect, why);
    auto line = takeLine();
    if (!line) return exchange.fail(HttpFault::local, HttpPhase::connect);
    const bool whole = perform(*line, exchange);
    giveBack(std::move(line));
    return whole;
}

// libcurl's global state stays: at the end of the process another thread may still be inside a call, and nothing here
// can tell that end from an unloading.
void shutDownTransport() noexcept
{
    dropLines();
}

}  // namespace kzn::pvutil
