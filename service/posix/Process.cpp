#include "service/base/Process.h"

#include <malloc.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <boost/asio/signal_set.hpp>
#include <csignal>
#include <stdexcept>

namespace service {

namespace {

// Who started this process, seen before anything else runs.
const pid_t kStartedBy = getppid();

}  // namespace

std::vector<std::string> arguments(int argc, const char* const* argv)
{
    return {argv, argv + argc};
}

void prepareStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
}

long long processID()
{
    return getpid();
}

void prepareMemory()
{
    constexpr int kLarge = 4 * 1024 * 1024;  // replies and forms are smaller, but for a few
    mallopt(M_MMAP_THRESHOLD, kLarge);
    mallopt(M_TRIM_THRESHOLD, 2 * kLarge);
}

void returnMemory()
{
    malloc_trim(0);
}

// The one that started this process may have ended before the system was asked to tell of it: then it has another
// parent by now.
void endWithParent()
{
    if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0) throw std::runtime_error("the system does not tell of the parent's end");
    if (getppid() != kStartedBy) throw std::runtime_error("the process that started it has ended");
}

struct StopOnRequest::State {
    explicit State(boost::asio::io_context& io) : signals(io, SIGINT, SIGTERM)
    {
        signals.async_wait([&io](const boost::system::error_code& error, int) {
            if (!error) io.stop();
        });
    }

    boost::asio::signal_set signals;
};

StopOnRequest::StopOnRequest(boost::asio::io_context& io) : state_(std::make_unique<State>(io)) {}

StopOnRequest::~StopOnRequest() = default;

}  // namespace service
