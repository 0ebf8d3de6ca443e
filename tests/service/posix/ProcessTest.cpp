// What the service's process owes to this system.
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

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
