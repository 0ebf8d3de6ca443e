// The resources below /control/: the state as a whole, the clock, what organisations allow.
#include <fstream>
#include <functional>

#include "tests/service/ControlledService.h"

namespace service::test {

namespace {

using nlohmann::json;
using testing::Contains;
using testing::HasSubstr;
using testing::SizeIs;

using Control = ControlledService;

constexpr const char* kSmallSeed = R"({
  "organisations": [{"id": "org-1", "name": "One",
                     "policy": {"HasSpaces": true, "create-workspace": true, "create-chatRoom": true,
                                "JoinSpace": true}}],
  "users": [
    {"name": "emil", "organisation": "org-1", "password": "emil-demo-1", "email": "emil@one.example"},
    {"name": "fria", "organisation": "org-1", "password": "fria-demo-1", "email": "fria@one.example"}],
  "libraries": [{"id": "lib-emil", "name": "Emil's", "owner": "emil",
                 "applications": [{"name": "Plan", "tabs": [{"name": "First"}]}]}],
  "workspaces": [
    {"name": "Shared", "creator": "emil", "members": [{"user": "fria", "role": "administrator"}],
     "tabs": [{"name": "Talk", "shows": "discussion"}, {"name": "Plain"}]},
    {"name": "Invited", "creator": "emil", "invited": ["fria"]}]
})";

TEST_F(Control, ListsWhatThereIs)
{
    EXPECT_THAT(done("GET", "").at("resources"), Contains("POST /control/reset"));
}

TEST_F(Control, RefusesWhatThereIsNot)
{
    EXPECT_THAT(refused(404, "GET", "nothing"), HasSubstr("\"/control/nothing\""));
    EXPECT_THAT(refused(404, "GET", "clock/"), HasSubstr("/control/clock/"));
    EXPECT_THAT(refused(405, "DELETE", "reset"), HasSubstr("POST"));
    EXPECT_THAT(refused(405, "POST", "clock"), HasSubstr("GET, PUT, DELETE"));
    EXPECT_THAT(refused(400, "PUT", "clock", "{\n  \"time\": x}"), HasSubstr("line 2, column 11"));
    EXPECT_THAT(refused(400, "PUT", "clock", "[]"), HasSubstr("object"));
    EXPECT_THAT(refused(400, "PUT", "clock"), HasSubstr("object"));
    EXPECT_THAT(refused(400, "POST", "reset", R"({"emtpy": true})"), HasSubstr("\"emtpy\""));
    EXPECT_THAT(refused(400, "POST", "reset", R"({"empty": 1})"), HasSubstr("true or false"));
    Talk talk(port_);
    talk.sendRaw("PUT /control/faults HTTP/1.1\r\nConnection: close\r\nHost: " + talk.host() +
                 "\r\nAuthorization: Bearer " + kToken + "\r\n\r\n");
    EXPECT_THAT(talk.readToEnd(), HasSubstr("\r\nAllow: GET, POST, DELETE\r\n"));
    EXPECT_NE(signIn(port_, "anna"), "");
}

TEST_F(Control, AResetLeadsBackToTheSeed)
{
    User anna(port_, "anna");
    ASSERT_NE(anna.makeSpace("New"), "");
    done("POST", "clock/advance", R"({"seconds": 1000})");
    done("PUT", "policy", R"({"VoIPExt": true})");
    const json told = done("POST", "reset");
    EXPECT_EQ(told.at("users"), 4);
    EXPECT_EQ(told.at("workspaces"), 4);
    EXPECT_EQ(told.at("sessions"), 0);
    EXPECT_FAILURE(anna.call("cmd=logout"), "KZN:InvalidCredential");
    EXPECT_EQ(User(port_, "anna").spaceNamed("New"), "");
    EXPECT_EQ(done("GET", "clock").at("offset"), 0);
    EXPECT_EQ(done("GET", "policy").at("org-nordwind").at("VoIPExt"), false);
}

