#include "service/http/Address.h"

#include <boost/system/system_error.hpp>

namespace service::http {

void claimAddress(boost::asio::ip::tcp::acceptor& acceptor)
{
    // What other systems call by that name would let two services share a port here.
    const BOOL alone = TRUE;
    if (setsockopt(acceptor.native_handle(), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&alone),
                   sizeof alone) != 0) {
        throw boost::system::system_error(WSAGetLastError(), boost::system::system_category());
    }
}

}  // namespace service::http
