// Bytes that are no text, where the system passes them on.
#include "tests/host/HostFixture.h"

namespace {

TEST_F(SessionHostTest, ArgumentThatIsNotUtf8IsRefused)
{
    const Ended ended = pvwapi({"spaces", "create", "a\xFF"});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "pvwapi: argument 3: not UTF-8\n");
    EXPECT_TRUE(bodies().empty());
}

TEST_F(SessionHostTest, VariableThatIsNotUtf8IsRefused)
{
    environment["PVWAPI_PASSWORD"] = "\xC3";
    const Ended ended = pvwapi({"session", "renew"});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.err, "pvwapi: session renew: PVWAPI_PASSWORD: not UTF-8\n");
    EXPECT_TRUE(bodies().empty());
}

}  // namespace
