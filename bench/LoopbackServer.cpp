#include "bench/LoopbackServer.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <thread>
#include <utility>

namespace kzn::bench {

namespace {

namespace http = boost::beast::http;
using boost::asio::ip::tcp;
using boost::system::error_code;

// What is read at once: the buffer gives no more than it has room for.
constexpr std::size_t kPiece = 65536;

std::string replyBytes(std::string_view xml)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: " + std::to_string(xml.size()) +
           "\r\n\r\n" + std::string(xml);
}

void serve(tcp::socket socket, const std::string& reply)
{
    error_code error;
    socket.set_option(tcp::no_delay(true), error);
    boost::beast::flat_buffer buffer;
    buffer.reserve(kPiece);
    while (!error) {
        http::request_parser<http::string_body> request;
        request.body_limit(std::numeric_limits<std::uint64_t>::max());
        http::read(socket, buffer, request, error);
        if (!error) boost::asio::write(socket, boost::asio::buffer(reply), error);
    }
}

[[noreturn]] void serveAll(boost::asio::io_context& context, tcp::acceptor& acceptor, const std::string& reply,
                           std::atomic<std::size_t>& connections)
{
    for (;;) {
        error_code error;
        tcp::socket socket(context);
        acceptor.accept(socket, error);
        if (error) std::_Exit(EXIT_FAILURE);
        ++connections;
        std::thread(serve, std::move(socket), std::cref(reply)).detach();
    }
}

}  // namespace

void LoopbackServer::Unmap::operator()(Count* count) const noexcept
{
    munmap(count, sizeof(Count));
}

LoopbackServer::LoopbackServer(std::string_view xmlReply)
{
    void* const shared = mmap(nullptr, sizeof(Count), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) throw std::runtime_error("no memory to share with the server");
    connections_.reset(static_cast<Count*>(shared));  // zeroed pages are a count of none

    boost::asio::io_context context;
    tcp::acceptor acceptor(context, tcp::endpoint(boost::asio::ip::address_v4::loopback(), 0));
    url_ = "http://127.0.0.1:" + std::to_string(acceptor.local_endpoint().port()) + "/kznconnect/op.do";

    context.notify_fork(boost::asio::execution_context::fork_prepare);
    process_ = fork();
    if (process_ < 0) throw std::runtime_error("the server's process cannot be made");
    if (process_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        context.notify_fork(boost::asio::execution_context::fork_child);
        serveAll(context, acceptor, replyBytes(xmlReply), *connections_);
    }
    context.notify_fork(boost::asio::execution_context::fork_parent);
}

LoopbackServer::~LoopbackServer()
{
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

}  // namespace kzn::bench
