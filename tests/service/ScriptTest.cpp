#include "tests/service/DemoService.h"

namespace service::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kNames = "/kznapi/return/step/workspace/workspaceName";

std::string list(const std::string& rest)
{
    return "<step><cmd>list</cmd><type>workspace</type>" + rest + "</step>";
}

std::string equals(const std::string& path, const std::string& value)
{
    return "<eq><path>" + path + "</path><value>" + value + "</value></eq>";
}

class Script : public DemoService {
protected:
    // The names that a condition leaves of anna's three demo workspaces.
    std::vector<std::string> namesWhere(const std::string& condition)
    {
        const std::string reply = anna_.script(list("<where>" + condition + "</where><select>workspaceName</select>"));
        EXPECT_SUCCESS(reply);
        return textsAt(reply, kNames);
    }

    User anna_{port_, "anna"};
    User clara_{port_, "clara"};
};

// The whole list screen of a host in one literal script, not encoded.
TEST_F(Script, AnswersTheListingOfWorkspacesInvitationsAndRoles)
{
    const std::string reply = clara_.call(
        "cmd=execute&task=RunScript&xml=<script><step><cmd>list</cmd><type>workspace</type><where><eq>"
        "<path>members/member/userID</path><senv>userID</senv></eq></where><select>workspaceID:workspaceName:userID:"
        "userName:type:isTemplate:namespaceID:ext/KZN/description/text:ext/KZN/spaceIcon/url</select><page>1</page>"
        "<pageSize>10000</pageSize></step><step><cmd>get</cmd><type>invt</type><select>*</select><where><or><eq>"
        "<path>userDescriptor</path><senv>userID</senv></eq><eq><path>userDescriptor</path><senv>userName</senv></eq>"
        "</or></where></step><step><cmd>get</cmd><type>user</type><id>current</id><select>workspaces/workspace/roles/"
        "role/roleID:workspaces/workspace/roles/role/roleName:workspaces/workspace/workspaceID</select></step></"
        "script>");
    EXPECT_SUCCESS(reply);
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step"), SizeIs(3));
    EXPECT_THAT(textsAt(reply, kNames), ElementsAre("Autumn catalogue"));
    EXPECT_EQ(textAt(reply, "/kznapi/return/step/workspace/ext/KZN/description/text"),
              "Layout and texts of the autumn catalogue");
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/workspace/members"), IsEmpty());
    const std::string invitation = "/kznapi/return/step/spaceInvite/";
    EXPECT_THAT(textsAt(reply, invitation + "workspaceName"), ElementsAre("Messestand Köln"));
    EXPECT_THAT(textsAt(reply, invitation + "userDescriptor"), ElementsAre("user-clara"));
    EXPECT_EQ(textAt(reply, invitation + "status"), "pending");
    EXPECT_EQ(textAt(reply, invitation + "ownerName"), "anna");
    EXPECT_EQ(textAt(reply, invitation + "inviteAs"), "KZN:SpaceMember");
    const std::string role = "/kznapi/return/step/user/workspaces/workspace/";
    EXPECT_EQ(textsAt(reply, role + "workspaceID"), textsAt(reply, "/kznapi/return/step/workspace/workspaceID"));
    EXPECT_THAT(textsAt(reply, role + "roles/role/roleID"), ElementsAre("KZN:SpaceMember"));
    EXPECT_THAT(textsAt(reply, role + "roles/role/roleName"), ElementsAre("Member"));
    EXPECT_THAT(textsAt(reply, role + "workspaceName"), IsEmpty());
}

