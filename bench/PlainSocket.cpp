#include "bench/PlainSocket.h"

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>
#include <cstdint>
#include <cstdlib>

namespace kzn::bench {

namespace {

using boost::asio::ip::tcp;
using boost::system::error_code;

constexpr std::size_t kPiece = 65'536;

}  // namespace

struct PlainSocket::Kept {
    boost::asio::io_context io;
    tcp::socket socket{io};
};

PlainSocket::PlainSocket(const std::string& url) : kept_(std::make_unique<Kept>())
{
    constexpr std::string_view kScheme = "http://";
    const std::string_view rest = std::string_view(url).substr(kScheme.size());
    const std::size_t path = rest.find('/');
    begin_.append("POST ").append(rest.substr(path)).append(" HTTP/1.1\r\nHost: ").append(rest.substr(0, path));
    begin_.append("\r\nContent-Length: ");
    const std::size_t port = url.rfind(':') + 1;
    const auto number = static_cast<std::uint16_t>(std::strtoul(url.c_str() + port, nullptr, 10));
    error_code ignored;
    kept_->socket.connect({boost::asio::ip::address_v4::loopback(), number}, ignored);
    kept_->socket.set_option(tcp::no_delay(true), ignored);
}

PlainSocket::~PlainSocket() = default;

// Into the string's own room, of which there is enough from the second reply on.
bool PlainSocket::receiveMore()
{
    const std::size_t held = bytes_.size();
    bytes_.resize(std::max(held + kPiece, bytes_.capacity()));
    error_code error;
    const std::size_t count =
        kept_->socket.read_some(boost::asio::buffer(bytes_.data() + held, bytes_.size() - held), error);
    bytes_.resize(held + count);
    return !error;
}

std::string_view PlainSocket::post(std::string_view form)
{
    std::string request = begin_ + std::to_string(form.size());
    request.append("\r\n\r\n").append(form);
    bytes_.clear();
    head_ = 0;
    error_code error;
    boost::asio::write(kept_->socket, boost::asio::buffer(request), error);
    if (error) return {};
    std::size_t end = std::string::npos;
    while ((end = bytes_.find("\r\n\r\n")) == std::string::npos)
        if (!receiveMore()) return {};
    head_ = end + 4;
    constexpr std::string_view kLength = "Content-Length: ";
    const std::size_t whole = head_ + std::strtoul(bytes_.c_str() + bytes_.find(kLength) + kLength.size(), nullptr, 10);
    while (bytes_.size() < whole)
        if (!receiveMore()) return {};
    return reply();
}

}  // namespace kzn::bench
