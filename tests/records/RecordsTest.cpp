// The records that do more than hold data, and what a new one holds.
#include <gtest/gtest.h>

#include "records/Roles.h"
#include "records/SpaceTables.h"
#include "records/Spaces.h"
#include "records/WapiMessage.h"
#include "tests/support/Text.h"

namespace {

TEST(WapiMessage, IsNewWithCodeZeroAndEmptyTexts)
{
    const WAPIMESSAGE message;
    EXPECT_EQ(message.code, 0);
    EXPECT_EQ(message.reserved, 0);
    EXPECT_TRUE(message.reason.empty() && message.exceptionID.empty() && message.response.empty());
}

TEST(WapiMessage, IsCleared)
{
    WAPIMESSAGE message;
    message.code = 5;
    message.reason = "no"_w;
    message.exceptionID = "E1"_w;
    message.response = "<kznapi/>"_w;
    message.clear();
    EXPECT_EQ(message.code, 0);
    EXPECT_TRUE(message.reason.empty());
    EXPECT_TRUE(message.exceptionID.empty());
    EXPECT_TRUE(message.response.empty());
}

TEST(SpaceForList, IsNewWithoutARole)
{
    EXPECT_EQ(SpaceForList().role, 0);
}

TEST(InviteAs, CarriesAnyNumber)
{
    EXPECT_EQ(static_cast<int>(static_cast<WAPI_INVITEAS_TYPE>(-77)), -77);
}

TEST(SpaceInvite, IsNewWithBothCodesZero)
{
    const CZelSpaceInvite invite;
    EXPECT_EQ(invite.inviteType, 0);
    EXPECT_EQ(invite.inviteAsType, 0);
}

TEST(SpaceInvite, ReadsTheNumberOfItsType)
{
    CZelSpaceInvite invite;
    invite.SetInviteType("3"_w);
    EXPECT_EQ(invite.inviteType, 3);
    invite.SetInviteType(" -4x"_w);
    EXPECT_EQ(invite.inviteType, -4);
    invite.SetInviteType("none"_w);
    EXPECT_EQ(invite.inviteType, 0);
}

TEST(SpaceInvite, MakesAdministratorsOfThreeTextsOnly)
{
    const auto invited = [](const char* as) {
        CZelSpaceInvite invite;
        invite.SetInviteAsType(wide(as));
        return invite.inviteAsType;
    };
    for (const char* as : {"2", "KZN:SpaceAdmin", "KZN:Creator"}) EXPECT_EQ(invited(as), 2) << as;
    for (const char* as : {"", "1", "0", "22", "02", " 2", "2 ", "KZN:Member", "kzn:spaceadmin", "KZN:Creators"})
        EXPECT_EQ(invited(as), 1) << as;
}

CZelSpaceInvite filledInvite()
{
    CZelSpaceInvite invite;
    pvrecords::eachMember<CZelSpaceInvite>([&invite](const auto& member) {
        if constexpr (requires { member.set(invite, CStringT()); }) member.set(invite, "x"_w);
    });
    invite.inviteType = 3;
    invite.inviteAsType = WAPI_INVITEAS_ADMIN;
    return invite;
}

TEST(SpaceInvite, IsCleared)
{
    CZelSpaceInvite invite = filledInvite();
    invite.clear();
    pvrecords::eachMember<CZelSpaceInvite>(
        [&invite](const auto& member) { EXPECT_EQ(member.get(invite), member.get(CZelSpaceInvite())) << member.name; });
}

TEST(SpaceInvite, IsCopiedWhole)
{
    const CZelSpaceInvite invite = filledInvite();
    CZelSpaceInvite copy;
    copy = invite;
    pvrecords::eachMember<CZelSpaceInvite>(
        [&](const auto& member) { EXPECT_EQ(member.get(copy), member.get(invite)) << member.name; });
    EXPECT_EQ(copy.spaceInviteID, "x"_w);
    EXPECT_EQ(copy.ownerName, "x"_w);
    EXPECT_EQ(copy.inviteType, 3);
    EXPECT_EQ(copy.inviteAsType, 2);
}

}  // namespace
