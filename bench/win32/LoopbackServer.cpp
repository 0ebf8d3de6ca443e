#include "bench/LoopbackServer.h"

#include <thread>

#include "bench/ReplyServer.h"

namespace kzn::bench {

// A thread of this process, which has no second one for it. It serves while that ends, too: what it needs stays.
struct LoopbackServer::Running {
    ReplyServer server;
    std::string reply;
    std::atomic<std::size_t> connections = 0;
};

LoopbackServer::LoopbackServer(std::string_view xmlReply)
    : running_(std::make_unique<Running>().release(), [](Running*) {})
{
    running_->reply = xmlReply;
    url_ = running_->server.url();
    std::thread([running = running_.get()] { running->server.serve(running->reply, running->connections); }).detach();
}

LoopbackServer::~LoopbackServer() = default;

std::size_t LoopbackServer::connections() const noexcept
{
    return running_->connections;
}

}  // namespace kzn::bench
