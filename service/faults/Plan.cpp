#include "service/faults/Plan.h"

#include <algorithm>
#include <boost/beast/http/status.hpp>

#include "service/base/Text.h"

namespace service::faults {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

std::string header(std::string_view name, std::string_view value)
{
    return std::string(name).append(": ").append(value).append(kLineEnd);
}

// Status line and headers, without what says how long the body is and without the empty line behind.
std::string headOf(const http::Response& response, bool keepAlive)
{
    const auto reason = boost::beast::http::obsolete_reason(boost::beast::http::int_to_status(response.status));
    std::string head = "HTTP/1.1 " + std::to_string(response.status) + ' ' + std::string(reason.data(), reason.size());
    head += kLineEnd;
    head += header("Server", "pvwapi-service") + header("Content-Type", response.contentType);
    for (const auto& [name, value] : response.headers) head += header(name, value);
    if (!keepAlive) head += header("Connection", "close");
    return head;
}

std::string wholeWith(const http::Response& response, bool keepAlive, std::string_view moreHeaders)
{
    return headOf(response, keepAlive)
        .append(moreHeaders)
        .append(header("Content-Length", std::to_string(response.body.size())))
        .append(kLineEnd)
        .append(response.body);
}

Plan simply(std::string bytes, Plan::End end)
{
    Plan plan;
    plan.bytes = std::move(bytes);
    plan.end = end;
    return plan;
}

Plan slowly(std::string bytes, long long bytesPerSecond, Plan::End end)
{
    constexpr long long kMostPieces = 10;  // a second
    const long long pieces = std::min(bytesPerSecond, kMostPieces);
    Plan plan = simply(std::move(bytes), end);
    plan.piece = static_cast<std::size_t>(bytesPerSecond / pieces);
    plan.pause = std::chrono::milliseconds(1000 / pieces);
    return plan;
}

// Neither a length nor chunks: the body lasts as long as the connection, and the connection as long as the client.
Plan endlessly(const http::Response& response)
{
    constexpr std::size_t kAtOnce = 64UL * 1024;
    Plan plan = simply(headOf(response, false).append(kLineEnd).append(response.body), Plan::End::close);
    plan.more.assign(kAtOnce, ' ');
    return plan;
}

Plan lying(const http::Response& response, long long by)
{
    const long long length = std::max(0LL, static_cast<long long>(response.body.size()) + by);
    return simply(headOf(response, true)
                      .append(header("Content-Length", std::to_string(length)))
                      .append(kLineEnd)
                      .append(response.body),
                  Plan::End::close);
}

// A good chunk, and then a size that is none.
Plan brokenChunks(const http::Response& response)
{
    constexpr std::string_view kFirst = "10\r\n";
    const std::string body = response.body + std::string(16, ' ');
    return simply(headOf(response, true)
                      .append(header("Transfer-Encoding", "chunked"))
                      .append(kLineEnd)
                      .append(kFirst)
                      .append(body.substr(0, 16))
                      .append("\r\nno size\r\n")
                      .append(body.substr(16)),
                  Plan::End::close);
}

std::string manyHeaders(long long count)
{
    std::string lines;
    for (long long i = 1; i <= count; ++i) lines += header("X-More-" + std::to_string(i), std::string(80, 'x'));
    return lines;
}

std::string manyInterims(long long count)
{
    std::string replies;
    for (long long i = 0; i < count; ++i) replies += "HTTP/1.1 102 Processing\r\n\r\n";
    return replies;
}

void appendUtf16(std::string& out, std::uint32_t character)
{
    constexpr std::uint32_t kFirstPair = 0x10000;
    const auto put = [&out](std::uint32_t unit) {
        out += static_cast<char>(static_cast<unsigned char>(unit & 0xFFU));
        out += static_cast<char>(static_cast<unsigned char>(unit >> 8U));
    };
    if (character < kFirstPair) return put(character);
    put(0xD800U + ((character - kFirstPair) >> 10U));
    put(0xDC00U + ((character - kFirstPair) & 0x3FFU));
}

// A character that the encoding has not goes out as XML can say it.
void appendLatin1(std::string& out, std::uint32_t character)
{
    if (character < 0x100U) {
        out += static_cast<char>(static_cast<unsigned char>(character));
    } else {
        out.append("&#").append(std::to_string(character)).append(";");
    }
}

std::string encodedAs(std::string_view text, void (*append)(std::string& out, std::uint32_t character))
{
    std::string out;
    while (!text.empty()) {
        std::uint32_t character = 0;
        const std::size_t length = sequenceLength(text, character);
        if (length == 0) break;
        append(out, character);
        text.remove_prefix(length);
    }
    return out;
}

// Both the header and the declaration name the charset. What is in no other than these two stays UTF-8, and is a lie.
http::Response inCharset(http::Response response, const std::string& charset)
{
    constexpr std::string_view kDeclared = "encoding=\"UTF-8\"";
    const std::size_t at = response.body.find(kDeclared);
    if (at != std::string::npos) response.body.replace(at, kDeclared.size(), "encoding=\"" + charset + '"');
    response.contentType = "text/xml; charset=" + charset;
    std::string name = charset;
    std::ranges::transform(name, name.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    if (name == "iso-8859-1") response.body = encodedAs(response.body, appendLatin1);
    if (name == "utf-16") response.body = "\xFF\xFE" + encodedAs(response.body, appendUtf16);
    return response;
}

http::Response redirection(const Fault& fault)
{
    http::Response response;
    response.status = fault.status;
    response.headers.emplace_back("Location", fault.url);
    return response;
}

Plan delayed(std::string bytes, long long ms, Plan::End end)
{
    Plan plan = simply(std::move(bytes), end);
    plan.delay = std::chrono::milliseconds(ms);
    return plan;
}

}  // namespace

Plan planFor(const Fault& fault, const http::Response& response, bool keepAlive)
{
    const auto whole = [&](std::string_view moreHeaders) { return wholeWith(response, keepAlive, moreHeaders); };
    const auto begin = [&] { return whole({}).substr(0, static_cast<std::size_t>(fault.byte)); };
    switch (fault.kind) {
    case Kind::refuse:
    case Kind::close: return simply({}, Plan::End::close);
    case Kind::reset: return simply(begin(), Plan::End::reset);
    case Kind::stall: return simply(begin(), Plan::End::stall);
    case Kind::rate: return slowly(whole({}), fault.bytesPerSecond, Plan::End::keep);
    case Kind::endless: return endlessly(response);
    case Kind::length: return lying(response, fault.by);
    case Kind::chunks: return brokenChunks(response);
    case Kind::headers: return simply(whole(manyHeaders(fault.count)), Plan::End::keep);
    case Kind::interim: return simply(manyInterims(fault.count) + whole({}), Plan::End::keep);
    case Kind::redirect: return simply(wholeWith(redirection(fault), keepAlive, {}), Plan::End::keep);
    case Kind::charset: return simply(wholeWith(inCharset(response, fault.charset), keepAlive, {}), Plan::End::keep);
    case Kind::failure: return simply(whole({}), Plan::End::keep);
    case Kind::delay: return delayed(whole({}), fault.ms, Plan::End::keep);
    }
    return simply(whole({}), Plan::End::keep);
}

}  // namespace service::faults
