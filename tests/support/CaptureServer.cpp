#include "tests/support/CaptureServer.h"

#include <atomic>
#include <boost/asio.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <deque>
#include <future>
#include <limits>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace kzn::test {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::system::error_code;

namespace {

tcp::endpoint anyLoopbackPort()
{
    return {asio::ip::address_v4::loopback(), 0};
}

constexpr std::uint64_t kAnyBody = std::numeric_limits<std::uint64_t>::max();

// What the test's thread and the server's thread share.
class Book {
public:
    void queue(Script script)
    {
        const std::lock_guard lock(mutex_);
        queue_.push_back(std::move(script));
    }

    std::size_t dropQueue()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(queue_, {}).size();
    }

    void otherwise(Script script)
    {
        const std::lock_guard lock(mutex_);
        otherwise_ = std::move(script);
    }

    // Keeps the request and says what is sent for it.
    Script take(CapturedRequest request)
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back(std::move(request));
        if (queue_.empty()) return otherwise_;
        Script script = std::move(queue_.front());
        queue_.pop_front();
        return script;
    }

    std::vector<CapturedRequest> requests() const
    {
        const std::lock_guard lock(mutex_);
        return requests_;
    }

    std::size_t received() const
    {
        const std::lock_guard lock(mutex_);
        return forgotten_ + requests_.size();
    }

    void forget()
    {
        const std::lock_guard lock(mutex_);
        forgotten_ += requests_.size();
        requests_.clear();
        targets_.clear();
    }

    std::vector<CapturedRequest> takeRequests()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(requests_, {});
    }

    void sees(std::string target)
    {
        const std::lock_guard lock(mutex_);
        targets_.push_back(std::move(target));
    }

    std::vector<std::string> targets() const
    {
        const std::lock_guard lock(mutex_);
        return targets_;
    }

    std::atomic<std::size_t> connections{0};
    std::atomic<std::size_t> answered{0};
    std::atomic<bool> deaf{false};
    std::atomic<std::uint64_t> longestBody{kAnyBody};
    std::atomic<Script::End> endInside{Script::End::reset};

private:
    mutable std::mutex mutex_;
    std::deque<Script> queue_;
    Script otherwise_ = Script().send(replyText(404, "text/plain", "no reply is queued"));
    std::vector<CapturedRequest> requests_;
    std::size_t forgotten_ = 0;
    std::vector<std::string> targets_;
};

class Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(tcp::socket socket, Book& book, std::size_t number)
        : socket_(std::move(socket)), pause_(socket_.get_executor()), book_(book), number_(number)
    {
        error_code ignored;
        socket_.set_option(tcp::no_delay(true), ignored);
        buffer_.reserve(65536);  // what is read at once: without it a large body comes in pieces of 512 bytes
    }

    void read()
    {
        if (book_.deaf) return;
        parser_.emplace();
        parser_->body_limit(book_.longestBody.load());
        parser_->header_limit(16U << 20);
        http::async_read_header(socket_, buffer_, *parser_, [self = shared_from_this()](error_code error, std::size_t) {
            if (self->parser_->is_header_done() || error == http::error::body_limit)
                self->book_.sees(std::string(self->parser_->get().target()));
            // A demand for a tunnel has no body, whatever length some clients declare.
            if (!error && self->parser_->get().method() == http::verb::connect) self->answer(error);
            else self->readBody(error);
        });
    }

    bool isOpen() const { return socket_.is_open(); }

    void close()
    {
        error_code ignored;
        socket_.shutdown(tcp::socket::shutdown_both, ignored);
        socket_.close(ignored);
        pause_.cancel();
    }

    void reset()
    {
        error_code ignored;
        socket_.set_option(asio::socket_base::linger(true, 0), ignored);
        socket_.close(ignored);
        pause_.cancel();
    }

private:
    void readBody(error_code error)
    {
        if (error) return answer(error);
        http::async_read(socket_, buffer_, *parser_,
                         [self = shared_from_this()](error_code ended, std::size_t) { self->answer(ended); });
    }

    void answer(error_code error)
    {
        if (error == http::error::body_limit) return endInsideBody();
        if (error) return close();
        script_ = book_.take(captured());
        step(0);
    }

    CapturedRequest captured()
    {
        auto& message = parser_->get();
        CapturedRequest request;
        request.method = std::string(message.method_string());
        request.target = std::string(message.target());
        for (const auto& field : message)
            request.headers.emplace_back(std::string(field.name_string()), std::string(field.value()));
        request.body = std::move(message.body());
        request.connection = number_;
        return request;
    }

    void step(std::size_t at)
    {
        if (at == script_.steps().size()) return finish();
        pause_.expires_after(script_.steps()[at].pause);
        pause_.async_wait([self = shared_from_this(), at](error_code error) {
            if (!error) self->send(at);
        });
    }

    void send(std::size_t at)
    {
        asio::async_write(socket_, asio::buffer(script_.steps()[at].bytes),
                          [self = shared_from_this(), at](error_code error, std::size_t) {
                              if (!error) return self->step(at + 1);
                              ++self->book_.answered;
                              self->close();
                          });
    }

    void finish()
    {
        ++book_.answered;
        const Script::End end = std::exchange(script_, {}).end();  // one that stalls needs its text no more
        if (end == Script::End::serveOn) return read();
        if (end == Script::End::close) close();
        if (end == Script::End::reset) reset();
    }

    // Once: the next connection reads on.
    void endInsideBody()
    {
        book_.longestBody = kAnyBody;
        if (book_.endInside == Script::End::close) close();
        else reset();
    }

    tcp::socket socket_;
    asio::steady_timer pause_;
    Book& book_;
    std::size_t number_;
    boost::beast::flat_buffer buffer_;
    std::optional<http::request_parser<http::string_body>> parser_;
    Script script_;
};

}  // namespace

