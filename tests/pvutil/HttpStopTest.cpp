// What ends a request from outside: another thread that cancels it, wherever it is, and the call's deadline.
#include <array>
#include <functional>
#include <thread>

#include "pvutil/CallControl.h"
#include "tests/pvutil/HttpFixture.h"
#include "tests/support/BusyPort.h"

namespace kzn::test {
namespace {

using pvutil::CallControl;
using pvutil::CallScope;
using pvutil::HttpFault;
using Clock = std::chrono::steady_clock;

// A tenth of a second is what is asked for; a loaded machine has its threads wait longer than that.
constexpr auto kAtOnce = 500ms;

class HttpStop : public HttpFixture {
protected:
    using Request = std::function<int()>;

    HttpStop() { client.ControlledBy(&control); }

    int upload(std::string_view large)
    {
        const std::array<std::string_view, 2> pieces = {"head", large};
        return client.Request(server.url("/"), HTTP_METHOD::POST, pieces, {}, HttpOption::kUpload);
    }

    int getFrom(std::string_view scheme, unsigned short port)
    {
        return get(wide(std::string(scheme) + "://127.0.0.1:" + std::to_string(port) + "/"));
    }

    // A call that is cancelled by `times` threads once it has come to where it waits.
    void expectCancelled(const Request& request, std::size_t times = 1)
    {
        const CallScope call(&control, 0ms);
        std::array<std::jthread, 4> others;
        const auto cancel = Clock::now() + 200ms;
        for (std::size_t at = 0; at < times; ++at)
            others.at(at) = std::jthread([this, cancel] {
                std::this_thread::sleep_until(cancel);
                control.cancel();
            });
        EXPECT_EQ(request(), -1);
        const auto end = Clock::now();
        EXPECT_GE(end, cancel) << "nothing waited";
        EXPECT_LT(end, cancel + kAtOnce);
        EXPECT_EQ(client.Failure().fault, HttpFault::cancelled) << textOf(client.Failure());
        expectNoReply();
    }

    void expectDeadline(const Request& request)
    {
        constexpr auto kLimit = 300ms;
        const CallScope call(&control, kLimit);
        const auto begin = Clock::now();
        EXPECT_EQ(request(), -1);
        const auto time = Clock::now() - begin;
        EXPECT_GE(time, kLimit - 20ms);
        EXPECT_LT(time, kLimit + kAtOnce);
        EXPECT_EQ(client.Failure().fault, HttpFault::deadline) << textOf(client.Failure());
        expectNoReply();
    }

    // The client and its control serve the next call as if nothing had been.
    void expectServesOn()
    {
        CaptureServer other;
        other.otherwise(200, "text/xml", "<after/>");
        const CallScope call(&control, 10s);
        for (int times = 0; times < 2; ++times) {
            EXPECT_EQ(get(other.url("/")), 200) << textOf(client.Failure());
            EXPECT_EQ(text(), "<after/>");
            EXPECT_EQ(client.Failure().fault, HttpFault::none);
        }
    }

    // Comes byte by byte, never silent for long, and takes longer than any test waits.
    static Script drip()
    {
        Script slow;
        slow.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
        for (int times = 0; times < 200; ++times) slow.pause(20ms).send("x");
        return slow;
    }

