#include "tests/log/ProgramFixture.h"

#include <fstream>
#include <random>

namespace fs = std::filesystem;

LogProgramTest::LogProgramTest()
    : folder_(fs::temp_directory_path() / ("pvwapi-log-" + std::to_string(std::random_device()())))
{
    fs::create_directories(folder_);
}

LogProgramTest::~LogProgramTest()
{
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

Ended LogProgramTest::run(const std::vector<std::string>& words) const
{
    return runProgram(PVWAPI_LOG_PROGRAM, words, environment);
}

std::string LogProgramTest::path(std::string_view name) const
{
    return (folder_ / name).string();
}

void LogProgramTest::write(std::string_view name, std::string_view text) const
{
    std::ofstream(folder_ / name, std::ios::binary | std::ios::trunc) << text;
}

void LogProgramTest::append(std::string_view name, std::string_view text) const
{
    std::ofstream(folder_ / name, std::ios::binary | std::ios::app) << text;
}
