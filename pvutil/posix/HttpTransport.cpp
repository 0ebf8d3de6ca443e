#include "pvutil/HttpTransport.h"

#include <curl/curl.h>
#include <dlfcn.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "pvutil/HttpHeaders.h"
#include "pvutil/posix/CurlFault.h"
#include "pvutil/posix/CurlLine.h"
#include "pvutil/posix/CurlRun.h"

namespace kzn::pvutil {

namespace {

struct CleanUp {
    void operator()(curl_slist* list) const noexcept { curl_slist_free_all(list); }
};

using ErrorText = std::array<char, CURL_ERROR_SIZE>;

// Keeps its end: libcurl looks for it from wherever it is told to append.
class HeaderList {
public:
    curl_slist* get() const noexcept { return head_.get(); }

    bool append(const char* line) noexcept
    {
        curl_slist* const begin = curl_slist_append(end_, line);
        if (begin == nullptr) return false;
        if (!head_) head_.reset(begin);
        end_ = end_ == nullptr ? begin : end_->next;
        return true;
    }

private:
    std::unique_ptr<curl_slist, CleanUp> head_;
    curl_slist* end_ = nullptr;
};

// libcurl adds lines of its own unless they are named here without a value, and takes "Name;" for one that has none.
bool fill(HeaderList& list, const HttpExchange& exchange)
{
    bool whole = list.append("Expect:");
    if (!hasHeader(exchange.headers, "Content-Type")) whole = whole && list.append("Content-Type:");
    for (std::string line : exchange.headers) {
        const std::size_t colon = line.find(':');
        if (colon + 2 >= line.size()) line = line.substr(0, colon) + ';';
        whole = whole && list.append(line.c_str());
    }
    return whole;
}

// A body in one piece goes out from where it stands.
void setBody(CURL* easy, const HttpExchange& exchange) noexcept
{
    if (exchange.method != HTTP_METHOD::POST) {
        curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
        return;
    }
    const bool inOnePiece = exchange.body.size() == 1 && !exchange.body.front().empty();
    const bool isEmpty = exchange.bodyBytes() == 0;
    const char* const bytes = inOnePiece ? exchange.body.front().data() : isEmpty ? "" : nullptr;
    curl_easy_setopt(easy, CURLOPT_POST, 1L);
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(exchange.bodyBytes()));
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, bytes);
}

bool isSet(const char* variable) noexcept
{
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

// libcurl keeps a copy of each text, and goes on with none where it has no memory for one.
bool setText(CURL* easy, CURLoption option, const char* text) noexcept
{
    return curl_easy_setopt(easy, option, text) == CURLE_OK;
}

// Of the address it would leave the query out then and ask without it. Told the target, it asks for all of it or not at
// all; a proxy that it asks in the clear wants the whole address there, and which requests go to one it decides itself.
bool setAddress(CURL* easy, const Url& url)
{
    const bool isAsked = !url.secure && (isSet("http_proxy") || isSet("all_proxy") || isSet("ALL_PROXY"));
    return setText(easy, CURLOPT_URL, url.text().c_str()) &&
           setText(easy, CURLOPT_REQUEST_TARGET, isAsked ? nullptr : url.target.c_str());
}

// What the user's environment names for all programs; else libcurl's own, which is the system's.
bool setAuthority(CURL* easy, CURLoption option, const char* variable, const char* otherwise) noexcept
{
    const char* const place = isSet(variable) ? std::getenv(variable) : otherwise;
    return place == nullptr || setText(easy, option, place);
}

bool setAuthorities(CURL* easy) noexcept
{
    const auto* const libcurl = curl_version_info(CURLVERSION_NOW);
    return setAuthority(easy, CURLOPT_CAINFO, "SSL_CERT_FILE", libcurl->cainfo) &&
           setAuthority(easy, CURLOPT_CAPATH, "SSL_CERT_DIR", libcurl->capath);
}

// False where there is no memory for it.
bool setRequest(CURL* easy, const HttpExchange& exchange, curl_slist* headers, ErrorText& error)
{
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, error.data());
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(exchange.limits.replyBytes));
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(exchange.limits.connect.count()));
    setBody(easy, exchange);
    return setAddress(easy, exchange.url) && (!exchange.url.secure || setAuthorities(easy));
}

// The handle outlives what it was told of this exchange.
void forgetRequest(CURL* easy) noexcept
{
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, nullptr);
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, nullptr);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, nullptr);
}

