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

class Things : public DemoService {
protected:
    std::string record(User& user, const std::string& spaceID)
    {
        return textAt(user.call("cmd=create&type=thng&xml=<thing><thingName>MeetingRecording</thingName><ext><KZN>"
                                "<meetingRecording><workspaceID>" +
                                spaceID + "</workspaceID></meetingRecording></KZN></ext></thing>"),
                      "/kznapi/return/thing/thingID");
    }

    static std::vector<std::string> seenBy(User& user)
    {
        return textsAt(user.script("<step><cmd>list</cmd><type>thng</type></step>"),
                       "/kznapi/return/step/thing/thingID");
    }

    static std::string remove(User& user, const std::string& thingID)
    {
        return user.call("cmd=delete&type=thng&id=" + thingID);
    }

    User anna_{port_, "anna"};
    User ben_{port_, "ben"};
    User clara_{port_, "clara"};
    User dmitri_{port_, "dmitri"};
    // Anna made it, ben administers it, clara is a member.
    std::string autumn_ = anna_.spaceNamed("Autumn catalogue");
};

TEST_F(Things, AreDeletedByTheirOwnerAndTheWorkspacesAdministrators)
{
    const std::string annas = record(anna_, autumn_);
    const std::string claras = record(clara_, autumn_);
    EXPECT_THAT(seenBy(ben_), ElementsAre(annas, claras));
    EXPECT_FAILURE(remove(clara_, annas), "KZN:AccessDenied");
    EXPECT_FAILURE(remove(dmitri_, annas), "KZN:NoSuchObject");
    EXPECT_FAILURE(anna_.call("cmd=delete&type=thng"), "KZN:BadRequest");
    EXPECT_THAT(seenBy(ben_), ElementsAre(annas, claras));

    EXPECT_SUCCESS(remove(ben_, annas));
    EXPECT_THAT(seenBy(anna_), ElementsAre(claras));
    EXPECT_SUCCESS(remove(clara_, claras));
    EXPECT_THAT(seenBy(anna_), testing::IsEmpty());
    EXPECT_FAILURE(remove(clara_, claras), "KZN:NoSuchObject");
}

TEST_F(Things, AreDeletedByACondition)
{
    record(anna_, autumn_);
    record(anna_, autumn_);
    const std::string note = textAt(anna_.call("cmd=create&type=thng&xml=<thing><thingName>Note</thingName></thing>"),
                                    "/kznapi/return/thing/thingID");
    const std::string records =
        "cmd=delete&type=thing&where=" + encoded("<eq><path>thingName</path><value>MeetingRecording</value></eq>");
    EXPECT_FAILURE(clara_.call(records), "KZN:AccessDenied");
    EXPECT_THAT(seenBy(anna_), testing::SizeIs(3));
    EXPECT_SUCCESS(anna_.call(records));
    EXPECT_THAT(seenBy(anna_), ElementsAre(note));
}

}  // namespace

}  // namespace service::test
