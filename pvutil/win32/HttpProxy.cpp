#include "pvutil/win32/HttpProxy.h"

#include <windows.h>
#include <winhttp.h>

#include <memory>

#include "pvutil/Ascii.h"
#include "pvutil/StringEx.h"

namespace kzn::pvutil {

namespace {

struct Free {
    void operator()(wchar_t* text) const noexcept { GlobalFree(text); }
};

std::string takeText(wchar_t* text)
{
    const std::unique_ptr<wchar_t, Free> owner(text);
    return text == nullptr ? std::string() : stringex::ToUtf8(text);
}

// The next of a list; empty at its end.
std::string_view takeEntry(std::string_view& list)
{
    constexpr std::string_view kBetween = "; \t\r\n";
    list.remove_prefix(std::min(list.find_first_not_of(kBetween), list.size()));
    const auto entry = list.substr(0, list.find_first_of(kBetween));
    list.remove_prefix(entry.size());
    return entry;
}

// "*" stands for any run of characters, an empty one too.
bool isLike(std::string_view text, std::string_view pattern)
{
    while (!pattern.empty() && pattern.front() != '*') {
        if (text.empty() || !ascii::same(text.substr(0, 1), pattern.substr(0, 1))) return false;
        text.remove_prefix(1);
        pattern.remove_prefix(1);
    }
    if (pattern.empty()) return text.empty();
    pattern.remove_prefix(1);
    for (std::size_t skipped = 0; skipped <= text.size(); ++skipped)
        if (isLike(text.substr(skipped), pattern)) return true;
    return false;
}

bool needsNone(const Url& url, std::string_view bypass)
{
    for (auto entry = takeEntry(bypass); !entry.empty(); entry = takeEntry(bypass)) {
        if (ascii::same(entry, "<local>") ? url.host.find('.') == std::string::npos : isLike(url.host, entry))
            return true;
    }
    return false;
}

// An entry is "host:port", for one scheme with "http=" or "https=" before it; a scheme before the host says nothing.
std::string hostAndPort(std::string_view entry)
{
    if (const auto at = entry.find("://"); at != std::string_view::npos) entry.remove_prefix(at + 3);
    entry = entry.substr(0, entry.find('/'));
    const bool hasPort =
        entry.find(':', entry.find(']') == std::string_view::npos ? 0 : entry.find(']')) != std::string_view::npos;
    return std::string(entry).append(hasPort ? "" : ":80");
}

}  // namespace

std::string proxyFor(const Url& url, std::string_view proxies, std::string_view bypass)
{
    if (needsNone(url, bypass)) return {};
    for (auto entry = takeEntry(proxies); !entry.empty(); entry = takeEntry(proxies)) {
        const auto equals = entry.find('=');
        if (equals == std::string_view::npos) return hostAndPort(entry);
        if (ascii::same(entry.substr(0, equals), url.secure ? "https" : "http"))
            return hostAndPort(entry.substr(equals + 1));
    }
    return {};
}

std::string proxyFor(const Url& url)
{
    WINHTTP_PROXY_INFO settings{};
    if (!WinHttpGetDefaultProxyConfiguration(&settings)) return {};
    const std::string proxies = takeText(settings.lpszProxy);
    const std::string bypass = takeText(settings.lpszProxyBypass);
    if (settings.dwAccessType != WINHTTP_ACCESS_TYPE_NAMED_PROXY) return {};
    return proxyFor(url, proxies, bypass);
}

}  // namespace kzn::pvutil