class CaptureServer::Engine {
public:
    Engine() : acceptor_(context_, anyLoopbackPort())
    {
        port_ = acceptor_.local_endpoint().port();
        accept();
        thread_ = std::thread([this] { context_.run(); });
    }

    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    ~Engine()
    {
        context_.stop();
        thread_.join();
    }

    // Returns when it is done: what the test does next meets closed connections.
    void endConnections(void (Connection::*end)())
    {
        std::promise<void> done;
        asio::post(context_, [&] {
            for (const auto& connection : connections_) ((*connection).*end)();
            connections_.clear();
            done.set_value();
        });
        done.get_future().wait();
    }

    unsigned short port() const { return port_; }

    Book book;

private:
    void accept()
    {
        acceptor_.async_accept([this](error_code error, tcp::socket socket) {
            if (error == asio::error::operation_aborted) return;
            if (error) return accept();  // one that was given up before it was taken in
            // Each has room for a large request, and what it sent last: thousands that have ended fill the memory.
            std::erase_if(connections_, [](const auto& each) { return !each->isOpen(); });
            const auto connection = std::make_shared<Connection>(std::move(socket), book, ++book.connections);
            connections_.push_back(connection);
            connection->read();
            accept();
        });
    }

    asio::io_context context_;
    tcp::acceptor acceptor_;
    unsigned short port_ = 0;
    // Held here while they are open, so that one that stalls or reads nothing stays so.
    std::vector<std::shared_ptr<Connection>> connections_;
    std::thread thread_;
};

CaptureServer::CaptureServer() : engine_(std::make_unique<Engine>()) {}

CaptureServer::~CaptureServer() = default;

unsigned short CaptureServer::port() const
{
    return engine_->port();
}

std::string CaptureServer::address(std::string_view path) const
{
    return "http://127.0.0.1:" + std::to_string(port()).append(path);
}

CStringT CaptureServer::url(std::string_view path) const
{
    const std::string ascii = address(path);
    return CStringT(ascii.begin(), ascii.end());
}

void CaptureServer::reply(int status, std::string_view contentType, std::string_view body, const Headers& more)
{
    script(Script().send(replyText(status, contentType, body, more)));
}

void CaptureServer::script(Script script)
{
    engine_->book.queue(std::move(script));
}

void CaptureServer::otherwise(int status, std::string_view contentType, std::string_view body, const Headers& more)
{
    otherwise(Script().send(replyText(status, contentType, body, more)));
}

void CaptureServer::otherwise(Script script)
{
    engine_->book.otherwise(std::move(script));
}

std::size_t CaptureServer::dropQueue()
{
    return engine_->book.dropQueue();
}

std::vector<CapturedRequest> CaptureServer::requests() const
{
    return engine_->book.requests();
}

std::size_t CaptureServer::received() const
{
    return engine_->book.received();
}

void CaptureServer::forget()
{
    engine_->book.forget();
}

std::vector<CapturedRequest> CaptureServer::takeRequests()
{
    return engine_->book.takeRequests();
}

std::vector<std::string> CaptureServer::targets() const
{
    return engine_->book.targets();
}

std::size_t CaptureServer::answered() const
{
    return engine_->book.answered;
}

std::size_t CaptureServer::connections() const
{
    return engine_->book.connections;
}

void CaptureServer::closeConnections()
{
    engine_->endConnections(&Connection::close);
}

void CaptureServer::resetConnections()
{
    engine_->endConnections(&Connection::reset);
}

void CaptureServer::endInsideBodyOver(std::size_t bytes, Script::End end)
{
    engine_->book.endInside = end;
    engine_->book.longestBody = bytes;
}

void CaptureServer::stopReading()
{
    engine_->book.deaf = true;
}

unsigned short CaptureServer::closedPort()
{
    asio::io_context context;
    const tcp::acceptor acceptor(context, anyLoopbackPort());
    return acceptor.local_endpoint().port();
}

}  // namespace kzn::test
