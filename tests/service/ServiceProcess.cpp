#include "tests/service/ServiceProcess.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <thread>

#include "tests/support/TestSystem.h"

namespace service::test {

namespace {

constexpr std::chrono::milliseconds kPause(5);
constexpr std::chrono::seconds kPatience(120);  // a busy machine starts a program in its own time

std::string contentOf(const std::string& file)
{
    std::ifstream stream(std::filesystem::u8path(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

TemporaryFolder::TemporaryFolder()
{
    std::random_device random;
    do {
        path_ = std::filesystem::temp_directory_path() / ("service-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::file(const std::string& name) const
{
    return (path_ / std::filesystem::u8path(name)).string();
}

bool isKeptFromOthers(const std::string& file)
{
    return isOwnersAlone(std::filesystem::u8path(file));
}

std::vector<std::string> namesIn(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

std::vector<std::string> ServiceProcess::on(const std::string& dataFile, std::vector<std::string> more)
{
    std::vector<std::string> arguments{"--data", dataFile, "--listen", "127.0.0.1:0"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

ServiceProcess::ServiceProcess(const std::vector<std::string>& arguments)
    : child_(PVWAPI_SERVICE_PROGRAM, arguments, {output_.file("out"), output_.file("err")})
{
    if (child_.id() == 0) throw std::runtime_error("the service could not be started");
}

std::string ServiceProcess::nextLine(const char* file, std::size_t begin) const
{
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (std::chrono::steady_clock::now() < end) {
        const bool wasRunning = child_.isRunning();
        const std::string text = contentOf(output_.file(file)).substr(begin);
        if (const std::size_t length = text.find('\n') + 1; length != 0) return text.substr(0, length);
        if (!wasRunning) break;
        std::this_thread::sleep_for(kPause);
    }
    return {};
}

std::string ServiceProcess::firstLine()
{
    if (line_.empty()) line_ = nextLine("out", 0);
    return line_;
}

unsigned short ServiceProcess::port()
{
    const std::string line = firstLine();
    constexpr std::string_view kHost = "127.0.0.1:";
    const std::size_t host = line.find(kHost);
    if (host == std::string::npos) throw std::runtime_error("the service did not start: " + errors());
    return static_cast<unsigned short>(std::stoul(line.substr(host + kHost.size())));
}

int ServiceProcess::wait()
{
    if (!status_) status_ = child_.wait();
    return *status_;
}

void ServiceProcess::waitUntilEnded() const
{
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (child_.isRunning() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(kPause);
}

std::string ServiceProcess::output()
{
    waitUntilEnded();
    return contentOf(output_.file("out")).substr(line_.size());
}

std::string ServiceProcess::errorLine()
{
    const std::string line = nextLine("err", errorsRead_);
    errorsRead_ += line.size();
    return line;
}

std::string ServiceProcess::errors()
{
    waitUntilEnded();
    return contentOf(output_.file("err")).substr(errorsRead_);
}

}  // namespace service::test