TEST_F(Script, JoinsConditionsToAnyDepth)
{
    const std::string autumn = equals("workspaceName", "Autumn catalogue");
    const std::string archive = equals("workspaceName", "Photo archive");
    const std::string withBen = equals("members/member/userName", "ben");
    const std::string mine = "<eq><path>userID</path><senv>userID</senv></eq>";
    const std::string mineByName = "<eq><path>userName</path><senv>userName</senv></eq>";
    EXPECT_THAT(namesWhere(autumn), ElementsAre("Autumn catalogue"));
    EXPECT_THAT(namesWhere(withBen), ElementsAre("Autumn catalogue", "Photo archive"));
    EXPECT_THAT(namesWhere("<and>" + withBen + mine + "</and>"), ElementsAre("Autumn catalogue"));
    EXPECT_THAT(namesWhere("<or>" + archive + mineByName + "</or>"),
                ElementsAre("Autumn catalogue", "Messestand Köln", "Photo archive"));
    EXPECT_THAT(
        namesWhere("<and><or>" + autumn + archive + "</or><and>" + withBen + "<or>" + archive + "</or></and></and>"),
        ElementsAre("Photo archive"));
    EXPECT_THAT(namesWhere("<and>" + autumn + archive + "</and>"), IsEmpty());
    EXPECT_THAT(namesWhere(equals("ext/KZN/description/text", "All pictures since 2015")),
                ElementsAre("Photo archive"));
    EXPECT_THAT(namesWhere(equals("workspace/tabs/tab/tabName", "Files")), SizeIs(3));
    EXPECT_THAT(namesWhere(equals("no/such/field", "")), IsEmpty());
}

TEST_F(Script, FindsUsersByNameExtensionAndWorkspace)
{
    const auto usersWhere = [&](const std::string& condition) {
        const std::string reply = anna_.script("<step><cmd>list</cmd><type>user</type><where>" + condition +
                                               "</where><select>userID</select></step>");
        EXPECT_SUCCESS(reply);
        return textsAt(reply, "/kznapi/return/step/user/userID");
    };
    EXPECT_THAT(usersWhere(equals("userName", "clara")), ElementsAre("user-clara"));
    EXPECT_THAT(usersWhere(equals("userName", "Clara")), IsEmpty());
    EXPECT_THAT(usersWhere(equals("ext/KZN/firstName", "Dmitri")), ElementsAre("user-dmitri"));
    EXPECT_THAT(usersWhere(equals("ext/KZN/firstName", "dmitri")), IsEmpty());
    EXPECT_THAT(usersWhere("<or>" + equals("userName", "clara") + equals("ext/KZN/firstName", "Ben") + "</or>"),
                testing::UnorderedElementsAre("user-ben", "user-clara"));

    // Nobody sees whom else a workspace has from the users: one's own are all that is told.
    const std::string autumn = anna_.spaceNamed("Autumn catalogue");
    EXPECT_THAT(usersWhere(equals("workspaces/workspace/workspaceID", autumn)), ElementsAre("user-anna"));
    const std::string claras = clara_.makeSpace("Clara's");
    EXPECT_THAT(usersWhere(equals("workspaces/workspace/workspaceID", claras)), IsEmpty());
}

TEST_F(Script, FindsTheOrganisationByItsDomains)
{
    const auto organisationsWith = [&](const std::string& domain) {
        const std::string reply =
            anna_.script("<step><cmd>list</cmd><type>org</type><where>" + equals("domains/domain/domainName", domain) +
                         "</where><select>orgID</select></step>");
        EXPECT_SUCCESS(reply);
        return textsAt(reply, "/kznapi/return/step/org/orgID");
    };
    EXPECT_THAT(organisationsWith("nordwind.example"), ElementsAre("org-nordwind"));
    EXPECT_THAT(organisationsWith("studio.nordwind.example"), ElementsAre("org-nordwind"));
    EXPECT_THAT(organisationsWith("suedwind.example"), IsEmpty());
}

