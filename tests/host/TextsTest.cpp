// What a person types arrives, whatever it holds: each command's texts in the request as its reader decodes it.
#include <regex>

#include "tests/host/HostFixture.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kHostile = "R&D <b>\"x\"</b> ]]> é \U0001F600";
constexpr const char* kElement = "R&amp;D &lt;b&gt;\"x\"&lt;/b&gt; ]]&gt; é \U0001F600";
constexpr const char* kSection = "R&D <b>\"x\"</b> ]]]]><![CDATA[> é \U0001F600";

/// "@" in a word is the hostile text. In the request {x} is how it stands in an element, {c} how it stands in a CDATA
/// section, {p} the text itself.
struct Case {
    Words words;
    std::string request;
};

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

Words wordsOf(const Case& one)
{
    Words words = one.words;
    for (std::string& word : words) word = replaced(word, "@", kHostile);
    return words;
}

std::string requestOf(const Case& one)
{
    return replaced(replaced(replaced(one.request, "{x}", kElement), "{c}", kSection), "{p}", kHostile);
}

std::vector<Case> spaceCases()
{
    return {
        {{"spaces", "show", "@"}, "<type>workspace</type><id>{x}</id>"},
        {{"spaces", "show", "@"}, "<set-workspace><id>{x}</id></set-workspace>"},
        {{"spaces", "create", "@", "--description", "@"}, "<workspaceName>{p}</workspaceName>"},
        {{"spaces", "create", "@", "--description", "@"}, "<text><![CDATA[{p}]]></text>"},
        {{"spaces", "clone", "@", "@", "--description", "@"},
         "<useWkspID>{p}</useWkspID><workspaceName>{p}</workspaceName>"},
        {{"spaces", "edit", "@", "--name", "@", "--description", "@"},
         "&id={p}&xml=<workspace><ext><KZN><description><text><![CDATA[{c}]]></text></description></KZN></ext>"
         "<workspaceName>{x}</workspaceName></workspace>"},
        {{"spaces", "delete", "@"}, "<workspaceID>{x}</workspaceID>"},
        {{"spaces", "leave", "@"}, "<workspaceID>{x}</workspaceID>"},
        {{"tabs", "list", "@"}, "&id={p}&select=tabs"},
        {{"tabs", "create", "@", "@"},
         "<workspaceID>{x}</workspaceID><tabs><tab><tabName><![CDATA[{c}]]></tabName><tabType>0</tabType>"},
        {{"tabs", "rename", "W1", "@", "@"}, "&id={p}&xml=<tab><tabName><![CDATA[{c}]]></tabName></tab>"},
        {{"tabs", "order", "@", "T1", "@"},
         "&id={p}&xml=<workspace><tabs><tab><tabID>T1</tabID><tabOrder>1</tabOrder>"},
        {{"tabs", "order", "@", "T1", "@"}, "<tabID>{x}</tabID><tabOrder>2</tabOrder></tab></tabs></workspace>"},
        {{"tabs", "delete", "W1", "@"}, "&type=tab&id={p}"},
        {{"apps", "instantiate", "@", "@", "--description", "@"},
         "<workspaceName>{x}</workspaceName><appName>{x}</appName>"},
        {{"apps", "instantiate", "@", "@", "--description", "@"}, "<description><text><![CDATA[{c}]]></text>"},
        {{"apps", "save", "@", "@", "@", "--description", "@"},
         "<workspace><workspaceID>{x}</workspaceID><appName>{x}</appName><groupID>{x}</groupID><description>"
         "<![CDATA[{c}]]></description></workspace>"},
    };
}

