#include "service/http/Address.h"

namespace service::http {

void claimAddress(boost::asio::ip::tcp::acceptor& acceptor)
{
    acceptor.set_option(boost::asio::socket_base::reuse_address(true));
}

}  // namespace service::http
