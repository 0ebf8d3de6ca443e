// What becomes of a connection behind a reply, and of a request that meets its end: nothing goes out twice that may
// have been acted on, and nothing that waits is taken for a reply.
#include <atomic>
#include <latch>
#include <thread>
#include <vector>

#include "tests/pvutil/HttpFixture.h"
#include "tests/pvutil/KeptConnections.h"

namespace kzn::test {
namespace {

class HttpKept : public HttpFixture {
protected:
    HttpKept()
    {
        server.otherwise(200, "text/xml", "<kznapi/>");
        HttpLimits brief;
        brief.silence = 5s;
        CZelHttpClient::SetLimits(brief);
    }

    int send(HTTP_METHOD method, std::string_view body)
    {
        return client.Request(server.url(kTarget), method, wide(body), {}, HttpOption::kForm);
    }

    // How often the server sees one request that `script` answers: with a connection that stands, or without.
    void expectSeenOnce(std::string_view row, const Script& script)
    {
        for (const HTTP_METHOD method : {HTTP_METHOD::POST, HTTP_METHOD::GET}) {
            for (const bool isKept : {true, false}) {
                SCOPED_TRACE(std::string(row) + (isKept ? ", kept" : ", new"));
                server.closeConnections();
                if (isKept) {
                    EXPECT_EQ(send(method, "before"), 200);
                }
                const std::size_t before = server.targets().size();
                server.script(script);
                EXPECT_EQ(send(method, "a=b"), -1);
                expectNoReply();
                EXPECT_EQ(server.targets().size(), before + 1);
                EXPECT_EQ(server.targets().back(), kTarget);
                EXPECT_EQ(send(method, "after"), 200);
            }
        }
    }

    // The reply that is the next request's own, whatever came behind the one before. What comes only when that request
    // is out looks like its reply to anybody.
    void expectOwnReply(std::string_view row, const Script& script, int status = 200)
    {
        SCOPED_TRACE(row);
        const bool isLate = script.steps().size() > 1;
        for (int round = 0; round < 8; ++round) {
            server.script(script);
            EXPECT_EQ(post("a=b"), status);
            if (isLate || round % 2 == 0) awaitAllThatIsSent();
            const std::string own = "own " + std::to_string(++count_);
            server.reply(200, "text/plain", own);
            EXPECT_EQ(post("c=d"), 200);
            EXPECT_EQ(text(), own);
        }
    }

    void awaitAllThatIsSent() const
    {
        for (int times = 0; server.answered() < server.received() && times < 500; ++times)
            std::this_thread::sleep_for(10ms);
        std::this_thread::sleep_for(10ms);
    }

