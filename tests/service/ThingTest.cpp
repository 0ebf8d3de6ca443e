#include "service/store/Things.h"
#include "tests/service/InnerService.h"

namespace service::test {

namespace {

using testing::ElementsAre;

class StoredThings : public InnerService {};

// Data files of earlier versions may hold one.
TEST_F(StoredThings, OneThatCannotBeReadIsShownWithoutItsExtension)
{
    store::insertThing(database_, {"thng-1", "user-anna", "", "broken", "<ext><x\xC3\x97></x\xC3\x97></ext>", 1'000});
    store::insertThing(database_, {"thng-2", "user-anna", "", "whole", "<ext><KZN>kept</KZN></ext>", 1'000});
    const std::string reply = answer("cmd=execute&task=RunScript&cred=" + credOf("anna") +
                                     "&xml=<script><step><cmd>list</cmd><type>thng</type></step></script>");
    EXPECT_SUCCESS(reply);
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/thing/thingName"), ElementsAre("broken", "whole"));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/thing/ext/KZN"), ElementsAre("kept"));
}

}  // namespace

}  // namespace service::test