TEST_F(Control, AnEmptyServiceTakesASeed)
{
    EXPECT_THAT(refused(409, "POST", "seed", kSmallSeed), HasSubstr("users already"));
    EXPECT_EQ(done("POST", "reset", R"({"empty": true})").at("users"), 0);
    EXPECT_EQ(signIn(port_, "anna"), "");
    const json told = done("POST", "seed", kSmallSeed);
    EXPECT_EQ(told.at("users"), 2);
    EXPECT_EQ(told.at("workspaces"), 2);
    User fria(port_, "fria");
    const std::string spaceID = fria.spaceNamed("Shared");
    ASSERT_NE(spaceID, "");
    EXPECT_SUCCESS(fria.addTab(spaceID, "She administers it", 3));
    EXPECT_THAT(textsAt(fria.fieldsOf(spaceID), "//tab/tabName"),
                testing::ElementsAre("Talk", "Plain", "She administers it"));
    EXPECT_SUCCESS(fria.answer(textAt(fria.script("<step><cmd>get</cmd><type>invt</type><select>*</select></step>"),
                                      "//spaceInvite/workspaceID"),
                               "accept"));
    // Who has no token cannot sign in with an empty one.
    EXPECT_FAILURE(form(port_, "cmd=login&username=emil&token="), "KZN:LoginRefused");
}

TEST_F(Control, ASeedThatContradictsItselfChangesNothing)
{
    done("POST", "reset", R"({"empty": true})");
    const std::string org =
        R"("organisations": [{"id": "o", "name": "O", "policy": {"HasSpaces": true, "create-workspace": true}}])";
    const std::string user = R"("users": [{"name": "emil", "organisation": "o", "password": "p", "email": "e@o"}])";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"[]", "the seed has to be an object"},
        {R"({"people": []})", "nothing is called \"people\""},
        {R"({"users": {}})", "\"users\" has to be a list"},
        {R"({"users": [{"name": "emil"}]})", "the user \"emil\": \"organisation\" is missing"},
        {R"({"users": [{"name": "emil", "organisation": "o"}]})", "there is no organisation \"o\""},
        {"{" + org + R"(, "users": [{"name": "emil", "organisation": "o", "password": "p", "email": "e", "x": 1}]})",
         "the user \"emil\": nothing is called \"x\""},
        {"{" + org + ", " + user + R"(, "workspaces": [{"name": "W", "creator": "fria"}]})", "no user \"fria\""},
        {"{" + org + ", " + user + R"(, "workspaces": [{"name": "W", "creator": "emil", "tabs": [{"name": "t",
          "shows": "what"}]}]})",
         "\"shows\""},
        {"{" + org + ", " + user + R"(, "workspaces": [{"name": "W", "creator": "emil", "templateIn": "none"}]})",
         "the workspace \"W\""},
        {R"({"organisations": [{"id": "o", "name": "O"}], )" + user +
             R"(, "workspaces": [{"name": "W", "creator": "emil"}]})",
         "the workspace \"W\""},
        {"{" + org + R"(, "users": [{"name": "a", "organisation": "o", "password": "p", "email": "e"},
          {"name": "a", "organisation": "o", "password": "p", "email": "f"}]})",
         "the user \"a\": UNIQUE"},
    };
    for (const auto& [seed, why] : cases) {
        SCOPED_TRACE(seed);
        EXPECT_THAT(refused(400, "POST", "seed", seed), HasSubstr(why));
        EXPECT_EQ(done("GET", "state").at("tables").at("org"), json::array());
    }
    EXPECT_EQ(done("POST", "seed", kSmallSeed).at("users"), 2);
}

TEST(SeedFile, IsWhatAServiceBeginsWithAndIsResetTo)
{
    const TemporaryFolder folder;
    const std::string seed = folder.file("seed.json");
    std::ofstream(seed) << kSmallSeed;
    ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--seed", seed, "--control-token", kToken}));
    EXPECT_NE(User(process.port(), "emil").makeSpace("New"), "");
    std::filesystem::remove(seed);
    EXPECT_EQ(control(process.port(), "POST", "reset").body.at("workspaces"), 2);
    EXPECT_EQ(User(process.port(), "emil").spaceNamed("New"), "");
}

