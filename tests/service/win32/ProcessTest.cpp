// What the service's process owes to this system.
#include <windows.h>

#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/service/DemoService.h"
#include "tests/support/ChildProcess.h"

namespace service::test {

namespace {

TEST(Process, EndsCleanlyWhenItIsAsked)
{
    const TemporaryFolder folder;
    ServiceProcess process(ServiceProcess::on(folder.file("data")));
    process.firstLine();
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_FALSE(std::filesystem::exists(folder.file("data-wal")));
}

// Its parent is a shell, which ends without a word to it.
TEST(Process, EndsWithTheProcessThatStartedIt)
{
    const TemporaryFolder folder;
    const std::filesystem::path out = std::filesystem::u8path(folder.file("out"));
    ChildProcess shell(R"(C:\windows\system32\cmd.exe)",
                       {"/c", PVWAPI_SERVICE_PROGRAM, "--data", folder.file("data"), "--listen", "127.0.0.1:0",
                        "--end-with-parent", "--ready-json"},
                       {out, std::filesystem::u8path(folder.file("err"))});
    nlohmann::json ready;
    for (int tries = 0; tries < 6000 && !ready.is_object(); ++tries) {
        Sleep(20);
        ready = nlohmann::json::parse(std::ifstream(out), nullptr, false);
    }
    ASSERT_TRUE(ready.is_object());
    const HANDLE service =
        OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, ready.at("pid").get<unsigned long>());
    ASSERT_NE(service, nullptr);
    shell.kill();
    EXPECT_EQ(WaitForSingleObject(service, 60'000), WAIT_OBJECT_0);
    DWORD status = 1;
    EXPECT_NE(GetExitCodeProcess(service, &status), FALSE);
    EXPECT_EQ(status, 0U);
    CloseHandle(service);
}

}  // namespace

}  // namespace service::test
