// The service's own address, when nobody is there.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>

#include "tests/host/HostFixture.h"

namespace {

/// Keeps the port from everybody while it lives, and refuses whoever connects.
class HeldPort {
public:
    explicit HeldPort(std::uint16_t number) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const int yes = 1;
        setsockopt(socket_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(number);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        isHeld_ = bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    HeldPort(const HeldPort&) = delete;
    HeldPort& operator=(const HeldPort&) = delete;
    ~HeldPort() { close(socket_); }

    bool isHeld() const { return isHeld_; }

private:
    int socket_;
    bool isHeld_ = false;
};

TEST_F(SessionHostTest, NobodyAtTheDefaultAddressBringsTheServiceToMind)
{
    environment["PVWAPI_BASE_URL"] = "";
    const HeldPort port(8420);
    const Ended ended = pvwapi({"session"});
    // Where a service of the machine's owner listens, it refuses the session instead.
    EXPECT_EQ(ended.status, port.isHeld() ? 3 : 1);
    EXPECT_EQ(ended.err.find("Is pvwapi-service running?") != std::string::npos, port.isHeld()) << ended.err;
}

}  // namespace
