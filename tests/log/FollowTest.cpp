// The program goes on while the log does. It ends by itself once it has shown the call that it was asked for.
#include <chrono>
#include <thread>

#include "tests/log/LogText.h"
#include "tests/log/ProgramFixture.h"

namespace {

using namespace logtest;
using testing::HasSubstr;

constexpr std::string_view kLogout = "cmd=logout&cred=c";
constexpr std::string_view kTab = "cmd=delete&cred=c&type=tab&id=t1";

/// Longer than the program takes to begin and to look twice.
void wait()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
}

class FollowTest : public LogProgramTest {
protected:
    /// What the program shows of call `number` while `change` happens to the log.
    template <typename Change>
    Ended follow(const std::string& number, Change change)
    {
        Ended ended;
        std::thread program([&] { ended = run({"--follow", "--call", number, path("log.txt")}); });
        wait();
        change();
        program.join();
        return ended;
    }

    /// As the library begins a log. Where the one before cannot be renamed, because a reader is in the way, it goes on
    /// with it.
    void beginAnew(const std::string& text)
    {
        std::error_code inTheWay;
        std::filesystem::rename(path("log.txt"), path("log.1.txt"), inTheWay);
        if (inTheWay) append("log.txt", text);
        else write("log.txt", text);
    }
};

TEST_F(FollowTest, GrowingLogIsFollowed)
{
    write("log.txt", call(kLogout, kSuccess) + entry(kTab));
    const Ended ended = follow("2", [&] { append("log.txt", entry(kSuccess)); });
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, HasSubstr("deleteTab"));
    EXPECT_THAT(ended.out, HasSubstr("SUCCESS"));
}

TEST_F(FollowTest, LogThatIsRenamedAndBegunAnewIsFollowed)
{
    write("log.txt", call(kLogout, kSuccess) + entry(kTab));
    const Ended ended = follow("3", [&] {
        std::filesystem::rename(path("log.txt"), path("log.1.txt"));
        wait();
        write("log.txt", entry(kSuccess) + call(kTab, failure("from the new file", "e")));
    });
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, HasSubstr("from the new file"));
}

TEST_F(FollowTest, LogsThatFollowEachOtherAtOnceAreAllRead)
{
    write("log.txt", call(kLogout, kSuccess));
    const Ended ended = follow("3", [&] {
        append("log.txt", call(kLogout, kSuccess));
        beginAnew(call(kTab, failure("from the log between", "e")));
        beginAnew(call(kTab, failure("from the last log", "e")));
    });
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, HasSubstr("from the log between"));
}

TEST_F(FollowTest, LogBehindOneThatWasMissedIsRead)
{
    write("log.txt", call(kLogout, kSuccess));
    const Ended ended = follow("3", [&] {
        beginAnew(call(kTab, failure("from the log between", "e")));
        beginAnew(call(kTab, failure("from the last log", "e")));
    });
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, HasSubstr("from the last log"));
}

// The library keeps no log that is empty, so the one before it stays.
TEST_F(FollowTest, LogFromBeforeIsNotReadWithTheNextOne)
{
    write("log.1.txt", call(kLogout, failure("long ago", "e")));
    wait();
    write("log.txt", "");
    const Ended ended = follow("1", [&] {
        std::filesystem::rename(path("log.txt"), path("gone.txt"));
        write("log.txt", call(kTab, failure("from the new file", "e")));
    });
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, HasSubstr("from the new file"));
}

TEST_F(FollowTest, LogThatIsEmptiedIsFollowed)
{
    write("log.txt", call(kLogout, kSuccess) + call(kLogout, kSuccess));
    const Ended ended = follow("3", [&] {
        write("log.txt", "");
        wait();
        append("log.txt", call(kTab, failure("behind the cut", "e")));
    });
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, HasSubstr("behind the cut"));
}

}  // namespace
