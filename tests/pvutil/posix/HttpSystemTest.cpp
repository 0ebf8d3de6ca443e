// What the system does to a request here: a proxy of the environment, no descriptor left, a look-up that takes long.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <thread>
#include <utility>

#include "pvutil/CallControl.h"
#include "pvutil/posix/CurlApi.h"
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

// Counts how often the library asks libcurl to wait, while one of these lives.
class CountedWaits {
public:
    CountedWaits() : poll_(std::exchange(pvutil::curl.multiPoll, &CountedWaits::counted))
    {
        count() = 0;
        own() = poll_;
    }
    CountedWaits(const CountedWaits&) = delete;
    CountedWaits& operator=(const CountedWaits&) = delete;
    ~CountedWaits() { pvutil::curl.multiPoll = poll_; }

    static int& count()
    {
        static int waits = 0;
        return waits;
    }

private:
    using Poll = decltype(pvutil::curl.multiPoll);

    static Poll& own()
    {
        static Poll poll = nullptr;
        return poll;
    }

    static CURLMcode counted(CURLM* multi, curl_waitfd* more, unsigned size, int time, int* woken)
    {
        ++count();
        return own()(multi, more, size, time, woken);
    }

    Poll poll_;
};

TEST_F(HttpSystem, WaitLeavesTheProcessorToOthers)
{
    server.reply(200, "text/xml", "<kznapi/>");
    EXPECT_EQ(post("the library's own is loaded"), 200);
    const CountedWaits waits;
    server.script(Script().pause(1s).send(replyText(200, "text/xml", "<kznapi/>")));
    EXPECT_EQ(post("a=b"), 200);
    EXPECT_GE(CountedWaits::count(), 1);
    EXPECT_LE(CountedWaits::count(), 20);
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

// The parent's may not be used there: each would get the other's replies.
TEST_F(HttpSystem, ForkedProcessHasConnectionsOfItsOwn)
{
    server.otherwise(200, "text/xml", "<kznapi/>");
    EXPECT_EQ(post("before"), 200);
    EXPECT_EQ(server.connections(), 1U);
    const pid_t child = fork();
    if (child == 0) _exit(post("in the child") == 200 && post("there again") == 200 ? 0 : 1);
    ASSERT_GT(child, 0);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(post("after"), 200);
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 4U);
    EXPECT_EQ(requests[1].connection, 2U);
    EXPECT_EQ(requests[2].connection, 2U);
    EXPECT_EQ(requests[3].connection, 1U);
}

// In a process of its own, which finds another file in the library's place.
TEST_F(HttpSystem, LibcurlThatCannotBeLoadedIsToldInTheSystemsWords)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / std::to_string(::getpid());
    std::filesystem::create_directory(folder);
    std::ofstream(folder / "libcurl.so.4") << "no library";
    const std::string command = "LD_LIBRARY_PATH=" + folder.string() + " " PROXIED_CALL " http://127.0.0.1:1/";
    std::FILE* const output = ::popen(command.c_str(), "r");
    ASSERT_NE(output, nullptr);
    std::array<char, 500> line{};
    EXPECT_NE(std::fgets(line.data(), line.size(), output), nullptr);
    EXPECT_EQ(WEXITSTATUS(::pclose(output)), static_cast<int>(HttpFault::local));
    std::filesystem::remove_all(folder);
    const std::string told = line.data();
    EXPECT_NE(told.find("Connecting to 127.0.0.1:1: "), std::string::npos) << told;
    EXPECT_NE(told.find(folder.string() + "/libcurl.so.4: "), std::string::npos) << told;
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
