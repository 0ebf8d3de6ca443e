#pragma once

#include "tests/service/ControlledService.h"
#include "tests/service/Wire.h"

namespace service::test {

class FaultedService : public ControlledService {
protected:
    // What is heard until the connection ends.
    Heard called(const std::string& body = "cmd=fly") const
    {
        Wire wire(port_);
        wire.send(body);
        return wire.hear();
    }

    // What is heard until a reply is whole; behind it the connection has to stay open.
    Heard replied(const std::string& body = "cmd=fly") const
    {
        Wire wire(port_);
        wire.send(body);
        Heard heard = wire.hear("</kznapi>");
        EXPECT_TRUE(wire.isQuiet(std::chrono::milliseconds(50)));
        return heard;
    }

    void set(const std::string& fault) const { done("POST", "faults", fault); }

    nlohmann::json counts(std::size_t at = 0) const { return done("GET", "faults").at("faults").at(at); }

    // The call goes as if there were no faults.
    void expectWell(const std::string& body = "cmd=fly") const
    {
        const Heard heard = replied(body);
        EXPECT_THAT(heard.bytes, testing::StartsWith("HTTP/1.1 200 OK\r\n"));
        EXPECT_THAT(heard.bytes, testing::EndsWith("</kznapi>"));
        EXPECT_EQ(heard.ended, Ended::open);
    }

    std::string makeSpaceBody(const std::string& name) const
    {
        return "cmd=execute&task=AddTabs&cred=" + signIn(port_, "anna") + "&xml=<workspace><workspaceName>" + name +
               "</workspaceName></workspace>";
    }
};

}  // namespace service::test