    static constexpr const char* kTarget = "/op.do?";
    int count_ = 0;
};

TEST_F(HttpKept, ServesTheNextRequestWhereTheSystemCanTellThatItIsClean)
{
    for (int request = 0; request < 20; ++request) {
        CZelHttpClient each;
        EXPECT_EQ(each.Request(server.url("/op.do"), HTTP_METHOD::POST, "a=b"_w, {}, HttpOption::kForm), 200);
    }
    server.reply(302, "text/plain", "moved", {{"Location", "/there"}});
    EXPECT_EQ(getPath("/here"), 200);
    EXPECT_EQ(server.received(), 22U);
    EXPECT_EQ(server.connections(), keepsConnections() ? 1U : 22U);
}

// Sixteen wait for the next request; what there is more of is closed.
TEST_F(HttpKept, ServesAnyNumberOfCallsAtOnce)
{
    constexpr std::size_t kCalls = 24;
    constexpr std::size_t kKept = 16;
    server.otherwise(Script().pause(800ms).send(replyText(200, "text/xml", "<kznapi/>")));
    for (const std::size_t connections : {kCalls, keepsConnections() ? 2 * kCalls - kKept : 2 * kCalls}) {
        std::latch ready(kCalls);
        std::atomic<int> served = 0;
        {
            std::vector<std::jthread> threads;
            for (std::size_t call = 0; call < kCalls; ++call)
                threads.emplace_back([&] {
                    CZelHttpClient own;
                    ready.arrive_and_wait();
                    if (own.Request(server.url("/op.do"), HTTP_METHOD::POST, "a=b"_w, {}, HttpOption::kForm) == 200)
                        ++served;
                });
        }
        EXPECT_EQ(served, static_cast<int>(kCalls));
        EXPECT_EQ(server.connections(), connections);
    }
}

// ---- How often a request goes out -----------------------------------------------------------------------------------

TEST_F(HttpKept, ConnectionThatEndsBeforeTheRequestIsReplaced)
{
    for (const auto end : {&CaptureServer::closeConnections, &CaptureServer::resetConnections}) {
        for (const HTTP_METHOD method : {HTTP_METHOD::POST, HTTP_METHOD::GET}) {
            for (int round = 0; round < 5; ++round) {
                EXPECT_EQ(send(method, "before"), 200);
                const std::size_t before = server.targets().size();
                (server.*end)();
                EXPECT_EQ(send(method, "a=b"), 200);
                EXPECT_EQ(server.targets().size(), before + 1);
                EXPECT_EQ(server.targets().back(), kTarget);
            }
        }
    }
}

// None of it can have been acted on: it is made again, where there was a kept connection at all.
TEST_F(HttpKept, ConnectionThatEndsInTheMiddleOfTheRequest)
{
    const std::string large(30'000'000, 'x');
    for (const auto end : {Script::End::close, Script::End::reset}) {
        for (const bool isKept : {true, false}) {
            SCOPED_TRACE(isKept ? "kept" : "new");
            server.closeConnections();
            server.endInsideBodyOver(1'000'000, end);
            if (isKept) {
                EXPECT_EQ(send(HTTP_METHOD::POST, "before"), 200);
            }
            const std::size_t before = server.targets().size();
            const int status = send(HTTP_METHOD::POST, large);
            const bool mayRepeat = isKept && keepsConnections();
            // The sign of an end counts as a byte that came, where a reset follows before it is read.
            if (!mayRepeat || end == Script::End::reset) {
                EXPECT_EQ(status, mayRepeat ? 200 : -1);
            }
            EXPECT_EQ(server.targets().size(), before + (status == 200 ? 2 : 1));
            EXPECT_EQ(server.targets().back(), kTarget);
            if (status == 200) {
                EXPECT_EQ(last().body.size(), large.size());
            }
            EXPECT_EQ(send(HTTP_METHOD::POST, "after"), 200);
        }
    }
}

TEST_F(HttpKept, ConnectionThatEndsBehindTheRequestIsNotAskedAgain)
{
    expectSeenOnce("closed", Script().close());
    expectSeenOnce("reset", Script().reset());
    expectSeenOnce("closed after a while", Script().pause(150ms).close());
    expectSeenOnce("reset after a while", Script().pause(150ms).reset());
    expectSeenOnce("closed behind one byte", Script().send("H").close());
    expectSeenOnce("reset behind one byte", Script().send("H").pause(30ms).reset());
    expectSeenOnce("closed behind a head", Script().send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n").close());
    expectSeenOnce("reset behind a head",
                   Script().send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n").pause(30ms).reset());
}

// A large body has gone out whole, too, by the time that the server ends the connection.
TEST_F(HttpKept, ConnectionThatEndsBehindALargeRequestIsNotAskedAgain)
{
    const std::string large(3'000'000, 'x');
    for (const Script& script : {Script().close(), Script().reset()}) {
        EXPECT_EQ(send(HTTP_METHOD::POST, "before"), 200);
        const std::size_t before = server.targets().size();
        server.script(script);
        EXPECT_EQ(send(HTTP_METHOD::POST, large), -1);
        EXPECT_EQ(server.targets().size(), before + 1);
    }
}

// ---- What waits behind a reply --------------------------------------------------------------------------------------

TEST_F(HttpKept, BytesBehindAReplyAreNotTheNextOne)
{
    const std::string first = replyText(200, "", "first");
    const std::string nobodys = replyText(200, "", "nobody's");
    const std::string timeout = replyText(408, "", "too late", {{"Connection", "close"}});
    expectOwnReply("a second reply", Script().send(first + nobodys));
    expectOwnReply("a second reply, late", Script().send(first).pause(20ms).send(nobodys));
    expectOwnReply("the wait for a request is over", Script().send(first).pause(20ms).send(timeout));
    expectOwnReply("the same, and the end", Script().send(first).pause(20ms).send(timeout).close());
    expectOwnReply("a line break", Script().send(first + "\r\n"));
    expectOwnReply("a line break, late", Script().send(first).pause(20ms).send("\r\n"));
    expectOwnReply("many bytes", Script().send(first + std::string(70'000, 'x')));
    expectOwnReply("many bytes, late", Script().send(first).pause(20ms).send(std::string(70'000, 'x')));
    expectOwnReply("a large second reply", Script().send(first + replyText(200, "", std::string(70'000, 'n'))));
}

TEST_F(HttpKept, BytesBehindABodyThatIsNoneAreNotTheNextReply)
{
    const std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nfirst\r\n0\r\n";
    const std::string nobodys = replyText(200, "", "nobody's");
    expectOwnReply("chunks, then a reply", Script().send(chunked + "\r\n" + nobodys));
    expectOwnReply("a trailer", Script().send(chunked + "X-After: 1\r\n\r\n"));
    expectOwnReply("a trailer, then a reply", Script().send(chunked + "X-After: 1\r\n\r\n" + nobodys));
    expectOwnReply("204 with a body", Script().send("HTTP/1.1 204 No Content\r\nContent-Length: 5\r\n\r\nfirst"), 204);
    expectOwnReply("304 with a body", Script().send("HTTP/1.1 304 X\r\nContent-Length: 5\r\n\r\nfirst"), 304);
    expectOwnReply("a body longer than declared",
                   Script().send("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nfirst" + std::string(70'000, 'x')));
}

}  // namespace
}  // namespace kzn::test
