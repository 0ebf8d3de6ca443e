#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

#include "tests/service/ServiceProcess.h"
#include "tests/service/User.h"

namespace service::test {

// A service with the demo organisation, one for each test.
class DemoService : public testing::Test {
protected:
    explicit DemoService(std::vector<std::string> more = {"--seed", "demo"})
        : process_(ServiceProcess::on(folder_.file("data"), std::move(more))), port_(process_.port())
    {
    }

    TemporaryFolder folder_;
    ServiceProcess process_;
    unsigned short port_;
};

// The whole text is of this form, which is a regular expression of the language's own: gtest's is another on Windows.
MATCHER_P(IsLike, form, "is like " + testing::PrintToString(form))
{
    return std::regex_match(std::string(arg), std::regex(form));
}

#define EXPECT_SUCCESS(reply) EXPECT_EQ(textAt(reply, kResult), "SUCCESS") << (reply)
#define EXPECT_FAILURE(reply, exception)                  \
    do {                                                  \
        const std::string reply_ = (reply);               \
        EXPECT_EQ(textAt(reply_, kResult), "FAILURE");    \
        EXPECT_EQ(textAt(reply_, kException), exception); \
        EXPECT_NE(textAt(reply_, kReason), "") << reply_; \
    } while (false)

}  // namespace service::test
