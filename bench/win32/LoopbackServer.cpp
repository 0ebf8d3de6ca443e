#include "bench/LoopbackServer.h"

#include <thread>

#include "bench/ReplyServer.h"

namespace kzn::bench {

// A thread of this process, which has no second one for it; it serves until that ends.
struct LoopbackServer::Running {
    ReplyServer server;
    std::string reply;
    std::atomic<std::size_t> connections = 0;
};

LoopbackServer::LoopbackServer(std::string_view xmlReply) : running_(std::make_shared<Running>())
{
    running_->reply = xmlReply;
    url_ = running_->server.url();
    std::thread([running = running_] { running->server.serve(running->reply, running->connections); }).detach();
}

LoopbackServer::~LoopbackServer() = default;

std::size_t LoopbackServer::connections() const noexcept
{
    return running_->connections;
}

}  // namespace kzn::bench
