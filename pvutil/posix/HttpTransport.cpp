#include "pvutil/HttpTransport.h"

#include <curl/curl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "pvutil/HttpHeaders.h"

namespace kzn::pvutil {

namespace {

struct CleanUp {
    void operator()(CURL* easy) const noexcept { curl_easy_cleanup(easy); }
    void operator()(curl_slist* list) const noexcept { curl_slist_free_all(list); }
};

using Easy = std::unique_ptr<CURL, CleanUp>;
using HeaderList = std::unique_ptr<curl_slist, CleanUp>;

// Idle handles, each with the connections that it keeps open. A thread begins its search at a slot of its own, so that
// one that works alone finds the handle again that it gave back.
constinit std::array<std::atomic<CURL*>, 16> g_idle{};
constinit std::once_flag g_initialised;

std::size_t firstSlot() noexcept
{
    return std::hash<std::thread::id>{}(std::this_thread::get_id()) % g_idle.size();
}

// Whether the connection that this thread closed last had been reset, which tells that the other end left with bytes
// unread; one that read a whole request before it left ends the connection in order.
thread_local constinit bool t_wasReset = false;

int onClose(void*, curl_socket_t socket) noexcept
{
    tcp_info info{};
    socklen_t size = sizeof info;
    t_wasReset = ::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 && info.tcpi_state == TCP_CLOSE;
    return ::close(socket);
}

// What is the same for every exchange.
void configure(CURL* easy) noexcept
{
    curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, onClose);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(easy, CURLOPT_TCP_NODELAY, 1L);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
}

Easy takeHandle()
{
    const std::size_t first = firstSlot();
    for (std::size_t step = 0; step < g_idle.size(); ++step)
        if (Easy idle{g_idle[(first + step) % g_idle.size()].exchange(nullptr)}) return idle;

    std::call_once(g_initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    Easy easy{curl_easy_init()};
    if (easy) configure(easy.get());
    return easy;
}

void giveBack(Easy easy) noexcept
{
    const std::size_t first = firstSlot();
    for (std::size_t step = 0; step < g_idle.size() && easy; ++step)
        easy.reset(g_idle[(first + step) % g_idle.size()].exchange(easy.release()));
}

// One exchange as the callbacks see it.
class Run {
public:
    Run(CURL* easy, HttpExchange& exchange) : easy_(easy), exchange_(exchange) {}

    // Where a kept connection ends without an answer, libcurl asks again on a new one. That is right only if nobody can
    // have acted on the first request.
    bool mayAsk() const noexcept { return !isConnected_ || t_wasReset; }

    // The clock of silence runs while a connection stands; before that the time to connect is limited by itself.
    void connected() noexcept
    {
        isConnected_ = true;
        moved();
    }

    std::size_t read(char* buffer, std::size_t size) noexcept
    {
        std::size_t done = 0;
        while (done < size && piece_ < exchange_.body.size()) {
            const auto rest = exchange_.body[piece_].substr(offset_);
            const std::size_t count = std::min(rest.size(), size - done);
            std::memcpy(buffer + done, rest.data(), count);
            done += count;
            offset_ += count;
            if (count == rest.size()) {
                ++piece_;
                offset_ = 0;
            }
        }
        return done;
    }

    void rewind() noexcept { piece_ = offset_ = 0; }

    bool receive(std::string_view bytes) noexcept
    {
        moved();
        if (!hasBegun_ && !begin()) return false;
        return exchange_.receive(bytes);
    }

    bool begin() noexcept
    {
        long status = 0;
        curl_off_t length = -1;
        curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
        curl_easy_getinfo(easy_, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
        hasBegun_ = true;
        const auto declared = static_cast<std::uint64_t>(length);
        return exchange_.begin(static_cast<int>(status), length < 0 ? std::nullopt : std::optional(declared));
    }

    bool goesOn(curl_off_t down, curl_off_t up) noexcept
    {
        if (down != down_ || up != up_) moved();
        down_ = down;
        up_ = up;
        if (!exchange_.sent(static_cast<std::size_t>(up))) return false;
        return !isConnected_ || Clock::now() - lastMove_ < exchange_.limits.silence;
    }

    // A head that breaks off is no failure to libcurl. Several may come: of interim replies, of a proxy.
    void header(std::string_view line) noexcept
    {
        moved();
        hasHeard_ = true;
        if (line.starts_with("HTTP/")) headStands_ = false;
        if (line == "\r\n" || line == "\n") headStands_ = true;
    }

    void moved() noexcept { lastMove_ = Clock::now(); }
    bool hasHeard() const noexcept { return hasHeard_; }
    bool headStands() const noexcept { return headStands_; }
    bool hasBegun() const noexcept { return hasBegun_; }

private:
    using Clock = std::chrono::steady_clock;

    CURL* easy_;
    HttpExchange& exchange_;
    std::size_t piece_ = 0;
    std::size_t offset_ = 0;
    curl_off_t down_ = 0;
    curl_off_t up_ = 0;
    bool isConnected_ = false;
    bool hasHeard_ = false;
    bool headStands_ = false;
    bool hasBegun_ = false;
    Clock::time_point lastMove_ = Clock::now();
};

// libcurl's callbacks; C on both sides, so nothing may be thrown through them.

int onConnected(void* run, char*, char*, int, int) noexcept
{
    auto& self = *static_cast<Run*>(run);
    if (!self.mayAsk()) return CURL_PREREQFUNC_ABORT;
    self.connected();
    return CURL_PREREQFUNC_OK;
}

std::size_t onRead(char* buffer, std::size_t size, std::size_t count, void* run) noexcept
{
    return static_cast<Run*>(run)->read(buffer, size * count);
}

int onSeek(void* run, curl_off_t offset, int origin) noexcept
{
    if (offset != 0 || origin != SEEK_SET) return CURL_SEEKFUNC_CANTSEEK;
    static_cast<Run*>(run)->rewind();
    return CURL_SEEKFUNC_OK;
}

std::size_t onHeader(char* line, std::size_t size, std::size_t count, void* run) noexcept
{
    static_cast<Run*>(run)->header({line, size * count});
    return size * count;
}

std::size_t onReceived(char* bytes, std::size_t size, std::size_t count, void* run) noexcept
{
    return static_cast<Run*>(run)->receive({bytes, size * count}) ? size * count : 0;
}

int onProgress(void* run, curl_off_t, curl_off_t down, curl_off_t, curl_off_t up) noexcept
{
    return static_cast<Run*>(run)->goesOn(down, up) ? 0 : 1;
}

void setCallbacks(CURL* easy, Run& run) noexcept
{
    curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, onConnected);
    curl_easy_setopt(easy, CURLOPT_PREREQDATA, &run);
    curl_easy_setopt(easy, CURLOPT_READFUNCTION, onRead);
    curl_easy_setopt(easy, CURLOPT_READDATA, &run);
    curl_easy_setopt(easy, CURLOPT_SEEKFUNCTION, onSeek);
    curl_easy_setopt(easy, CURLOPT_SEEKDATA, &run);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, onHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &run);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, onReceived);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &run);
    curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, onProgress);
    curl_easy_setopt(easy, CURLOPT_XFERINFODATA, &run);
}

