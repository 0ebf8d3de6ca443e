#include "service/http/Listen.h"

#include "service/base/Text.h"

namespace service::http {

std::string parseListen(const std::string& text, boost::asio::ip::tcp::endpoint& endpoint)
{
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos) return "must be HOST:PORT";
    std::string host = text.substr(0, colon);
    if (host == "localhost") host = "127.0.0.1";
    if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
    boost::system::error_code error;
    const boost::asio::ip::address address = boost::asio::ip::make_address(host, error);
    if (error) return "the host must be a numeric address or localhost";
    if (!address.is_loopback()) return "only a loopback address is served";
    const std::optional<long long> port = wholeNumber(std::string_view(text).substr(colon + 1), 0, 65535);
    if (!port) return "the port must be a number from 0 to 65535";
    endpoint = boost::asio::ip::tcp::endpoint(address, static_cast<unsigned short>(*port));
    return {};
}

}  // namespace service::http
