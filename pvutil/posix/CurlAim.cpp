#include "pvutil/posix/CurlAim.h"

#include <cstdlib>
#include <string>
#include <utility>

#include "pvutil/HttpExchange.h"

namespace kzn::pvutil {

namespace {

// libcurl asks first whether it may send a body that is larger than this.
constexpr std::size_t kAsksAbove = std::size_t{1} << 20;

// Of a form libcurl writes most lines by itself, which costs it less than those of a list: it looks through that for
// each of its own.
bool areOfForm(const HttpExchange& exchange) noexcept
{
    const HeaderLines& lines = exchange.headers;
    return exchange.method == HTTP_METHOD::POST && exchange.bodyBytes() <= kAsksAbove && lines.size() == 3 &&
           lines[0] == "Accept: */*" && lines[1].starts_with("User-Agent: ") &&
           lines[2] == "Content-Type: application/x-www-form-urlencoded";
}

bool isSet(const char* variable) noexcept
{
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

// libcurl keeps a copy of each text, and goes on with none where it has no memory for one.
bool setText(CURL* easy, CURLoption option, const char* text) noexcept
{
    return curl.easySetopt(easy, option, text) == CURLE_OK;
}

// What the user's environment names for all programs; else libcurl's own, which is the system's.
bool setAuthority(CURL* easy, CURLoption option, const char* variable, const char* otherwise) noexcept
{
    const char* const place = isSet(variable) ? std::getenv(variable) : otherwise;
    return place == nullptr || setText(easy, option, place);
}

bool setAuthorities(CURL* easy) noexcept
{
    const auto* const libcurl = curl.versionInfo(CURLVERSION_NOW);
    return setAuthority(easy, CURLOPT_CAINFO, "SSL_CERT_FILE", libcurl->cainfo) &&
           setAuthority(easy, CURLOPT_CAPATH, "SSL_CERT_DIR", libcurl->capath);
}

// Keeps its end: libcurl looks for it from wherever it is told to append.
template <typename List>
class Appender {
public:
    explicit Appender(List& list) noexcept : list_(list) {}

    bool append(const char* line) noexcept
    {
        curl_slist* const begin = curl.slistAppend(end_, line);
        if (begin == nullptr) return false;
        if (!list_) list_.reset(begin);
        end_ = end_ == nullptr ? begin : end_->next;
        return true;
    }

private:
    List& list_;
    curl_slist* end_ = nullptr;
};

// libcurl adds lines of its own unless they are named here without a value, and takes "Name;" for one that has none.
template <typename List>
bool fill(List& list, const HeaderLines& lines)
{
    Appender appender(list);
    bool whole = appender.append("Expect:");
    if (!hasHeader(lines, "Content-Type")) whole = whole && appender.append("Content-Type:");
    for (const std::string& line : lines) {
        const std::size_t colon = line.find(':');
        const bool hasValue = colon + 2 < line.size();
        whole = whole && appender.append(hasValue ? line.c_str() : (line.substr(0, colon) + ';').c_str());
    }
    return whole;
}

}  // namespace

bool CurlAim::set(CURL* easy, const HttpExchange& exchange)
{
    return setAddress(easy, exchange.url) && setHeaders(easy, exchange) &&
           (!exchange.url.secure || setAuthorities(easy));
}

// Of the address alone libcurl would leave the query out where it has no memory for it, and ask without it. Told the
// target, it asks for all of it or not at all; a proxy that it asks in the clear wants the whole address there, and
// which requests go to one it decides itself.
bool CurlAim::setAddress(CURL* easy, const Url& url)
{
    const bool isForProxy = !url.secure && (isSet("http_proxy") || isSet("all_proxy") || isSet("ALL_PROXY"));
    if (url_ == url && isForProxy_ == isForProxy) return true;
    url_.reset();
    if (!setText(easy, CURLOPT_URL, url.text().c_str()) ||
        !setText(easy, CURLOPT_REQUEST_TARGET, isForProxy ? nullptr : url.target.c_str()))
        return false;
    isForProxy_ = isForProxy;
    url_ = url;
    return true;
}

bool CurlAim::setHeaders(CURL* easy, const HttpExchange& exchange)
{
    const bool isForm = areOfForm(exchange);
    if (list_ && isForm_ == isForm && lines_ == exchange.headers) return true;
    drop(easy);
    lines_ = exchange.headers;
    isForm_ = isForm;
    if (!(isForm ? Appender(list_).append(lines_[1].c_str()) : fill(list_, lines_))) {
        drop(easy);
        return false;
    }
    curl.easySetopt(easy, CURLOPT_HTTPHEADER, list_.get());
    return true;
}

void CurlAim::forget(CURL* easy) noexcept
{
    if (!isForm_) drop(easy);
}

void CurlAim::drop(CURL* easy) noexcept
{
    curl.easySetopt(easy, CURLOPT_HTTPHEADER, nullptr);
    list_.reset();
    lines_.clear();
}

}  // namespace kzn::pvutil