TEST(SeedFile, ThatCannotBeUsedKeepsTheServiceFromStarting)
{
    const TemporaryFolder folder;
    std::ofstream(folder.file("broken")) << "{\n  \"users\": [}";
    std::ofstream(folder.file("wrong")) << R"({"users": [{"name": "emil"}]})";
    for (const std::string name : {"broken", "wrong", "missing"}) {
        ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--seed", folder.file(name)}));
        EXPECT_THAT(process.errors(), IsLike("pvwapi-service: [^\n]+\n"));
        EXPECT_EQ(process.wait(), 2);
        EXPECT_FALSE(std::filesystem::exists(folder.file("data"))) << name;
    }
}

TEST_F(Control, TheStateGoesOutAndComesBack)
{
    User anna(port_, "anna");
    const std::string spaceID = anna.makeSpace("Kept \"as\" <it> was, mit Ä");
    EXPECT_SUCCESS(uploadIcon(port_, anna.cred(), spaceID, std::string("\x89PNG\r\n\x1a\n\0\xFF", 10)).body);
    const std::string before = anna.fieldsOf(spaceID);
    const json state = done("GET", "state");
    EXPECT_EQ(state.at("format"), "pvwapi-service-state");
    EXPECT_THAT(state.at("tables").at("user"), SizeIs(4));

    done("POST", "reset", R"({"empty": true})");
    EXPECT_FAILURE(anna.fieldsOf(spaceID), "KZN:InvalidCredential");
    EXPECT_EQ(done("PUT", "state", state.dump()).at("workspaces"), 5);
    EXPECT_EQ(anna.fieldsOf(spaceID), before);  // the session is in the state too
    EXPECT_EQ(done("GET", "state"), state);

    ServiceProcess other(ServiceProcess::on(":memory:", {"--control-token", kToken}));
    EXPECT_EQ(service::test::control(other.port(), "PUT", "state", state.dump()).status, 200U);
    EXPECT_EQ(service::test::control(other.port(), "GET", "state").body, state);
}

TEST_F(Control, AStateThatDoesNotFitChangesNothing)
{
    const json good = done("GET", "state");
    const auto without = [&good](const std::function<void(json&)>& change) {
        json state = good;
        change(state);
        return state.dump();
    };
    const std::vector<std::pair<std::string, std::string>> cases{
        {"{}", "not a state"},
        {without([](json& state) { state["format"] = "else"; }), "not a state"},
        {without([](json& state) { state["more"] = 1; }), "\"more\""},
        {without([](json& state) { state["tables"]["more"] = json::array(); }), "\"more\""},
        {without([](json& state) { state["tables"].erase("tab"); }), "\"tab\" is missing"},
        {without([](json& state) { state["tables"]["user"][1].erase("email"); }), "row 2 of \"user\": \"email\""},
        {without([](json& state) { state["tables"]["user"][0]["email"] = 7; }), "row 1 of \"user\": \"email\""},
        {without([](json& state) { state["tables"]["user"][0]["x"] = "y"; }), "\"x\""},
        {without([](json& state) { state["tables"]["user"][1]["user_id"] = "user-anna"; }),
         "row 2 of \"user\": UNIQUE"},
        {without([](json& state) { state["tables"]["workspace"][0]["type"] = "0"; }), "\"type\""},
        {without([](json& state) { state["tables"]["org"] = json::array(); }), "\"org\""},
    };
    for (const auto& [state, why] : cases) {
        EXPECT_THAT(refused(400, "PUT", "state", state), HasSubstr(why));
        EXPECT_EQ(done("GET", "state"), good) << why;
    }
    EXPECT_THAT(refused(409, "PUT", "state", without([](json& state) { state["schema"] = 99; })), HasSubstr("newer"));
}

