// What the C interface consists of: records that have grown, and the numbers of handles.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "capi/Arguments.h"
#include "capi/Handles.h"

namespace {

/// A record that has got a second member.
struct GrownInC {
    std::size_t size;
    std::size_t first;
    std::size_t second;
};

struct Grown {
    std::size_t first = 0;
    std::size_t second = 0;
};

void fromC(const GrownInC& from, Grown& to)
{
    to.first = from.first;
    to.second = from.second;
}

}  // namespace

template <>
struct capi::CTypes<Grown> {
    using Record = GrownInC;
    static constexpr std::size_t kLeast = offsetof(GrownInC, second);
};

namespace {

TEST(GrownRecordTest, OfAnEarlierHostHasNoFurtherMembers)
{
    constexpr std::size_t kLeast = capi::CTypes<Grown>::kLeast;
    std::array<std::size_t, 6> earlier{kLeast, 1, kLeast, 2, kLeast, 3};
    const auto* const items = reinterpret_cast<const GrownInC*>(earlier.data());
    EXPECT_EQ(capi::recordOf<Grown>(items).first, 1U);
    EXPECT_EQ(capi::recordOf<Grown>(items).second, 0U);
    const std::vector<Grown> records = capi::recordsOf<Grown>(items, 3);
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[2].first, 3U);
    EXPECT_EQ(records[2].second, 0U);

    GrownInC own{sizeof(GrownInC), 4, 5};
    EXPECT_EQ(capi::recordOf<Grown>(&own).second, 5U);
    own.size = kLeast - alignof(GrownInC);
    EXPECT_THROW(capi::recordOf<Grown>(&own), capi::Refused);
}

TEST(HandleNumbersTest, NoTwoKindsShareOne)
{
    capi::Handles<pvw_client, int> clients;
    capi::Handles<pvw_result, int> results;
    const auto client = clients.add(std::make_shared<int>(1));
    const auto result = results.add(std::make_shared<int>(2));
    EXPECT_FALSE(results.take(std::bit_cast<pvw_result*>(client)));
    EXPECT_FALSE(clients.take(std::bit_cast<pvw_client*>(result)));
    EXPECT_EQ(*clients.take(client), 1);
    EXPECT_EQ(*results.take(result), 2);
}

TEST(HandleNumbersTest, BeginAnewPastWhatIsAlive)
{
    capi::Handles<pvw_client, int> clients;
    capi::lastHandle = 0;
    const auto first = clients.add(std::make_shared<int>(1));
    capi::lastHandle = std::numeric_limits<std::uintptr_t>::max();
    const auto second = clients.add(std::make_shared<int>(2));
    EXPECT_NE(second, nullptr);
    EXPECT_NE(second, first);
    EXPECT_EQ(*clients.find(first), 1);
    EXPECT_EQ(*clients.find(second), 2);
}

}  // namespace
