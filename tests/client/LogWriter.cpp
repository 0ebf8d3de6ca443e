// A process that has the library in it and writes to the log of a folder.
//   log_writer FOLDER COUNT [STOP]    that many lines; then it stays until there is a file STOP
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "client/TraceLog.h"
#include "tests/support/TestSystem.h"
#include "tests/support/Text.h"

namespace {

namespace fs = std::filesystem;

// Lines of many lengths, so that a torn one is seen.
std::string textOf(int number)
{
    return std::to_string(number) + ":" + std::string(static_cast<std::size_t>(number % 50 * 40), 'x') + ";";
}

void stayUntil(const fs::path& stop)
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (!fs::exists(stop) && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(5ms);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 3) return 2;
    const DataFolderSetting setting{fs::path(argv[1])};
    wapi::traceLog().openInDataFolder();
    std::printf("what a program prints\n");
    std::fflush(stdout);
    const int count = std::atoi(argv[2]);
    for (int number = 0; number < count; ++number) wapi::traceLog().write(wapi::LogLevel::info, wide(textOf(number)));
    if (argc > 3) stayUntil(argv[3]);
    return 0;
}
