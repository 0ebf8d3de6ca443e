// The frame of the service around nothing: its server answers every request with the same reply.
#include <boost/asio/io_context.hpp>
#include <iostream>

#include "service/base/Process.h"
#include "service/http/Server.h"

namespace {

class Constant final : public service::http::Answerer {
public:
    service::http::Response answer(const service::http::Request& /*request*/) const override
    {
        service::http::Response response;
        response.body =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><kznapi><response><result>SUCCESS</result></response></kznapi>";
        return response;
    }

    std::uint64_t bodyLimit(std::string_view /*target*/) const override { return 1 << 20; }
};

}  // namespace

int main()
{
    service::prepareStreams();
    boost::asio::io_context io(1);
    const Constant constant;
    const service::http::ConnectionLimits limits;
    const service::http::Server server(io, {boost::asio::ip::address_v4::loopback(), 0}, constant, limits);
    const service::StopOnRequest stop(io);
    std::cout << "listening on " << server.address() << std::endl;
    io.run();
    return 0;
}
