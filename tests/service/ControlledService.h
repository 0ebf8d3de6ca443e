#pragma once

#include <nlohmann/json.hpp>

#include "tests/service/DemoService.h"

namespace service::test {

inline constexpr const char* kToken = "a-token-of-the-tests";

struct ControlReply {
    unsigned status = 0;
    nlohmann::json body;
};

// Asks the control of the service at this port.
inline ControlReply control(unsigned short port, const std::string& method, const std::string& resource,
                            const std::string& body = {}, const std::string& token = kToken)
{
    const HttpReply reply =
        Talk(port).send(method, "/control/" + resource, body, "Authorization: Bearer " + token + "\r\n");
    return {reply.status, nlohmann::json::parse(reply.body, nullptr, false)};
}

// A service with the demo organisation whose control the test has.
class ControlledService : public DemoService {
protected:
    explicit ControlledService(std::vector<std::string> more = {"--seed", "demo", "--control-token", kToken})
        : DemoService(std::move(more))
    {
    }

    ControlReply control(const std::string& method, const std::string& resource, const std::string& body = {}) const
    {
        return service::test::control(port_, method, resource, body);
    }

    // What is wanted of it has to be done.
    nlohmann::json done(const std::string& method, const std::string& resource, const std::string& body = {}) const
    {
        const ControlReply reply = control(method, resource, body);
        EXPECT_EQ(reply.status, 200U) << reply.body;
        return reply.body;
    }

    // It has to be refused, with one line that says why.
    std::string refused(unsigned status, const std::string& method, const std::string& resource,
                        const std::string& body = {}) const
    {
        const ControlReply reply = control(method, resource, body);
        EXPECT_EQ(reply.status, status) << reply.body;
        const std::string why = reply.body.value("error", "");
        EXPECT_THAT(why, IsLike("[^\n]+"));
        return why;
    }
};

}  // namespace service::test
