#include "tests/tape/posix/TlsRelay.h"

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include "tests/tape/Address.h"

namespace service::test {

namespace asio = boost::asio;
namespace wire = boost::beast::http;
using asio::ip::tcp;

// One connection after another, one request each.
class TlsRelay::Engine {
public:
    Engine(unsigned short plainPort, const std::string& certificate, const std::string& key)
        : plain_(asio::ip::address_v4::loopback(), plainPort),
          acceptor_(io_, tcp::endpoint(asio::ip::address_v4::loopback(), 0))
    {
        tls_.use_certificate_file(certificate, asio::ssl::context::pem);
        tls_.use_private_key_file(key, asio::ssl::context::pem);
        thread_ = std::thread([this] { run(); });
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine()
    {
        stopping_ = true;
        boost::system::error_code ignored;
        tcp::socket(io_).connect(acceptor_.local_endpoint(), ignored);
        thread_.join();
    }

    unsigned short port() const { return acceptor_.local_endpoint().port(); }

private:
    void run()
    {
        while (!stopping_) {
            tcp::socket socket = acceptor_.accept();
            if (stopping_) return;
            try {
                serve(std::move(socket));
            } catch (const std::exception&) {
                // A peer that does not like the certificate goes.
            }
        }
    }

    void serve(tcp::socket socket)
    {
        asio::ssl::stream<tcp::socket> stream(std::move(socket), tls_);
        stream.handshake(asio::ssl::stream_base::server);
        boost::beast::flat_buffer buffer;
        wire::request<wire::string_body> request;
        wire::read(stream, buffer, request);
        // The service is asked by its own name.
        request.set(wire::field::host, "127.0.0.1:" + std::to_string(plain_.port()));
        tcp::socket inner(io_);
        inner.connect(plain_);
        wire::write(inner, request);
        boost::beast::flat_buffer replyBuffer;
        wire::response<wire::string_body> reply;
        wire::read(inner, replyBuffer, reply);
        // Whoever stands before a service has it name its own address.
        reply.body() = withAddress(reply.body(), urlOf(plain_.port()), urlOf(port(), "https"));
        reply.prepare_payload();
        wire::write(stream, reply);
        stream.shutdown();
    }

    asio::io_context io_;
    tcp::endpoint plain_;
    tcp::acceptor acceptor_;
    asio::ssl::context tls_{asio::ssl::context::tls_server};
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

TlsRelay::TlsRelay(unsigned short plainPort, const std::string& certificate, const std::string& key)
    : engine_(std::make_unique<Engine>(plainPort, certificate, key))
{
}

TlsRelay::~TlsRelay() = default;

std::string TlsRelay::url() const
{
    return urlOf(engine_->port(), "https");
}

void makeCertificate(const std::string& name, const std::string& certificate, const std::string& key)
{
    const std::string command =
        "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj '/CN=Test' "
        "-addext 'subjectAltName=" +
        name + "' -keyout '" + key + "' -out '" + certificate + "' 2>/dev/null";
    if (std::system(command.c_str()) != 0) throw std::runtime_error("no certificate could be made");
}

}  // namespace service::test
