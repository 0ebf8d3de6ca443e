// What goes in and out of the server as texts: requests as they came, and the bytes of replies.
#include <algorithm>
#include <boost/beast/http/status.hpp>
#include <cctype>

#include "tests/support/CaptureServer.h"

namespace kzn::test {

namespace http = boost::beast::http;

namespace {

bool sameName(std::string_view left, std::string_view right)
{
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace

std::string CapturedRequest::header(std::string_view name) const
{
    const auto found =
        std::find_if(headers.begin(), headers.end(), [&](const auto& h) { return sameName(h.first, name); });
    return found == headers.end() ? std::string() : found->second;
}

bool CapturedRequest::has(std::string_view name) const
{
    return std::any_of(headers.begin(), headers.end(), [&](const auto& h) { return sameName(h.first, name); });
}

Script& Script::send(std::string bytes)
{
    steps_.push_back({std::chrono::milliseconds(0), std::move(bytes)});
    return *this;
}

Script& Script::pause(std::chrono::milliseconds time)
{
    steps_.push_back({time, {}});
    return *this;
}

Script& Script::close()
{
    end_ = End::close;
    return *this;
}

Script& Script::reset()
{
    end_ = End::reset;
    return *this;
}

Script& Script::stall()
{
    end_ = End::stall;
    return *this;
}

std::string replyText(int status, std::string_view contentType, std::string_view body, const Headers& more)
{
    const auto reason = http::obsolete_reason(http::int_to_status(static_cast<unsigned>(status)));
    std::string text = "HTTP/1.1 " + std::to_string(status) + ' ' + std::string(reason) + "\r\n";
    if (!contentType.empty()) text.append("Content-Type: ").append(contentType).append("\r\n");
    for (const auto& [name, value] : more) text.append(name).append(": ").append(value).append("\r\n");
    text.append("Content-Length: ").append(std::to_string(body.size())).append("\r\n\r\n").append(body);
    return text;
}

}  // namespace kzn::test
