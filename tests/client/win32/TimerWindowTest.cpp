// The hidden window of a client, as the system sees it.
#include <gmock/gmock.h>

#include <windows.h>

#include <algorithm>
#include <array>
#include <typeinfo>

#include "tests/client/ClientFixture.h"

namespace {

using TimerWindowTest = ClientFixture;
using namespace std::chrono_literals;

std::string className(HWND window)
{
    std::array<char, 256> name{};
    GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

BOOL CALLBACK keepTimerWindow(HWND window, LPARAM all)
{
    if (className(window) == typeid(CWapiClient).name()) reinterpret_cast<std::vector<HWND>*>(all)->push_back(window);
    return TRUE;
}

std::vector<HWND> timerWindows()
{
    std::vector<HWND> all;
    EnumThreadWindows(GetCurrentThreadId(), &keepTimerWindow, reinterpret_cast<LPARAM>(&all));
    return all;
}

/// The bytes of the window's text. Its class is one of 8-bit text but its procedure hands all messages on as 16-bit
/// ones, so that the system keeps the text's bytes as they are and takes two of them for a unit.
std::string textBytes(HWND window)
{
    std::array<char, 256> text{};
    GetWindowTextA(window, text.data(), static_cast<int>(text.size() / 4));
    return text.data();
}

}  // namespace

TEST_F(TimerWindowTest, BearsItsNamesAndItsClient)
{
    const std::vector<HWND> windows = timerWindows();
    ASSERT_EQ(windows.size(), 1U);
    const HWND window = windows.front();
    EXPECT_THAT(textBytes(window), testing::StartsWith("TimerWnd"));
    EXPECT_NE(GetWindowLongPtrW(window, GWLP_USERDATA), 0);
    EXPECT_FALSE(IsWindowVisible(window));
    EXPECT_EQ(GetParent(window), nullptr);
    EXPECT_EQ(GetMenu(window), nullptr);
    EXPECT_EQ(GetClassLongW(window, GCL_STYLE), 0U);
    EXPECT_EQ(GetClassLongW(window, GCL_CBWNDEXTRA), 0U);
    EXPECT_EQ(GetClassLongW(window, GCL_CBCLSEXTRA), 0U);
}

TEST_F(TimerWindowTest, IsOnePerClientOfOneClass)
{
    {
        const CWapiClient other(server.url(kOperationPath));
        const std::vector<HWND> windows = timerWindows();
        ASSERT_EQ(windows.size(), 2U);
        EXPECT_EQ(GetClassLongW(windows[0], GCW_ATOM), GetClassLongW(windows[1], GCW_ATOM));
        EXPECT_NE(GetWindowLongPtrW(windows[0], GWLP_USERDATA), GetWindowLongPtrW(windows[1], GWLP_USERDATA));
    }
    EXPECT_EQ(timerWindows().size(), 1U);
}

TEST_F(TimerWindowTest, IsSharedByCopiesUntilTheLastIsGone)
{
    auto copy = std::make_unique<CWapiClient>(client);
    EXPECT_EQ(timerWindows().size(), 1U);
    auto copyOfCopy = std::make_unique<CWapiClient>(*copy);
    copy.reset();
    EXPECT_EQ(timerWindows().size(), 1U);
    *copyOfCopy = CWapiClient(CStringT{});
    EXPECT_EQ(timerWindows().size(), 2U);
    copyOfCopy.reset();
    EXPECT_EQ(timerWindows().size(), 1U);
}

TEST_F(TimerWindowTest, TicksForATimerOfAnyNumber)
{
    otherwise(sessionReply(7'200'000));
    for (const WPARAM timer : {WPARAM{1}, WPARAM{0}, WPARAM{4711}}) {
        const std::size_t before = requestCount();
        EXPECT_EQ(SendMessageW(timerWindows().front(), WM_TIMER, timer, 0), 0);
        EXPECT_EQ(requestCount(), before + 1) << timer;
    }
}

TEST_F(TimerWindowTest, LeavesOtherMessagesToTheSystem)
{
    const HWND window = timerWindows().front();
    EXPECT_EQ(SendMessageW(window, WM_NCHITTEST, 0, 0), DefWindowProcW(window, WM_NCHITTEST, 0, 0));
    EXPECT_EQ(SendMessageW(window, WM_USER + 1, 1, 2), 0);
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(TimerWindowTest, TicksInAHostsOwnLoop)
{
    client.setRootCred("root"_w);
    shortenInterval(client, 200ms);
    CStringT cred;
    const auto armed = Clock::now();
    client.cloneSession({}, {}, cred);
    const std::size_t before = requestCount();

    // A second timer, without a window, ends the loop should no tick come.
    const UINT_PTR limit = SetTimer(nullptr, 0, 20'000, nullptr);
    MSG message;
    while (requestCount() == before && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_TIMER && message.hwnd == nullptr) break;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    KillTimer(nullptr, limit);
    ASSERT_EQ(requestCount(), before + 1);
    EXPECT_GE(Clock::now() - armed, 180ms);
    EXPECT_EQ(lastBody(), "cmd=get&cred=root&type=sessionInfo&id=sessioninfo&select=sessionInfo");
}
