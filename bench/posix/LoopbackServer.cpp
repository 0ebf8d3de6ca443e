#include "bench/LoopbackServer.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "bench/ReplyServer.h"

namespace kzn::bench {

namespace {

using Count = std::atomic<std::size_t>;

// In memory that both processes see.
struct Unmap {
    void operator()(Count* count) const noexcept { munmap(count, sizeof(Count)); }
};

std::unique_ptr<Count, Unmap> sharedCount()
{
    void* const shared = mmap(nullptr, sizeof(Count), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) throw std::runtime_error("no memory to share with the server");
    return std::unique_ptr<Count, Unmap>(static_cast<Count*>(shared));  // zeroed pages are a count of none
}

}  // namespace

struct LoopbackServer::Running {
    std::unique_ptr<Count, Unmap> connections = sharedCount();
    pid_t process = -1;

    ~Running()
    {
        if (process <= 0) return;
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
};

LoopbackServer::LoopbackServer(std::string_view xmlReply) : running_(std::make_unique<Running>())
{
    ReplyServer server;
    url_ = ReplyServer::urlOf(server.port());
    server.context().notify_fork(boost::asio::execution_context::fork_prepare);
    running_->process = fork();
    if (running_->process < 0) throw std::runtime_error("the server's process cannot be made");
    if (running_->process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        server.context().notify_fork(boost::asio::execution_context::fork_child);
        server.serve(xmlReply, *running_->connections);
        std::_Exit(EXIT_FAILURE);
    }
    server.context().notify_fork(boost::asio::execution_context::fork_parent);
}

LoopbackServer::~LoopbackServer() = default;

std::size_t LoopbackServer::connections() const noexcept
{
    return *running_->connections;
}

}  // namespace kzn::bench
