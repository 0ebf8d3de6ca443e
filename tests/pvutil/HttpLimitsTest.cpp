// What a reply may take on the wire, just below each limit and just above.
#include "pvutil/Limits.h"

#include <algorithm>

#include "tests/pvutil/HttpFixture.h"
#include "tests/pvutil/KeptConnections.h"
#include "tests/support/Wine.h"

namespace kzn::test {
namespace {

using pvutil::HttpFault;
namespace limits = pvutil::limits;

const std::string kStatusLine = "HTTP/1.1 200 OK\r\n";
const std::string kEnd = "Content-Length: 2\r\n\r\n";
constexpr std::size_t kEmptyLine = 2;  // behind the trailers: a line of them, or what frames the chunks
const std::string kChunked = kStatusLine + "Transfer-Encoding: chunked\r\n\r\n";

// Header lines of so many bytes together, none longer than a kilobyte.
std::string linesOf(std::size_t bytes)
{
    constexpr std::size_t kLine = 1024;
    constexpr std::size_t kShortest = 5;
    std::string lines;
    while (lines.size() < bytes) {
        const std::size_t rest = bytes - lines.size();
        const std::size_t size = rest <= kLine ? rest : std::min(kLine, rest - kShortest);
        lines += "X: " + std::string(size - 5, 'x') + "\r\n";
    }
    return lines;
}

std::string repeated(const std::string& text, std::size_t times)
{
    std::string all;
    for (std::size_t i = 0; i < times; ++i) all += text;
    return all;
}

// The system's HTTP of Windows shows neither trailers nor the bytes between chunks; it is told when to stop.
bool seesEveryByte()
{
    return keepsConnections();
}

class HttpLimit : public HttpFixture {
protected:
    HttpLimit()
    {
        HttpLimits brief;
        brief.silence = 3s;
        CZelHttpClient::SetLimits(brief);
    }

    void expectWhole(std::string_view row, const std::string& reply, std::string_view body = "ok")
    {
        SCOPED_TRACE(row);
        server.script(Script().send(reply));
        EXPECT_EQ(post("a=b"), 200) << textOf(client.Failure());
        EXPECT_EQ(text(), body);
    }

    void expectEnd(std::string_view row, const Script& script, HttpFault fault = HttpFault::tooLarge)
    {
        SCOPED_TRACE(row);
        server.script(script);
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(post("a=b"), -1);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
        EXPECT_EQ(client.Failure().fault, fault) << textOf(client.Failure());
        expectNoReply();
        expectWhole("after", replyText(200, "", "ok"));
    }

