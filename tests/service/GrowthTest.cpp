#include "tests/service/InnerService.h"
#include "tests/service/Work.h"

namespace service::test {

namespace {

class Growth : public InnerService {
protected:
    // Invites that many strangers to a new workspace, in one request.
    void invite(int count)
    {
        const std::string spaceID = makeSpace(anna_);
        std::string invitations;
        for (int i = 0; i < count; ++i) {
            invitations += "<invite><workspaceID>" + spaceID + "</workspaceID><user>s" + std::to_string(i) +
                           "@elsewhere.example</user><inviteAs>1</inviteAs></invite>";
        }
        const std::string reply = execute(anna_, "BulkSpaceInvite", "<invitations>" + invitations + "</invitations>");
        EXPECT_EQ(textsAt(reply, "//invite[status='pending']").size(), static_cast<std::size_t>(count));
    }

    // A loop's step whose text holds its variable that many times.
    void substitute(int count)
    {
        std::string text;
        for (int i = 0; i < count; ++i) text += "$$loopVar$$";
        EXPECT_SUCCESS(execute(anna_, "RunScript",
                               "<script><step><cmd>get</cmd><type>user</type><id>current</id><set var=\"A\" "
                               "path=\"user/email\"/></step><foreach var=\"A\"><step><cmd>list</cmd><type>event</type>"
                               "<where><eq><path>eventID</path><value>" +
                                   text + "</value></eq></where></step></foreach></script>"));
    }

    std::string anna_ = credOf("anna");
};

TEST_F(Growth, TenTimesTheInvitationsAreTenTimesTheWork)
{
    const double few = workOf([&] { invite(80); });
    EXPECT_LT(workOf([&] { invite(800); }), kTenfold * few);
}

TEST_F(Growth, TenTimesTheLoopVariablesAreTenTimesTheWork)
{
    const double few = workOf([&] { substitute(20'000); });
    EXPECT_LT(workOf([&] { substitute(200'000); }), kTenfold * few);
}

}  // namespace

}  // namespace service::test
