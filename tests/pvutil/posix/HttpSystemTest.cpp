// What the system does to a request here: a proxy of the environment, no descriptor left, a look-up that takes long.
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <iostream>
#include <thread>

#include "pvutil/CallControl.h"
#include "tests/pvutil/HttpFixture.h"
#include "tests/pvutil/SlowLookUp.h"

namespace kzn::test {
namespace {

using pvutil::CallControl;
using pvutil::CallScope;
using pvutil::HttpFault;
using Clock = std::chrono::steady_clock;

class HttpSystem : public HttpFixture {
protected:
    ~HttpSystem() override
    {
        for (const char* const name : {"http_proxy", "https_proxy", "no_proxy"}) unsetenv(name);
    }

    void expectFault(HttpFault fault, const CStringT& url, const std::string& text)
    {
        EXPECT_EQ(client.Request(url, HTTP_METHOD::POST, "a=b"_w, {}, HttpOption::kForm), -1);
        std::cout << "fault | " << static_cast<int>(fault) << " | " << textOf(client.Failure()) << "\n";
        EXPECT_EQ(client.Failure().fault, fault);
        EXPECT_TRUE(textOf(client.Failure()).starts_with(text)) << textOf(client.Failure());
        expectNoReply();
    }
};

// The clock here is that of the process's own work, the server's with it.
TEST_F(HttpSystem, WaitLeavesTheProcessorToOthers)
{
    server.script(Script().pause(1s).send(replyText(200, "text/xml", "<kznapi/>")));
    const std::clock_t begin = std::clock();
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_LT(std::clock() - begin, CLOCKS_PER_SEC / 4);
}

TEST_F(HttpSystem, ProxyThatIsNotThere)
{
    const std::string proxy = "127.0.0.1:" + std::to_string(CaptureServer::closedPort());
    setenv("http_proxy", ("http://" + proxy).c_str(), 1);
    expectFault(HttpFault::proxy, server.url("/"), "Connecting to " + proxy + ": ");
    setenv("no_proxy", "127.0.0.1", 1);
    server.reply(200, "text/xml", "<kznapi/>");
    EXPECT_EQ(post("a=b"), 200);
}

TEST_F(HttpSystem, ProxyThatIsNotThereOnTheServersOwnPort)
{
    const std::string proxy = "127.0.0.3:" + std::to_string(server.port());
    setenv("http_proxy", ("http://" + proxy).c_str(), 1);
    expectFault(HttpFault::proxy, server.url("/"), "Connecting to " + proxy + ": ");
}

TEST_F(HttpSystem, ListenerThatSpeaksNoTls)
{
    server.stopReading();
    HttpLimits limits;
    limits.connect = 300ms;
    CZelHttpClient::SetLimits(limits);
    const std::string peer = "127.0.0.1:" + std::to_string(server.port());
    expectFault(HttpFault::connectTimeout, wide("https://" + peer + "/"), "Securing the connection to " + peer + ": ");
}

// Nothing else happens while none is left: a sanitizer needs one to look at an object.
TEST_F(HttpSystem, NoDescriptorIsLeft)
{
    server.reply(200, "text/xml", "<kznapi/>");
    EXPECT_EQ(getPath("/"), 200);  // what is kept is good, so that none of it is closed below
    CaptureServer other;
    const CStringT url = other.url("/");
    CZelHttpClient lone;
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    none.rlim_cur = static_cast<rlim_t>(::dup(0));  // the lowest that is free
    ::close(static_cast<int>(none.rlim_cur));
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const int status = lone.Request(url, HTTP_METHOD::GET, CStringT(), {}, HttpOption::kDownload);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(status, -1);
    EXPECT_EQ(lone.Failure().fault, HttpFault::local);
    EXPECT_EQ(textOf(lone.Failure()),
              "Connecting to 127.0.0.1:" + std::to_string(other.port()) + ": Too many open files");
    other.reply(200, "text/xml", "<kznapi/>");
    EXPECT_EQ(get(url), 200);
}

TEST_F(HttpSystem, LookUpIsLeftToItself)
{
    CallControl control;
    client.ControlledBy(&control);
    const auto begin = Clock::now();
    {
        const CallScope call(&control, 0ms);
        const std::jthread other([&] {
            std::this_thread::sleep_for(100ms);
            control.cancel();
        });
        expectFault(HttpFault::cancelled, "http://slow.invalid/"_w, "Looking up slow.invalid:80: ");
    }
    {
        const CallScope call(&control, 100ms);
        expectFault(HttpFault::deadline, "http://slow.invalid/"_w, "Looking up slow.invalid:80: ");
    }
    client.ControlledBy(nullptr);
    HttpLimits limits;
    limits.connect = 100ms;
    CZelHttpClient::SetLimits(limits);
    expectFault(HttpFault::connectTimeout, "http://slow.invalid/"_w, "Looking up slow.invalid:80: ");
    EXPECT_LT(Clock::now() - begin, 2500ms);  // three look-ups take three seconds
    EXPECT_EQ(slowLookUps(), 3);
    server.reply(200, "text/xml", "<kznapi/>");
    EXPECT_EQ(post("after"), 200);
    std::this_thread::sleep_for(1200ms);  // the look-ups end while the library is there
}

}  // namespace
}  // namespace kzn::test
