#include "service/commands/Commands.h"
#include "service/http/Form.h"
#include "service/seed/Demo.h"
#include "service/store/Database.h"
#include "service/store/Things.h"
#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::ElementsAre;

// What the service answers to forms, without a process and a connection.
class StoredThings : public testing::Test {
protected:
    StoredThings() { seed::fillDemo(database_); }

    std::string answer(const std::string& body)
    {
        return commands::answerForm(database_, settings_, http::Form::fromUrlEncoded(body));
    }

    std::string credOf(const std::string& name)
    {
        return textAt(answer("cmd=login&username=" + name + "&password=" + name + "-demo-1"), kCred);
    }

    TemporaryFolder folder_;
    store::Database database_{folder_.file("data")};
    Settings settings_;
};

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