TEST_F(Script, SelectsPathsAndWholeObjects)
{
    const std::string where = "<where>" + equals("workspaceName", "Photo archive") + "</where>";
    const auto fields = [&](const std::string& select) {
        const std::string reply = anna_.script(list(where + "<select>" + select + "</select>"));
        return textsAt(reply, "/kznapi/return/step/workspace/*").size();
    };
    const std::size_t all = fields("*");
    EXPECT_GT(all, 12U);
    EXPECT_EQ(fields("workspace"), all);
    EXPECT_EQ(fields("workspaceID"), 1U);
    EXPECT_EQ(fields("workspaceID:members"), 2U);
    EXPECT_EQ(fields("workspace/workspaceID:workspace/type"), 2U);
    EXPECT_EQ(fields("nothing"), 0U);
    const std::string reply = anna_.script(list(where + "<select>members/member/userID:tabs/tab</select>"));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/workspace/members/member/*"), ElementsAre("user-ben", "user-anna"));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/workspace/tabs/tab/*"), SizeIs(8));
}

TEST_F(Script, AnswersPageByPage)
{
    const auto page = [&](const std::string& element, int number) {
        const std::string text = std::to_string(number);
        return textsAt(anna_.script(list("<select>workspaceName</select><" + element + ">" + text + "</" + element +
                                         "><pageSize>2</pageSize>")),
                       kNames);
    };
    EXPECT_THAT(page("page", 1), ElementsAre("Autumn catalogue", "Messestand Köln"));
    EXPECT_THAT(page("page", 2), ElementsAre("Photo archive"));
    EXPECT_THAT(page("page", 3), IsEmpty());
    EXPECT_THAT(page("pageStart", 2), ElementsAre("Photo archive"));
    EXPECT_FAILURE(anna_.script(list("<page>0</page>")), "KZN:BadScript");
    EXPECT_FAILURE(anna_.script(list("<page>99999999999999999999</page>")), "KZN:BadScript");
    EXPECT_FAILURE(anna_.script(list("<pageSize>10001</pageSize>")), "KZN:BadScript");
}

TEST_F(Script, RepeatsStepsForEachValueOfAVariable)
{
    const std::string reply =
        anna_.script(list("<select>workspaceID</select><set var=\"ID\" path=\"workspace/workspaceID\"/>") +
                     "<foreach var=\"ID\"><step><cmd>get</cmd><type>workspace</type><id>$$loopVar$$</id>"
                     "<select>workspaceName:members/member/userID</select><set var=\"MEMBER\" "
                     "path=\"workspace/members/member/userID\"/>"
                     "</step><foreach "
                     "var=\"MEMBER\"><step><cmd>get</cmd><type>user</type><id>$$loopVar$$</id><select>userName</select>"
                     "</step></foreach></foreach>");
    EXPECT_SUCCESS(reply);
    EXPECT_THAT(textsAt(reply, kNames), ElementsAre("Autumn catalogue", "Messestand Köln", "Photo archive"));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step/user/userName"),
                ElementsAre("anna", "ben", "clara", "anna", "dmitri", "ben", "anna"));
}

TEST_F(Script, LoopsOverNothingWhereNothingWasFound)
{
    const std::string reply = anna_.script(
        list("<where>" + equals("workspaceName", "none") + "</where><set var=\"ID\" path=\"workspace/workspaceID\"/>") +
        "<foreach var=\"ID\"><step><cmd>get</cmd><type>workspace</type><id>$$loopVar$$</id></step></foreach>");
    EXPECT_SUCCESS(reply);
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step"), SizeIs(1));
}

TEST_F(Script, NeverTurnsAValueIntoMarkup)
{
    anna_.makeSpace("</id><id>current");
    const std::string reply = anna_.script(
        list("<set var=\"NAME\" path=\"workspace/workspaceName\"/>") +
        "<foreach var=\"NAME\"><step><cmd>list</cmd><type>workspace</type><where><eq><path>workspaceName</path>"
        "<value>$$loopVar$$</value></eq></where><select>type</select></step></foreach>");
    EXPECT_SUCCESS(reply);
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step"), SizeIs(5));
    EXPECT_THAT(textsAt(reply, "/kznapi/return/step[position()>1]/workspace/type"), SizeIs(4));
}

TEST_F(Script, RefusesWhatItCannotRead)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "KZN:BadScript"},
        {"<other/>", "KZN:BadScript"},
        {"<step/>", "KZN:UnknownCommand"},
        {"<step><cmd>drop</cmd><type>workspace</type></step>", "KZN:UnknownCommand"},
        {"<step><cmd>list</cmd></step>", "KZN:UnknownType"},
        {"<step><cmd>list</cmd><type>planet</type></step>", "KZN:UnknownType"},
        {list("<what/>"), "KZN:BadScript"},
        {list("<select>a</select><select>b</select>"), "KZN:BadScript"},
        {list("<select></select>"), "KZN:BadScript"},
        {list("<select>a::b</select>"), "KZN:BadScript"},
        {list("<where/>"), "KZN:BadScript"},
        {list("<where><and/></where>"), "KZN:BadScript"},
        {list("<where><not/></where>"), "KZN:BadScript"},
        {list("<where><eq><path>a</path></eq></where>"), "KZN:BadScript"},
        {list("<where><eq><value>a</value></eq></where>"), "KZN:BadScript"},
        {list("<where><eq><path>a</path><value>a</value><senv>userID</senv></eq></where>"), "KZN:BadScript"},
        {list("<where><eq><path>a</path><senv>HOME</senv></eq></where>"), "KZN:BadScript"},
        {list("<set var=\"A\"/>"), "KZN:BadScript"},
        {"<foreach var=\"A\">" + list("") + "</foreach>", "KZN:BadScript"},
        {"<foreach>" + list("") + "</foreach>", "KZN:BadScript"},
        {"<step><cmd>get</cmd><type>workspace</type><id></id></step>", "KZN:BadScript"},
        {"<step><cmd>get</cmd><type>workspace</type><id>none</id></step>", "KZN:NoSuchObject"},
        {"<step><cmd>execute</cmd><task>RunScript</task><xml><script/></xml></step>", "KZN:BadScript"},
        {"<step><cmd>execute</cmd><task>Nothing</task><xml><a/></xml></step>", "KZN:UnknownTask"},
        {"<step><cmd>execute</cmd><task>AddTabs</task></step>", "KZN:BadScript"},
    };
    for (const auto& [steps, exception] : cases) {
        SCOPED_TRACE(steps);
        EXPECT_FAILURE(anna_.script(steps), exception);
    }
    EXPECT_THAT(textAt(anna_.script("<step><cmd>list</cmd><type>planet</type></step>"), kReason), HasSubstr("planet"));
    EXPECT_FAILURE(anna_.execute("RunScript", "<scripts/>"), "KZN:BadScript");
}

// Nothing that a refused script did before the refusal remains.
TEST_F(Script, IsUndoneAsAWhole)
{
    const std::string reply = anna_.script(
        "<step><cmd>execute</cmd><task>AddTabs</task><xml><workspace><workspaceName>Gone</workspaceName></workspace></"
        "xml>"
        "</step><step><cmd>drop</cmd></step>");
    EXPECT_FAILURE(reply, "KZN:UnknownCommand");
    EXPECT_THAT(namesWhere(equals("workspaceName", "Gone")), IsEmpty());
}

TEST_F(Script, HasLimits)
{
    std::string steps = list("<select>workspaceID</select><set var=\"A\" path=\"workspace/workspaceID\"/>");
    for (int i = 0; i < 5; ++i) steps += "<foreach var=\"A\">";
    steps += list("");
    for (int i = 0; i < 5; ++i) steps += "</foreach>";
    EXPECT_FAILURE(anna_.script(steps), "KZN:LimitExceeded");

    std::string deep;
    for (int i = 0; i < 5000; ++i) deep += "<and>";
    EXPECT_FAILURE(anna_.script(list("<where>" + deep)), "KZN:LimitExceeded");

    // Doubles a list of three by looping over it again and again: the steps run out before the service does.
    std::string many =
        list("<select>members/member/userID</select><set var=\"M\" path=\"workspace/members/member/userID\"/>");
    for (int i = 0; i < 9000; ++i) many += "<foreach var=\"M\">" + list("<select>workspaceID</select>") + "</foreach>";
    EXPECT_FAILURE(anna_.script(many), "KZN:LimitExceeded");
    EXPECT_SUCCESS(anna_.script(list("")));
}

}  // namespace

}  // namespace service::test
