#include "tests/service/ServiceProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

namespace service::test {

namespace {

constexpr int kPatienceMs = 30'000;

std::string readAll(int descriptor, bool oneLine)
{
    std::string text;
    std::array<char, 512> piece{};
    while (!(oneLine && text.ends_with('\n'))) {
        pollfd ready{descriptor, POLLIN, 0};
        if (poll(&ready, 1, kPatienceMs) <= 0) break;
        const ssize_t length = read(descriptor, piece.data(), oneLine ? 1 : piece.size());
        if (length <= 0) break;
        text.append(piece.data(), static_cast<std::size_t>(length));
    }
    return text;
}

}  // namespace

TemporaryFolder::TemporaryFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "service-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::file(const std::string& name) const
{
    return (path_ / name).string();
}

std::vector<std::string> ServiceProcess::on(const std::string& dataFile, std::vector<std::string> more)
{
    std::vector<std::string> arguments{"--data", dataFile, "--listen", "127.0.0.1:0"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

ServiceProcess::ServiceProcess(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), PVWAPI_SERVICE_PROGRAM);
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    std::array<int, 2> output{};
    std::array<int, 2> errors{};
    if (pipe2(output.data(), O_CLOEXEC) != 0 || pipe2(errors.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
    const int result = posix_spawn(&pid_, PVWAPI_SERVICE_PROGRAM, &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    close(errors[1]);
    output_ = output[0];
    errors_ = errors[0];
    if (result != 0) throw std::runtime_error("the service could not be started");
}

ServiceProcess::~ServiceProcess()
{
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        wait();
    }
    close(output_);
    close(errors_);
}

std::string ServiceProcess::firstLine()
{
    if (line_.empty()) line_ = readAll(output_, true);
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

void ServiceProcess::signal(int number) const
{
    kill(pid_, number);
}

int ServiceProcess::wait()
{
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::string ServiceProcess::output() const
{
    return readAll(output_, false);
}

std::string ServiceProcess::errorLine() const
{
    return readAll(errors_, true);
}

std::string ServiceProcess::errors()
{
    return readAll(errors_, false);
}

}  // namespace service::test
