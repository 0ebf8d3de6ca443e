// Whole calls of the client while the system's own calls fail, are cut short or are interrupted.
#include <gtest/gtest.h>
#include <sys/time.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

#include "client/TraceLog.h"
#include "pvutil/HttpClient.h"
#include "pvutil/MessageLoop.h"
#include "tests/client/ClientFixture.h"
#include "tests/memory/HostSystem.h"
#include "tests/memory/posix/FailingCalls.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestSystem.h"

namespace {

namespace fs = std::filesystem;
using kzn::test::FailingCalls;
using kzn::test::Wrong;

const std::string kPicture(100'000, 'p');

class SystemCallTest : public ClientFixture {
protected:
    SystemCallTest()
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
        setVariable("TMPDIR", folder.string());
        std::ofstream(picture) << kPicture;
    }

    ~SystemCallTest() override { setVariable("TMPDIR", ""); }

    /// One call of a client that was made under `calls` too: its result, with the output in `out`.
    using Call = std::function<int(CWapiClient& of, CStringT& out)>;

    /// `call` with each of the system's calls going wrong. It does what it does otherwise, or fails with a reason and
    /// without an output, and goes well the next time.
    void eachCall(Wrong wrong, const Call& call, bool mayFail)
    {
        CStringT plain;
        const std::size_t all = madeBy(wrong, call, plain);
        ASSERT_GT(all, 3U);
        closeAll();
        const std::size_t openBefore = openFiles();
        for (std::size_t nth = 1; nth <= all; ++nth) {
            SCOPED_TRACE("call " + std::to_string(nth) + " of " + std::to_string(all));
            tryOne(nth, wrong, call, plain, mayFail);
        }
        closeAll();
        EXPECT_LE(openFiles(), openBefore);
    }

    void tryOne(std::size_t nth, Wrong wrong, const Call& call, const CStringT& plain, bool mayFail)
    {
        fs::remove(icon);
        std::optional<CWapiClient> of;
        CStringT out = "before"_w;
        const CStringT url = server.url(kOperationPath);
        int result = 0;
        {
            const FailingCalls calls(nth, wrong);
            of.emplace(url);
            result = call(*of, out);
        }
        EXPECT_TRUE(mayFail || result == 1) << narrow(of->GetLstMsg().reason);
        EXPECT_EQ(narrow(out), result == 1 ? narrow(plain) : "before");
        EXPECT_EQ(of->GetLstMsg().reason.empty(), result == 1);
        EXPECT_EQ(of->getNetworkError() == 0, of->getNetworkErrorKind() == CWapiClient::NETWORK_NONE);
        if (fs::exists(icon)) {
            EXPECT_TRUE(bytesOf(icon) == kPicture) << "half a picture";
        }
        EXPECT_EQ(filesInFolder(), fs::exists(icon) ? 2U : 1U) << "a passing file is left";
        EXPECT_EQ(call(*of, out), 1);
        EXPECT_EQ(narrow(out), narrow(plain));
        EXPECT_EQ(of->GetLstMsg().reason, CStringT());
        kzn::pvutil::CZelHttpClient::DropKept();  // the next one connects anew
    }

    std::size_t madeBy(Wrong wrong, const Call& call, CStringT& out)
    {
        CWapiClient warm(server.url(kOperationPath));
        EXPECT_EQ(call(warm, out), 1);
        kzn::pvutil::CZelHttpClient::DropKept();
        const FailingCalls calls(0, wrong);
        CWapiClient of(server.url(kOperationPath));
        EXPECT_EQ(call(of, out), 1);
        return FailingCalls::made();
    }

    void closeAll()
    {
        kzn::pvutil::CZelHttpClient::DropKept();
        server.closeConnections();
    }

    std::size_t filesInFolder() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    Call login()
    {
        otherwise(credReply("new"));
        return [](CWapiClient& of, CStringT& out) {
            const int result = of.login("u"_w, {}, {}, "p"_w, 0, 1);
            if (result == 1) out = of.getRootCred();
            return result;
        };
    }

    Call iconDown()
    {
        server.otherwise(200, "image/png", kPicture);
        const CStringT address = server.url("/dms/icon.png");
        return [address](CWapiClient& of, CStringT& out) { return of.GetSpaceIcon("c"_w, address, out); };
    }

    Call iconUp()
    {
        otherwise(resultReply("SUCCESS", "<return><url>kept</url></return>"));
        const CStringT path = wide(picture.string());
        return [path](CWapiClient& of, CStringT& out) { return of.SetSpaceIcon("c"_w, "w"_w, path, out); };
    }

    /// Each has the server reply as it needs it, when it is made.
    std::vector<std::function<Call()>> kinds()
    {
        return {[this] { return login(); }, [this] { return iconDown(); }, [this] { return iconUp(); }};
    }

    const fs::path folder = fs::current_path() / "system-calls.tmp";
    const fs::path icon = folder / "icon.png";  // what comes down
    const fs::path picture = folder / "picture.png";
};

void onSignal(int) {}

}  // namespace