    CallControl control;
};

TEST_F(HttpStop, CancelWhileWaiting)
{
    server.otherwise(Script().stall());
    expectCancelled([this] { return post("a=b"); });
    expectCancelled([this] { return getPath("/"); });
    expectServesOn();
}

TEST_F(HttpStop, CancelWithinTheHead)
{
    server.otherwise(Script().send("HTTP/1.1 200 OK\r\nContent-Le").stall());
    expectCancelled([this] { return post("a=b"); });
    expectServesOn();
}

TEST_F(HttpStop, CancelWhileReceiving)
{
    server.otherwise(drip());
    expectCancelled([this] { return getPath("/"); });
    expectServesOn();
    server.otherwise(Script().send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n<kzn").stall());
    expectCancelled([this] { return getPath("/"); });
    expectServesOn();
}

TEST_F(HttpStop, CancelWhileSending)
{
    server.stopReading();
    const std::string large(30'000'000, 'x');
    expectCancelled([&] { return upload(large); });
    expectCancelled([&] { return post(large); });
    expectServesOn();
}

TEST_F(HttpStop, CancelWhileConnecting)
{
    const BusyPort busy;
    expectCancelled([&] { return getFrom("http", busy.port()); });
    expectCancelled([&] { return getFrom("https", busy.port()); });
    expectServesOn();
}

TEST_F(HttpStop, CancelWhileSecuring)
{
    server.stopReading();
    expectCancelled([this] { return getFrom("https", server.port()); });
    expectServesOn();
}

TEST_F(HttpStop, CancelOnTheWayThroughRedirects)
{
    for (int hop = 0; hop < 6; ++hop)
        server.script(Script().pause(80ms).send(replyText(302, "", "", {{"Location", "/next"}})));
    expectCancelled([this] { return getPath("/"); });
    EXPECT_LT(server.requests().size(), 6U);
    expectServesOn();
}

TEST_F(HttpStop, CancelledBySeveralThreads)
{
    server.otherwise(Script().stall());
    for (int times = 0; times < 3; ++times) expectCancelled([this] { return post("a=b"); }, 4);
    expectServesOn();
}

TEST_F(HttpStop, CancelledTwiceIsCancelledOnce)
{
    server.otherwise(Script().stall());
    expectCancelled([this] { return post("a=b"); });
    control.cancel();
    control.cancel();
    expectServesOn();
}

// What has been cancelled before it sends anything sends nothing.
TEST_F(HttpStop, CancelledCallSendsNothing)
{
    server.otherwise(200, "text/xml", "<kznapi/>");
    const CallScope call(&control, 0ms);
    control.cancel();
    EXPECT_EQ(getPath("/"), -1);
    EXPECT_EQ(client.Failure().fault, HttpFault::cancelled);
    EXPECT_EQ(post("a=b"), -1);
    EXPECT_EQ(server.connections(), 0U);
}

TEST_F(HttpStop, CancelBetweenCallsChangesNothing)
{
    server.otherwise(200, "text/xml", "<kznapi/>");
    control.cancel();
    expectServesOn();
    control.cancel();
    const CallScope call(&control, 0ms);
    EXPECT_EQ(post("a=b"), 200);
}

TEST_F(HttpStop, DeadlineWhileNothingComes)
{
    server.otherwise(Script().stall());
    expectDeadline([this] { return post("a=b"); });
    expectServesOn();
}

TEST_F(HttpStop, DeadlineWhileBytesCome)
{
    server.otherwise(drip());
    expectDeadline([this] { return getPath("/"); });
    expectServesOn();
}

TEST_F(HttpStop, DeadlineWhileSending)
{
    server.stopReading();
    const std::string large(30'000'000, 'x');
    expectDeadline([&] { return upload(large); });
    expectServesOn();
}

TEST_F(HttpStop, DeadlineWhileConnecting)
{
    const BusyPort busy;
    expectDeadline([&] { return getFrom("http", busy.port()); });
    expectServesOn();
}

// No hop takes long; the six of them together do.
TEST_F(HttpStop, DeadlineOverAllRedirects)
{
    server.otherwise(Script().pause(70ms).send(replyText(302, "", "", {{"Location", "/next"}})));
    expectDeadline([this] { return getPath("/"); });
    EXPECT_GE(server.requests().size(), 2U);
    expectServesOn();
}

TEST_F(HttpStop, DeadlineIsOfNoMatterWhereThereIsTime)
{
    server.otherwise(Script().pause(100ms).send(replyText(200, "text/xml", "<kznapi/>")));
    const CallScope call(&control, 10s);
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_EQ(text(), "<kznapi/>");
}

// The control is the caller's and may be gone when the next request begins without one.
TEST_F(HttpStop, ClientWithoutAControlIsNotStopped)
{
    server.otherwise(Script().pause(50ms).send(replyText(200, "text/xml", "<kznapi/>")));
    client.ControlledBy(nullptr);
    const CallScope call(&control, 10ms);
    control.cancel();
    EXPECT_EQ(post("a=b"), 200);
}

}  // namespace
}  // namespace kzn::test
