// The descriptor that stands for a thread's message loop, and what the timers cost in descriptors.
#include "pvutil/MessageLoop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <thread>
#include <vector>

#include "pvutil/TimerWindow.h"

namespace kzn::test {
namespace {

using pvutil::DispatchPendingMessages;
using pvutil::MessageLoopFd;
using pvutil::TimerWindow;

void count(void* ticks, unsigned int)
{
    ++*static_cast<int*>(ticks);
}

bool isReadable(int descriptor, int milliseconds)
{
    pollfd watched{descriptor, POLLIN, 0};
    return poll(&watched, 1, milliseconds) == 1 && (watched.revents & POLLIN) != 0;
}

std::ptrdiff_t openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST(MessageLoop, DescriptorIsReadableWhenATickIsDue)
{
    int ticks = 0;
    TimerWindow window;
    window.create("", &ticks, count);
    const int descriptor = MessageLoopFd();
    ASSERT_GE(descriptor, 0);
    EXPECT_FALSE(isReadable(descriptor, 0));
    window.setTimer(1, 20);
    EXPECT_TRUE(isReadable(descriptor, 5000));
    EXPECT_TRUE(isReadable(descriptor, 0));
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(DispatchPendingMessages(), 1);
    EXPECT_EQ(ticks, 1);
    EXPECT_EQ(DispatchPendingMessages(), 0);
    EXPECT_FALSE(isReadable(descriptor, 0));
    EXPECT_TRUE(isReadable(descriptor, 5000));
    window.destroy();
    EXPECT_FALSE(isReadable(descriptor, 0));
}

TEST(MessageLoop, DescriptorStaysTheSame)
{
    const int descriptor = MessageLoopFd();
    int ticks = 0;
    for (int times = 0; times < 3; ++times) {
        TimerWindow window;
        window.create("", &ticks, count);
        EXPECT_EQ(MessageLoopFd(), descriptor);
    }
    EXPECT_EQ(MessageLoopFd(), descriptor);
    EXPECT_TRUE((fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0);
}

TEST(MessageLoop, EachThreadHasItsOwnAndGivesItBack)
{
    const int here = MessageLoopFd();
    const auto before = openDescriptors();
    for (int times = 0; times < 50; ++times)
        std::thread([&] {
            int ticks = 0;
            TimerWindow window;
            window.create("", &ticks, count);
            EXPECT_NE(MessageLoopFd(), here);
            EXPECT_GE(MessageLoopFd(), 0);
        }).join();
    EXPECT_EQ(openDescriptors(), before);
}

TEST(MessageLoop, SeveralDueAreCounted)
{
    int ticks = 0;
    std::vector<TimerWindow> windows(40);
    for (auto& window : windows) {
        window.create("", &ticks, count);
        window.setTimer(1, 1000);
    }
    for (auto& window : windows) window.setTimer(1, 10);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(DispatchPendingMessages(), 40);
    EXPECT_EQ(ticks, 40);
}

TEST(MessageLoop, WithoutADescriptorThereIsNoWindow)
{
    MessageLoopFd();
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
    // Another thread asks in the meantime; it begins and ends outside of the shortage.
    std::atomic<int> stage = 0;
    const auto waitFor = [&stage](int reached) {
        for (int now = stage; now < reached; now = stage) stage.wait(now);
    };
    const auto reach = [&stage](int reached) {
        stage = reached;
        stage.notify_all();
    };
    int elsewhere = 0;
    std::thread thread([&] {
        reach(1);
        waitFor(2);
        elsewhere = MessageLoopFd();
        reach(3);
        waitFor(4);
    });
    waitFor(1);
    const rlimit none{3, usual.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    int ticks = 0;
    TimerWindow window;
    window.create("", &ticks, count);
    reach(2);
    waitFor(3);
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
    reach(4);
    thread.join();

    EXPECT_FALSE(window);
    EXPECT_EQ(elsewhere, -1);
    window.setTimer(1, 10);
    window.destroy();
    window.create("", &ticks, count);
    EXPECT_TRUE(window);
}

TEST(MessageLoop, ShutDownGivesEverythingBackAndCanBeginAnew)
{
    MessageLoopFd();
    const auto before = openDescriptors();
    TimerWindow::shutDown();
    EXPECT_EQ(openDescriptors(), before - 1);
    EXPECT_EQ(DispatchPendingMessages(), 0);
    int ticks = 0;
    TimerWindow window;
    window.create("", &ticks, count);
    window.setTimer(1, 10);
    EXPECT_TRUE(isReadable(MessageLoopFd(), 5000));
    EXPECT_EQ(DispatchPendingMessages(), 1);
}

}  // namespace
}  // namespace kzn::test