TEST_F(SystemCallTest, SigningInFailsWholeOrNotAtAll)
{
    eachCall(Wrong::fails, login(), true);
    eachCall(Wrong::failsFromThen, login(), true);
}

TEST_F(SystemCallTest, APictureComesDownWholeOrNotAtAll)
{
    eachCall(Wrong::fails, iconDown(), true);
    eachCall(Wrong::failsFromThen, iconDown(), true);
}

TEST_F(SystemCallTest, APictureGoesUpWholeOrNotAtAll)
{
    eachCall(Wrong::fails, iconUp(), true);
    eachCall(Wrong::failsFromThen, iconUp(), true);
}

TEST_F(SystemCallTest, AnInterruptedCallIsNotNoticed)
{
    eachCall(Wrong::isInterrupted, login(), false);
    eachCall(Wrong::isInterrupted, iconDown(), false);
    eachCall(Wrong::isInterrupted, iconUp(), false);
}

TEST_F(SystemCallTest, WhatMovesByteByByteIsWhole)
{
    for (const auto& make : kinds()) {
        const Call call = make();
        CStringT out;
        CWapiClient of(server.url(kOperationPath));
        const FailingCalls calls(0, Wrong::movesOneByte);
        EXPECT_EQ(call(of, out), 1) << narrow(of.GetLstMsg().reason);
    }
}

TEST_F(SystemCallTest, SignalsInTheMiddleOfCallsAreNotNoticed)
{
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = onSignal;  // without SA_RESTART: each call that waits comes back
    sigaction(SIGALRM, &action, &before);
    const itimerval often{{0, 100}, {0, 100}};
    setitimer(ITIMER_REAL, &often, nullptr);
    for (const auto& make : kinds()) {
        const Call call = make();
        for (int i = 0; i < 50; ++i) {
            CStringT out;
            CWapiClient of(server.url(kOperationPath));
            EXPECT_EQ(call(of, out), 1) << narrow(of.GetLstMsg().reason);
        }
    }
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &before, nullptr);
}

TEST_F(SystemCallTest, TheLogIsOpenedOrNotAndLosesALineAtMost)
{
    wapi::TraceLog& log = wapi::traceLog();
    std::size_t all = 1;
    for (std::size_t nth = 0; nth <= all; ++nth) {
        for (const Wrong wrong : {Wrong::fails, Wrong::failsFromThen}) {
            {
                const FailingCalls calls(nth, wrong);
                log.openInDataFolder();
                log.write(wapi::LogLevel::debug, "lost or not"_w);
                log.close();
                all = std::max(all, FailingCalls::made());
            }
            log.openInDataFolder();
            log.write(wapi::LogLevel::debug, "a line after it"_w);
            EXPECT_NE(bytesOf(logFile()).find("a line after it"), std::string::npos) << nth;
            log.close();
            EXPECT_FALSE(isOpenHere(logFile())) << nth;
        }
    }
    log.openInDataFolder();
    EXPECT_GT(all, 5U);
}

TEST_F(SystemCallTest, AClientWithoutATimerWorksAndNeverTicks)
{
    std::optional<CWapiClient> of;
    const CStringT url = server.url(kOperationPath);
    {
        const FailingCalls calls(1, Wrong::failsFromThen);
        of.emplace(url);
    }
    shortenInterval(*of, std::chrono::milliseconds(50));
    CStringT cred;
    EXPECT_EQ(of->cloneSession({}, {}, cred), 1);
    const std::size_t before = requestCount();
    EXPECT_FALSE(pumpUntil([&] { return requestCount() != before; }, std::chrono::milliseconds(400)));
}

// On a thread of its own, where the first client's window is the first of all.
TEST_F(SystemCallTest, AClientWithoutATimerLeavesTheOthersAlone)
{
    std::thread([this] {
        const CStringT url = server.url(kOperationPath);
        CWapiClient first(url);
        {
            const FailingCalls calls(1, Wrong::failsFromThen);
            const CWapiClient second(url);
        }
        shortenInterval(first, std::chrono::milliseconds(50));
        CStringT cred;
        EXPECT_EQ(first.cloneSession({}, {}, cred), 1);
        const std::size_t before = requestCount();
        EXPECT_TRUE(pumpUntil([&] { return requestCount() != before; }, std::chrono::milliseconds(5000)));
    }).join();
}
