#include "bench/PlainSocket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace kzn::bench {

namespace {

constexpr std::size_t kPiece = 65'536;

}  // namespace

PlainSocket::PlainSocket(const std::string& url) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const std::size_t port = url.rfind(':') + 1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(std::strtoul(url.c_str() + port, nullptr, 10)));
    const int on = 1;
    ::setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    static_cast<void>(::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address));
}

PlainSocket::~PlainSocket()
{
    ::close(socket_);
}

// Into the string's own room, of which there is enough from the second reply on.
bool PlainSocket::receiveMore()
{
    const std::size_t held = bytes_.size();
    bytes_.resize(std::max(held + kPiece, bytes_.capacity()));
    const ssize_t count = ::recv(socket_, bytes_.data() + held, bytes_.size() - held, 0);
    bytes_.resize(held + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return count > 0;
}

std::string_view PlainSocket::post(std::string_view form)
{
    std::string request = "POST / HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + std::to_string(form.size());
    request.append("\r\n\r\n").append(form);
    bytes_.clear();
    head_ = 0;
    if (::send(socket_, request.data(), request.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(request.size()))
        return {};
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