    void expectTooLarge(std::string_view row, const std::string& reply) { expectEnd(row, Script().send(reply)); }
};

TEST_F(HttpLimit, BytesOfAHead)
{
    const std::size_t room = limits::kHeadBytes - kStatusLine.size() - kEnd.size();
    expectWhole("below", kStatusLine + linesOf(room) + kEnd + "ok");
    expectTooLarge("above", kStatusLine + linesOf(room + 1) + kEnd + "ok");
}

TEST_F(HttpLimit, BytesOfAHeadAreTheCallersToSay)
{
    HttpLimits less;
    less.headBytes = 1000;
    CZelHttpClient::SetLimits(less);
    const std::size_t room = 1000 - kStatusLine.size() - kEnd.size();
    expectWhole("below", kStatusLine + linesOf(room) + kEnd + "ok");
    expectTooLarge("above", kStatusLine + linesOf(room + 1) + kEnd + "ok");
}

TEST_F(HttpLimit, BytesOfALine)
{
    const auto line = [](std::size_t bytes) { return "X: " + std::string(bytes - 5, 'x') + "\r\n"; };
    expectWhole("below", kStatusLine + line(limits::kHeadLineBytes) + kEnd + "ok");
    // Wine cuts each line at a kilobyte and a half.
    const std::string above = kStatusLine + line(limits::kHeadLineBytes + 1) + kEnd + "ok";
    if (runsUnderWine()) expectWhole("above", above);
    else expectTooLarge("above", above);
}

TEST_F(HttpLimit, NumberOfLines)
{
    const std::size_t others = 3;  // the status line, the length, and the empty one
    expectWhole("below", kStatusLine + repeated("X: 1\r\n", limits::kHeadLines - others) + kEnd + "ok");
    expectTooLarge("above", kStatusLine + repeated("X: 1\r\n", limits::kHeadLines - others + 1) + kEnd + "ok");
}

TEST_F(HttpLimit, InterimReplies)
{
    const auto with = [](std::size_t interim) {
        return repeated("HTTP/1.1 100 Continue\r\n\r\n", interim) + kStatusLine + kEnd + "ok";
    };
    // Windows documents that it passes over as many as it is told; Wine passes over none.
    if (runsUnderWine()) return expectEnd("below", Script().send(with(limits::kInterimReplies)), HttpFault::notHttp);
    expectWhole("below", with(limits::kInterimReplies));
    expectTooLarge("above", with(limits::kInterimReplies + 1));
}

TEST_F(HttpLimit, InterimRepliesCountAsHeads)
{
    const std::string interim = "HTTP/1.1 102 Processing\r\n" + linesOf(limits::kHeadBytes - 2000) + "\r\n";
    if (runsUnderWine()) return expectEnd("below", Script().send(interim), HttpFault::notHttp);
    expectWhole("below", interim + kStatusLine + kEnd + "ok");
    if (seesEveryByte()) expectTooLarge("above", interim + interim + kStatusLine + kEnd + "ok");
}

TEST_F(HttpLimit, TrailersCountAsHeads)
{
    const std::string start = kChunked + "2\r\nok\r\n0\r\n";
    const std::size_t room = limits::kHeadBytes - kChunked.size();
    expectWhole("below", start + linesOf(room - kEmptyLine) + "\r\n");
    const std::string above = start + linesOf(room + 1) + "\r\n";
    // Where nobody reads them they cannot grow.
    if (seesEveryByte()) expectTooLarge("above", above);
    else expectWhole("above", above);
}

TEST_F(HttpLimit, WhatFramesTheChunks)
{
    const auto framed = [](std::size_t bytes) {
        const std::string around = "2;\r\n\r\n0\r\n\r\n";
        const std::string extension(bytes - around.size(), 'e');
        return kChunked + "2;" + extension + "\r\nok\r\n0\r\n\r\n";
    };
    expectWhole("below", framed(limits::kFramingBytes));
    expectTooLarge("above", framed(limits::kFramingBytes + (seesEveryByte() ? kEmptyLine + 1 : std::size_t{1} << 20)));
}

TEST_F(HttpLimit, ChunksOfAByteEach)
{
    const auto chunks = [](std::size_t count) { return kChunked + repeated("1\r\nx\r\n", count) + "0\r\n\r\n"; };
    expectWhole("below", chunks(10'000), std::string(10'000, 'x'));
    if (seesEveryByte()) expectTooLarge("above", chunks(limits::kFramingBytes / 5 + 1));
}

// Each goes on as long as it is read.
TEST_F(HttpLimit, Floods)
{
    constexpr std::size_t kFlood = limits::kReplyBytes + (std::size_t{1} << 20);
    const auto flood = [](const std::string& start, const std::string& piece) {
        return Script().send(start + repeated(piece, kFlood / piece.size())).stall();
    };
    // Wine reads a head by itself and tells nothing until it has it: the time without news ends that. Windows documents
    // limits of its own, which are set to these here.
    const HttpFault head = runsUnderWine() ? HttpFault::silence : HttpFault::tooLarge;
    expectEnd("a status line", flood("HTTP/1.1 200 ", "OK"), head);
    expectEnd("a line", flood(kStatusLine + "X: ", "x"), head);
    expectEnd("lines", flood(kStatusLine, "X: 1\r\n"), head);
    expectEnd("interim replies", flood("", "HTTP/1.1 100 Continue\r\n\r\n"),
              runsUnderWine() ? HttpFault::notHttp : HttpFault::tooLarge);
    expectEnd("a size of a chunk", flood(kChunked, "0"), seesEveryByte() ? HttpFault::notHttp : HttpFault::tooLarge);
    expectEnd("an extension", flood(kChunked + "2;", "x"));
    expectEnd("a body", flood(kStatusLine + "\r\n", "xxxxxxxxxxxxxxx\n"));
}

TEST_F(HttpLimit, FloodOfTrailers)
{
    const Script flood =
        Script().send(kChunked + "2\r\nok\r\n0\r\n" + repeated("X-After: 1\r\n", std::size_t{4} << 20)).stall();
    if (seesEveryByte()) return expectEnd("trailers", flood);
    server.script(flood);
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "ok");
}

}  // namespace
}  // namespace kzn::test
