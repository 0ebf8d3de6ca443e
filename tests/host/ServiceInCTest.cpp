// The example that needs the C interface.
#include "tests/host/ServiceFixture.h"

namespace {

using testing::HasSubstr;

TEST_F(ServiceHostTest, ListWorkspacesInCExample)
{
    actAs("dmitri");
    const Ended ended = example(PVWAPI_EXAMPLE_LIST_IN_C, environment);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "Messestand Köln\nClient project\n2 workspaces\n");

    environment["PVWAPI_PASSWORD"] = "wrong";
    const Ended refused = example(PVWAPI_EXAMPLE_LIST_IN_C, environment);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_THAT(refused.err, HasSubstr("password"));
}

}  // namespace
