#include "bench/KeptPost.h"

#include <windows.h>

#include <winhttp.h>

namespace kzn::bench {

namespace {

struct CloseHandle {
    void operator()(void* handle) const noexcept { WinHttpCloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseHandle>;

bool read(HINTERNET request, std::string& reply)
{
    for (;;) {
        DWORD waiting = 0;
        if (WinHttpQueryDataAvailable(request, &waiting) == FALSE) return false;
        if (waiting == 0) return true;
        const std::size_t before = reply.size();
        reply.resize(before + waiting);
        DWORD done = 0;
        if (WinHttpReadData(request, reply.data() + before, waiting, &done) == FALSE) return false;
        reply.resize(before + done);
    }
}

}  // namespace

struct KeptPost::Kept {
    std::string body;
    std::wstring path;
    Handle session{WinHttpOpen(L"pvWapi/1.0", WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0)};
    Handle connection;
};

const char* const KeptPost::kName = "WinHTTP with one session handle";

KeptPost::KeptPost(const std::string& url, std::string_view body) : kept_(std::make_unique<Kept>())
{
    kept_->body = body;
    const std::wstring wide(url.begin(), url.end());
    URL_COMPONENTS parts{};
    parts.dwStructSize = sizeof parts;
    parts.dwHostNameLength = parts.dwUrlPathLength = 1;
    WinHttpCrackUrl(wide.c_str(), 0, 0, &parts);
    kept_->path.assign(parts.lpszUrlPath, parts.dwUrlPathLength);
    const std::wstring host(parts.lpszHostName, parts.dwHostNameLength);
    kept_->connection.reset(WinHttpConnect(kept_->session.get(), host.c_str(), parts.nPort, 0));
}

KeptPost::~KeptPost() = default;

const std::string& KeptPost::post()
{
    reply_.clear();
    const Handle request(
        WinHttpOpenRequest(kept_->connection.get(), L"POST", kept_->path.c_str(), nullptr, nullptr, nullptr, 0));
    const auto size = static_cast<DWORD>(kept_->body.size());
    const bool isWhole = WinHttpSendRequest(request.get(), L"Content-Type: application/x-www-form-urlencoded",
                                            static_cast<DWORD>(-1), kept_->body.data(), size, size, 0) != FALSE &&
                         WinHttpReceiveResponse(request.get(), nullptr) != FALSE && read(request.get(), reply_);
    if (!isWhole) reply_.clear();
    return reply_;
}

std::size_t connectionsFor(std::size_t calls)
{
    return calls;
}

}  // namespace kzn::bench
