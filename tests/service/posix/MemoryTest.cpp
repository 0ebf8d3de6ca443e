// What the service keeps of memory. Built without sanitizers alone: they keep what is free.
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "tests/service/DemoService.h"

namespace service::test {

namespace {

// What the journal still held when the last answer had gone is given back, too.
TEST(Process, GivesBackTheMemoryOfLargeForms)
{
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

}  // namespace

}  // namespace service::test