TEST_F(Control, SessionsExpireWithTheClock)
{
    User anna(port_, "anna");
    done("POST", "clock/advance", R"({"seconds": 7000})");
    EXPECT_SUCCESS(anna.call("cmd=get&type=user&id=user-anna&select=*"));
    done("POST", "clock/advance", R"({"seconds": 7300})");
    EXPECT_FAILURE(anna.call("cmd=get&type=user&id=user-anna&select=*"), "KZN:SessionExpired");
}

TEST_F(Control, InvitationsExpireWithTheClock)
{
    const auto open = [this] {
        return textsAt(User(port_, "clara").script("<step><cmd>get</cmd><type>invt</type><select>*</select></step>"),
                       "//spaceInvite/spaceInviteID")
            .size();
    };
    const std::size_t before = open();
    ASSERT_GT(before, 0U);
    done("POST", "clock/advance", R"({"seconds": 2600000})");
    EXPECT_EQ(open(), 0U);
    done("DELETE", "clock");
    EXPECT_EQ(open(), before);
}

TEST_F(Control, TheClockIsSetAndGoesOn)
{
    const json set = done("PUT", "clock", R"({"time": "2030-02-01T09:30:00Z"})");
    EXPECT_THAT(set.at("time").get<std::string>(), testing::StartsWith("2030-02-01T09:30:0"));
    EXPECT_GE(done("GET", "clock").at("now"), set.at("now"));
    EXPECT_THAT(done("PUT", "clock", R"({"now": 0})").at("time").get<std::string>(), testing::StartsWith("1970-01-01"));
    for (const char* const body : {R"({})", R"({"time": "2030-02-30T09:30:00Z"})", R"({"time": "tomorrow"})",
                                   R"({"time": "2030-02-01T09:30:00Z", "now": 1})", R"({"now": -1})",
                                   R"({"now": 1e300})", R"({"now": 18446744073709551615})"}) {
        refused(400, "PUT", "clock", body);
    }
    refused(400, "POST", "clock/advance", R"({"seconds": 253402300799})");
    refused(400, "POST", "clock/advance", R"({"seconds": -1000000})");
    EXPECT_THAT(done("GET", "clock").at("time").get<std::string>(), testing::StartsWith("1970-01-01"));
    EXPECT_EQ(done("DELETE", "clock").at("offset"), 0);
}

TEST(ClockOfAFile, StaysAsItWasSet)
{
    const TemporaryFolder folder;
    {
        ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--control-token", kToken}));
        EXPECT_EQ(control(process.port(), "POST", "clock/advance", R"({"seconds": 500})").body.at("offset"), 500'000);
    }
    ServiceProcess process(ServiceProcess::on(folder.file("data"), {"--control-token", kToken}));
    EXPECT_EQ(control(process.port(), "GET", "clock").body.at("offset"), 500'000);
}

TEST_F(Control, SwitchesTakeEffectAtOnce)
{
    User anna(port_, "anna");
    const auto access = [&anna] {
        return textAt(anna.execute("ProbeAccess", "<tests><VoIPExt/></tests>"), "/kznapi/return/VoIPExt/access");
    };
    EXPECT_EQ(access(), "false");
    EXPECT_EQ(done("PUT", "policy", R"({"VoIPExt": true})").at("VoIPExt"), true);
    EXPECT_EQ(access(), "true");
    EXPECT_EQ(done("GET", "policy").at("org-nordwind").at("VoIPExt"), true);
    EXPECT_EQ(done("GET", "policy?organisation=org-nordwind").at("VoIPExt"), true);
    refused(404, "GET", "policy?organisation=none");
    refused(400, "PUT", "policy", R"({"VoIPExt": false, "VideoExt": "on"})");
    refused(400, "PUT", "policy", R"({"with blanks": true})");
    EXPECT_EQ(access(), "true");
    done("POST", "reset", R"({"empty": true})");
    refused(409, "PUT", "policy", R"({"VoIPExt": true})");
}

}  // namespace

}  // namespace service::test