std::string valueOf(CURL* easy, const char* name)
{
    curl_header* header = nullptr;
    if (curl_easy_header(easy, name, 0, CURLH_HEADER, -1, &header) != CURLHE_OK) return {};
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

    void wake() noexcept override { curl_multi_wakeup(multi_); }

    CURLMcode until(std::chrono::milliseconds time) noexcept
    {
        return curl_multi_poll(multi_, nullptr, 0, static_cast<int>(time.count()), nullptr);
    }

private:
    CURLM* multi_;
    CallControl* control_;
};

// What became of the exchange; nothing where it has not come to an end of its own.
CURLcode resultOf(CURLM* multi) noexcept
{
    int left = 0;
    while (const CURLMsg* const message = curl_multi_info_read(multi, &left))
        if (message->msg == CURLMSG_DONE) return message->data.result;  // NOLINT(*-union-access): libcurl's own
    return CURLE_FAILED_INIT;
}

// Looked at only once a head stands: to ask the system each time would cost a short call some of its speed.
bool mayFrame(const CurlLine& line, CurlRun& run) noexcept
{
    return !run.headStands() || run.mayFrame(line.taken());
}

// Until the exchange has come to its end or may not go on; the cause is kept then, and the code is of no matter.
CURLcode drive(const CurlLine& line, Wait& wait, CurlRun& run) noexcept
{
    for (int running = 1;;) {
        if (curl_multi_perform(line.multi(), &running) != CURLM_OK) return CURLE_OUT_OF_MEMORY;
        if (running == 0) return resultOf(line.multi());
        if (!run.mayGoOn() || !mayFrame(line, run)) return CURLE_ABORTED_BY_CALLBACK;
        if (wait.until(run.patience()) != CURLM_OK) return CURLE_OUT_OF_MEMORY;
    }
}

CURLcode attempt(const CurlLine& line, CurlRun& run, HttpExchange& exchange) noexcept
{
    Wait wait(line.multi(), exchange.control);
    if (curl_multi_add_handle(line.multi(), line.easy()) != CURLM_OK) return CURLE_OUT_OF_MEMORY;
    const CURLcode code = drive(line, wait, run);
    curl_multi_remove_handle(line.multi(), line.easy());
    return code;
}

bool metAnErrorOfAKeptConnection(CURL* easy, CURLcode code) noexcept
{
    long made = 1;
    curl_easy_getinfo(easy, CURLINFO_NUM_CONNECTS, &made);
    return (code == CURLE_SEND_ERROR || code == CURLE_RECV_ERROR) && made == 0;
}

// libcurl would ask again by itself where it finds a kept connection at its end, but not where it meets an error of it.
CURLcode ask(const CurlLine& line, CurlRun& run, HttpExchange& exchange) noexcept
{
    const CURLcode code = attempt(line, run, exchange);
    const bool metItsEnd = run.wasAskedAgain() || metAnErrorOfAKeptConnection(line.easy(), code);
    if (!metItsEnd || !run.mayRepeat()) return code;
    run.restart();
    return attempt(line, run, exchange);
}

// A look-up that was left to its thread goes on in libcurl's code, which must not be unloaded before it ends; nobody
// can tell when that is.
void keepLibcurlLoaded() noexcept
{
    Dl_info found{};
    if (::dladdr(reinterpret_cast<const void*>(&curl_easy_init), &found) != 0)
        static_cast<void>(::dlopen(found.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE));
}

bool perform(CurlLine& line, HttpExchange& exchange)
{
    CURL* const easy = line.easy();
    HeaderList headers;
    if (!fill(headers, exchange)) return exchange.fail(HttpFault::local, HttpPhase::connect);
    ErrorText error{};
    CurlRun run(easy, exchange);
    run.setCallbacks();
    const bool isSetUp = setRequest(easy, exchange, headers.get(), error);
    line.serve(&run);
    const CURLcode code = isSetUp ? ask(line, run, exchange) : CURLE_OUT_OF_MEMORY;
    const bool whole = code == CURLE_OK && run.headStands() && mayFrame(line, run) && run.finish();
    line.serve(nullptr);
    if (whole) {
        exchange.contentType = valueOf(easy, "Content-Type");
        exchange.location = valueOf(easy, "Location");
    } else {
        keepCause(easy, code == CURLE_OK ? CURLE_PARTIAL_FILE : code, error.data(), run, exchange);
        if (run.phase() == HttpPhase::lookUp && code != CURLE_COULDNT_RESOLVE_HOST) keepLibcurlLoaded();
    }
    forgetRequest(easy);
    return whole;
}

}  // namespace

bool transport(HttpExchange& exchange)
{
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
