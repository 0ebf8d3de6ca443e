#include <boost/asio/ip/address.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/host_name_verification.hpp>
#include <boost/beast/ssl/ssl_stream.hpp>
#include <stdexcept>

#include "service/tape/Channel.h"

namespace service::tape {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;

std::shared_ptr<asio::ssl::context> trusting(const std::string& authorities)
{
    auto context = std::make_shared<asio::ssl::context>(asio::ssl::context::tls_client);
    context->set_options(asio::ssl::context::default_workarounds | asio::ssl::context::no_tlsv1 |
                         asio::ssl::context::no_tlsv1_1);
    context->set_verify_mode(asio::ssl::verify_peer);
    if (authorities.empty()) {
        context->set_default_verify_paths();
        return context;
    }
    beast::error_code error;
    context->load_verify_file(authorities, error);
    if (error) throw std::runtime_error(authorities + " holds no certificate: " + error.message());
    return context;
}

bool isNumeric(const std::string& host)
{
    beast::error_code error;
    asio::ip::make_address(host, error);
    return !error;
}

class TlsChannel final : public StreamChannel<beast::ssl_stream<beast::tcp_stream>> {
public:
    TlsChannel(asio::io_context& io, asio::ssl::context& context, const std::string& host) : StreamChannel(io, context)
    {
        stream().set_verify_callback(asio::ssl::host_name_verification(host));
        if (isNumeric(host)) return;
        // What OpenSSL's macro for this does; the name that is asked for is copied.
        std::string name = host;
        SSL_ctrl(stream().native_handle(), SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name, name.data());
    }

    void greet(Ended ended) override { stream().async_handshake(asio::ssl::stream_base::client, std::move(ended)); }
};

}  // namespace

OpenChannel tlsChannels(const std::string& host, const std::string& authorities)
{
    return [context = trusting(authorities), host](asio::io_context& io) {
        return std::make_unique<TlsChannel>(io, *context, host);
    };
}

}  // namespace service::tape
