#include "bench/ServedProcess.h"

#include <chrono>
#include <fstream>
#include <random>
#include <stdexcept>
#include <thread>

#include "tests/support/ChildProcess.h"

namespace kzn::bench {

namespace {

constexpr std::chrono::milliseconds kPause(5);
constexpr int kPauses = 12'000;

std::string firstLine(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return stream.eof() ? std::string() : line;
}

}  // namespace

ServedProcess::ServedProcess(const std::string& program, const std::vector<std::string>& words)
    : folder_(std::filesystem::temp_directory_path() / ("bench-" + std::to_string(std::random_device()())))
{
    std::filesystem::create_directory(folder_);
    child_ = std::make_unique<ChildProcess>(program, words, ChildProcess::Output{folder_ / "out", folder_ / "err"});
    constexpr std::string_view kBegin = "listening on ";
    for (int i = 0; i < kPauses && address_.empty() && child_->isRunning(); ++i) {
        const std::string line = firstLine(folder_ / "out");
        if (line.starts_with(kBegin)) address_ = "http://" + line.substr(kBegin.size());
        std::this_thread::sleep_for(kPause);
    }
    if (address_.empty()) throw std::runtime_error("the server did not start");
}

ServedProcess::~ServedProcess()
{
    child_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

}  // namespace kzn::bench
