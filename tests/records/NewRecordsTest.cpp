// What a record holds that nobody has filled.
#include <gtest/gtest.h>

#include <type_traits>

#include "client/FieldTables.h"
#include "client/WapiClient.h"
#include "records/AccountTables.h"
#include "records/SpaceTables.h"

namespace {

template <typename Record>
class NewRecord : public testing::Test {
};

using Records =
    testing::Types<SpaceForList, CZelSpaceInvite, space_t, CZelTab, CZelMember, SPACEINVT, MemberRole, SPACE_ACCESS,
                   DOC_ACCESS, ROOM_ACCESS, RoleItem, CZelISProvider, CUserConfigInfo, USER_PROFILE, CZelPolicy,
                   CZelTemplateItem, library_t, library_app_t, library2_t, SPACE_COUNT_ITEM, WAPIMESSAGE,
                   CWapiClient::WKSP_Field_Value, CWapiClient::USER_Field_Value, CWapiClient::Exchange>;

TYPED_TEST_SUITE(NewRecord, Records);

template <typename Member>
bool isNew(const Member& member)
{
    if constexpr (std::is_arithmetic_v<Member> || std::is_enum_v<Member>) return static_cast<int>(member) == 0;
    else return member.empty();
}

}  // namespace

/// Every number of a record that nobody has filled is 0, every text and list empty.
TYPED_TEST(NewRecord, HoldsNothing)
{
    const TypeParam record;
    pvrecords::eachMember<TypeParam>(
        [&record](const auto& member) { EXPECT_TRUE(isNew(member.get(record))) << member.name; });
}