std::vector<Case> peopleCases()
{
    return {
        {{"access", "space", "@"}, "<set-workspace><id>{x}</id></set-workspace>"},
        {{"access", "doc", "@"}, "<set-doc><id>{x}</id></set-doc><delete-doc><id>{x}</id></delete-doc>"},
        {{"access", "room", "@"}, "<set-chatRoom><id>{x}</id></set-chatRoom>"},
        {{"roles", "@"}, "<get><cmd>get</cmd><id>{x}</id><type>workspace</type></get>"},
        {{"roles", "--with", "@"}, "<value>{x}</value>"},
        {{"members", "list", "@"}, "&id={p}&select=members"},
        {{"members", "invite", "@", "@", "--message", "@", "--provider", "@"},
         "<workspaceID>{x}</workspaceID><user><![CDATA[{c}]]></user>"},
        {{"members", "invite", "@", "@", "--message", "@", "--provider", "@"},
         "<isproviderID>{x}</isproviderID><userDefinedMessage><![CDATA[{c}]]></userDefinedMessage>"},
        {{"members", "invite", "W", "u", "--method", "@"}, "<inviteMethod>{x}</inviteMethod>"},
        {{"members", "remove", "@", "@"}, "&id={p}&select=workspace/members/member[userID='{p}']"},
        {{"members", "role", "@", "@", "admin"}, "<workspaceID>{x}</workspaceID><toRoleID>"},
        {{"members", "role", "@", "@", "admin"}, "</toRoleID><userID>{x}</userID>"},
        {{"invitations", "list", "--workspace", "@"}, "<path>workspaceID</path><value>{x}</value>"},
        {{"invitations", "accept", "@"}, "<workspaceID>{x}</workspaceID>"},
        {{"invitations", "reject", "@"}, "<workspaceID>{x}</workspaceID>"},
        {{"invitations", "withdraw", "@", "@"},
         "<value>{x}</value></eq><eq><path>userDescriptor</path><value><![CDATA[{c}]]></value>"},
        {{"favourites", "list", "--list", "@"}, "<path>thingName</path><value>{x}</value>"},
        {{"favourites", "add", "@", "--list", "@"},
         "<thingName>{x}</thingName><workspaceID>{x}</workspaceID><thingType>"},
        {{"favourites", "remove", "@", "--list", "@"},
         "<value>{x}</value></eq><eq><path>workspaceID</path><value>{x}</value>"},
    };
}

std::vector<Case> accountCases()
{
    return {
        {{"user", "profile", "@"}, "<user><userID>{x}</userID></user>"},
        {{"user", "edit", "--user", "@", "--host-name", "@", "--website", "@", "--build", "@", "--client-version", "@"},
         "&id={p}&xml=<user><ext><KZN><hostName>{x}</hostName><websiteURL>{x}</websiteURL><client><build>{x}</build>"
         "<version>{x}</version></client></KZN></ext></user>"},
        {{"av", "create", "--user", "@"}, "<user><userID>{x}</userID></user>"},
        {{"libraries", "add-template", "@", "@"}, "&id={p}&xml=<group><templates><template><templateID>{x}<"},
        {{"notify", "@"}, "<workspaceID>{x}</workspaceID>"},
        {{"activity", "@"}, "<workspaceID>{x}</workspaceID>"},
        {{"event", "send", "@", "end-voice", "--workspace-name", "@", "--message", "@", "--tag", "@", "--sender", "@"},
         "<eventWorkspaceID>{x}</eventWorkspaceID><eventWorkspaceName><![CDATA[{c}]]></eventWorkspaceName>"
         "<eventMessage><en_US><![CDATA[{c}]]></en_US></eventMessage><eventExtendedData><mySpecificTag>{x}"
         "</mySpecificTag></eventExtendedData><eventSender><userName>{x}</userName></eventSender>"},
        {{"meeting", "record", "@", "--site", "@", "--meeting", "@", "--host", "@", "--session", "@"},
         "<workspaceID>{x}</workspaceID><siteName>{x}</siteName><meetingID>{x}</meetingID><hostQueltID>{x}"
         "</hostQueltID><sessionName>{x}</sessionName>"},
        {{"session", "clone", "--workspace", "@"}, "&workspace={p}"},
    };
}

TEST_F(SessionHostTest, TextsReachTheServiceWhateverTheyHold)
{
    // Where the answer is not what a command waits for, the request has gone out all the same.
    server.otherwise(200, "text/xml", "<kznapi><response><result>SUCCESS</result></response></kznapi>");
    for (const auto& cases : {spaceCases(), peopleCases(), accountCases()}) {
        for (const Case& one : cases) {
            const std::size_t before = bodies().size();
            const Ended ended = pvwapi(wordsOf(one));
            EXPECT_EQ(ended.status, 0) << one.request << ended.err;
            ASSERT_EQ(bodies().size(), before + 1) << one.request;
            EXPECT_THAT(lastRequest(), HasSubstr(requestOf(one)));
        }
    }
}

TEST_F(SessionHostTest, NoTextBecomesAnotherField)
{
    succeed();
    EXPECT_EQ(pvwapi({"user", "edit", "--user", "U1", "--host-name", "x</hostName><websiteURL>evil"}).status, 0);
    EXPECT_THAT(lastRequest(),
                HasSubstr("<hostName>x&lt;/hostName&gt;&lt;websiteURL&gt;evil</hostName></KZN></ext></user>"));
}