bool append(HeaderList& list, const char* line) noexcept
{
    curl_slist* const head = curl_slist_append(list.get(), line);
    if (head == nullptr) return false;
    static_cast<void>(list.release());
    list.reset(head);
    return true;
}

// libcurl adds lines of its own unless they are named here without a value, and takes "Name;" for one that has none.
HeaderList headerList(const HttpExchange& exchange)
{
    HeaderList list;
    bool whole = append(list, "Expect:");
    if (!hasHeader(exchange.headers, "Content-Type")) whole = whole && append(list, "Content-Type:");
    for (std::string line : exchange.headers) {
        const std::size_t colon = line.find(':');
        if (colon + 2 >= line.size()) line = line.substr(0, colon) + ';';
        whole = whole && append(list, line.c_str());
    }
    return whole ? std::move(list) : nullptr;
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

std::string valueOf(CURL* easy, const char* name)
{
    curl_header* header = nullptr;
    if (curl_easy_header(easy, name, 0, CURLH_HEADER, -1, &header) != CURLHE_OK) return {};
    return header->value;
}

// libcurl asks again by itself where it finds a kept connection at its end, but not where it meets an error of it.
bool wasKeptAndReset(CURL* easy, CURLcode code, const Run& run) noexcept
{
    long made = 1;
    curl_easy_getinfo(easy, CURLINFO_NUM_CONNECTS, &made);
    return (code == CURLE_SEND_ERROR || code == CURLE_RECV_ERROR) && made == 0 && t_wasReset && !run.hasHeard();
}

CURLcode ask(CURL* easy, Run& run) noexcept
{
    const CURLcode code = curl_easy_perform(easy);
    if (!wasKeptAndReset(easy, code, run)) return code;
    run.rewind();
    return curl_easy_perform(easy);
}

bool perform(CURL* easy, HttpExchange& exchange)
{
    const HeaderList headers = headerList(exchange);
    if (!headers) return false;
    Run run(easy, exchange);
    setCallbacks(easy, run);
    setBody(easy, exchange);
    curl_easy_setopt(easy, CURLOPT_URL, exchange.url.text().c_str());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(exchange.limits.replyBytes));
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(exchange.limits.connect.count()));
    const bool whole = ask(easy, run) == CURLE_OK && run.headStands() && (run.hasBegun() || run.begin());
    if (whole) {
        exchange.contentType = valueOf(easy, "Content-Type");
        exchange.location = valueOf(easy, "Location");
    }
    // The handle outlives what it was told of this exchange.
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, nullptr);
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, nullptr);
    return whole;
}

}  // namespace

bool transport(HttpExchange& exchange)
{
    Easy easy = takeHandle();
    if (!easy) return false;
    const bool whole = perform(easy.get(), exchange);
    giveBack(std::move(easy));
    return whole;
}

// libcurl's global state stays: at the end of the process another thread may still be inside a call, and nothing here
// can tell that end from an unloading.
void shutDownTransport() noexcept
{
    for (auto& slot : g_idle) Easy(slot.exchange(nullptr)).reset();
}

}  // namespace kzn::pvutil
