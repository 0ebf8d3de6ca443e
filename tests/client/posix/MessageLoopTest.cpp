// The message loop of a host that has none of the system's.
#include "pvutil/MessageLoop.h"

#include <poll.h>

#include <stdexcept>

#include "tests/client/ClientFixture.h"

namespace {

using MessageLoopTest = ClientFixture;
using kzn::pvutil::DispatchPendingMessages;
using kzn::pvutil::MessageLoopFd;
using namespace std::chrono_literals;

bool readable(int fd, std::chrono::milliseconds limit)
{
    pollfd entry{fd, POLLIN, 0};
    return poll(&entry, 1, static_cast<int>(limit.count())) == 1;
}

void arm(CWapiClient& client)
{
    CStringT cred;
    client.cloneSession({}, {}, cred);
}

}  // namespace

TEST_F(MessageLoopTest, IsReadableWhenATickIsDue)
{
    const int fd = MessageLoopFd();
    ASSERT_GE(fd, 0);
    shortenInterval(client, 200ms);
    EXPECT_FALSE(readable(fd, 0ms));
    const auto armed = Clock::now();
    arm(client);
    ASSERT_TRUE(readable(fd, 20s));
    EXPECT_GE(Clock::now() - armed, 180ms);

    otherwise(sessionReply(1'000'000));
    EXPECT_EQ(DispatchPendingMessages(), 1);
    EXPECT_FALSE(readable(fd, 0ms));
    EXPECT_EQ(DispatchPendingMessages(), 0);
}

TEST_F(MessageLoopTest, IsOneDescriptorForTheLifeOfTheThread)
{
    const int fd = MessageLoopFd();
    const CWapiClient other(server.url(kOperationPath));
    EXPECT_EQ(MessageLoopFd(), fd);
    int ofOtherThread = fd;
    std::thread([&] { ofOtherThread = MessageLoopFd(); }).join();
    EXPECT_NE(ofOtherThread, fd);
}

TEST_F(MessageLoopTest, DeliversOnlyOnTheThreadOfTheClient)
{
    shortenInterval(client, 50ms);
    arm(client);
    const std::size_t before = requestCount();
    std::this_thread::sleep_for(200ms);
    int delivered = -1;
    std::thread([&] { delivered = DispatchPendingMessages(); }).join();
    EXPECT_EQ(delivered, 0);
    EXPECT_EQ(requestCount(), before);
    EXPECT_EQ(DispatchPendingMessages(), 1);
    EXPECT_EQ(requestCount(), before + 1);
}

TEST_F(MessageLoopTest, DeliversToEachClientThatIsDue)
{
    CWapiClient other(server.url(kOperationPath));
    shortenInterval(client, 50ms);
    shortenInterval(other, 50ms);
    arm(client);
    arm(other);
    otherwise(sessionReply(1'000'000));
    std::this_thread::sleep_for(200ms);
    EXPECT_EQ(DispatchPendingMessages(), 2);
}

TEST_F(MessageLoopTest, IsQuietAfterTheClientIsGone)
{
    const int fd = MessageLoopFd();
    {
        CWapiClient shortLived(server.url(kOperationPath));
        shortenInterval(shortLived, 20ms);
        arm(shortLived);
        ASSERT_TRUE(readable(fd, 20s));
    }
    EXPECT_FALSE(readable(fd, 100ms));
    EXPECT_EQ(DispatchPendingMessages(), 0);
}

// On Windows nothing may be thrown from a host's code into the library's: each has a runtime of its own.
TEST_F(MessageLoopTest, GoesOnThoughAListenerThrows)
{
    int told = 0;
    client.onRefresh([&](int) {
        ++told;
        throw std::runtime_error("thrown by a listener");
    });
    shortenInterval(client, 30ms);
    arm(client);
    EXPECT_TRUE(pumpUntil([&] { return told == 2; }));
    EXPECT_NO_THROW(client.OnTimer(1));
    EXPECT_EQ(told, 3);
}