TEST_F(SessionHostTest, CarriageReturnsDoNotBecomeLineFeeds)
{
    succeed();
    EXPECT_EQ(pvwapi({"spaces", "edit", "W1", "--name", "a\r\nb", "--description", "c\rd"}).status, 0);
    EXPECT_THAT(lastRequest(),
                testing::AllOf(HasSubstr("<workspaceName>a&#13;\nb<"), HasSubstr("<![CDATA[c]]>&#13;<![CDATA[d]]>")));
}

TEST_F(SessionHostTest, TextThatNoRequestCanCarryIsRefused)
{
    const std::vector<std::pair<Words, std::string>> cases{
        {{"spaces", "edit", "W1", "--name", "a\x01"},
         "spaces edit: --name: holds a character that no request can carry"},
        {{"tabs", "rename", "W1", "T1", "a\xEF\xBF\xBF"},
         "tabs rename: name: holds a character that no request can carry"},
        {{"members", "remove", "W1", "U'1"}, "members remove: user: a request cannot carry an ID with a quote"},
        {{"icon", "set", "W1", "a\"b.png"},
         "icon set: file: an upload cannot carry a name with a quotation mark or a control character"},
    };
    for (const auto& [words, line] : cases) {
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "pvwapi: " + line + "\n");
    }
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(SessionHostTest, InvitationIsShownAsItWasTyped)
{
    succeed(
        "<return><invitationResults><invite><workspaceID>W1</workspaceID><user>a&amp;b@x.example</"
        "user><status>pending</status>"
        "</invite></invitationResults></return>");
    const Ended ended = pvwapi({"members", "invite", "W1", "a&b@x.example"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_TRUE(std::regex_search(ended.out, std::regex("\na&b@x\\.example +pending"))) << ended.out;
}

TEST_F(SessionHostTest, FileOfCredentialsThatIsNotUtf8IsRefused)
{
    writeFile(path("credentials"), "user=anna\npassword=\xFF\xFE\n", true);
    const Ended ended = pvwapi({"session", "--credentials", path("credentials")});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.err, "pvwapi: session: " + path("credentials") + ":2: not UTF-8\n");
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(SessionHostTest, CredentialThatGoesOutAsItStandsIsEncoded)
{
    environment["PVWAPI_CRED"] = "a+b/c=&d";
    for (const Words& words :
         {Words{"notify", "W1"}, Words{"activity", "W1"}, Words{"favourites", "add", "W1", "--list", "L"},
          Words{"favourites", "remove", "W1", "--list", "L"}}) {
        succeed();
        EXPECT_EQ(pvwapi(words).status, 0);
        EXPECT_THAT(bodies().back(), testing::StartsWith("cred=a%2Bb%2Fc%3D%26d&cmd="));
    }
}

TEST_F(SessionHostTest, ListArrivesAsItIsTyped)
{
    server.otherwise(200, "text/xml", "<kznapi><response><result>SUCCESS</result></response></kznapi>");
    const std::vector<std::pair<Words, std::string>> cases{
        {{"user", "profile", "[]"}, "<userID>[]</userID>"},
        {{"user", "profile", "[a,b]"}, "<userID>[a,b]</userID>"},
        {{"spaces", "delete", "[w]"}, "<workspaceID>[w]</workspaceID>"},
        {{"user", "profile", "--", "-x", "--"}, "<userID>-x</userID></user><user><userID>--</userID>"},
        {{"notify", "--", "W1"}, "<workspaceID>W1</workspaceID>"},
        {{"members", "invite", "W", "--", "--role"}, "<user><![CDATA[--role]]></user>"},
        {{"tabs", "order", "W", "--", "a", "b"}, "<tabID>b</tabID><tabOrder>2</tabOrder>"},
        {{"spaces", "edit", "W", "--name", "--"}, "<workspaceName>--</workspaceName>"},
    };
    for (const auto& [words, request] : cases) {
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 0) << ended.err;
        ASSERT_FALSE(bodies().empty());
        EXPECT_THAT(lastRequest(), HasSubstr(request));
    }
}

TEST_F(SessionHostTest, CharactersThatXmlDoesNotKnowAreRefusedEverywhere)
{
    for (const Words& words : {Words{"spaces", "create", "a\x01"}, Words{"members", "list", "W\x02"},
                               Words{"av", "create", "--user", "be\x03n"}, Words{"tabs", "list", "\x1b[2J"}}) {
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 2) << words.front();
        EXPECT_THAT(ended.err, HasSubstr("holds a character that no request can carry"));
    }
    environment["PVWAPI_USER"] = "an\x01na";
    EXPECT_EQ(pvwapi({"session"}).err, "pvwapi: session: PVWAPI_USER: holds a character that no request can carry\n");
    EXPECT_THAT(bodies(), IsEmpty());
}

}  // namespace
