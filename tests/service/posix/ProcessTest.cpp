// What the service's process owes to this system.
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "tests/service/DemoService.h"

namespace service::test {

namespace {

TEST(Process, EndsCleanlyOnTerminateAndInterrupt)
{
    for (const int number : {SIGTERM, SIGINT}) {
        const TemporaryFolder folder;
        ServiceProcess process(ServiceProcess::on(folder.file("data")));
        process.firstLine();
        process.signal(number);
        EXPECT_EQ(process.wait(), 0);
    }
}

// What the journal still held when the last answer had gone is given back, too.
TEST(Process, GivesBackTheMemoryOfLargeForms)
{
    if (PVWAPI_IS_SANITIZED) GTEST_SKIP() << "a sanitizer keeps what is free";
    constexpr std::size_t kLittle = std::size_t{12} * 1024 * 1024;
    const TemporaryFolder folder;
    ServiceProcess process(ServiceProcess::on(folder.file("data")));
    const auto own = [&process] {
        std::size_t all = 0;
        std::size_t resident = 0;
        std::size_t shared = 0;
        std::ifstream("/proc/" + std::to_string(process.pid()) + "/statm") >> all >> resident >> shared;
        return (resident - shared) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    };
    const std::size_t before = own();
    for (int i = 0; i < 6; ++i) form(process.port(), "cmd=fly&where=" + std::string(15'000'000, 'x'));
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (own() > before + kLittle && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_LT(own(), before + kLittle);
}

// The service's parent is a process of the test's own, which ends without a word to it.
TEST(Process, EndsWithTheProcessThatStartedIt)
{
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    const TemporaryFolder folder;
    const std::string program = PVWAPI_SERVICE_PROGRAM;
    const std::string data = folder.file("data");
    const std::string out = folder.file("out");
    const pid_t parent = fork();
    ASSERT_GE(parent, 0);
    if (parent == 0) {
        const std::string line = program + " --data " + data + " --listen 127.0.0.1:0 --end-with-parent >" + out +
                                 " & while ! grep -q listening " + out +
                                 "; do n=x$n; [ ${#n} -lt 999 ] || exit 1; sleep 0.02; done";
        execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        _exit(127);
    }
    int status = -1;
    ASSERT_EQ(waitpid(parent, &status, 0), parent);
    ASSERT_EQ(status, 0);
    // Orphaned, it is this process's child now.
    const pid_t service = waitpid(-1, &status, 0);
    ASSERT_GT(service, 0);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}

}  // namespace

}  // namespace service::test
