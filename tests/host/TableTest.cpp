// Tables on narrow and on wide lines, and what of a record they show.
#include <nlohmann/json.hpp>

#include "tests/host/HostFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class TableHostTest : public SessionHostTest {
protected:
    /// The workspaces of these names, listed.
    std::string listed(const std::vector<std::string>& names, Words words = {})
    {
        std::string spaces;
        for (const std::string& name : names) {
            spaces += "<workspace><workspaceID>workspace-1</workspaceID><workspaceName>" + name + "</workspaceName>" +
                      "<type>0</type><userName>anna</userName></workspace>";
        }
        succeed("<return><step>" + spaces + "</step></return>");
        words.insert(words.begin(), {"spaces", "list"});
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 0) << ended.err;
        return ended.out;
    }

    void expectRefused(const Words& words, const std::string& line)
    {
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "pvwapi: " + line + "\n");
        EXPECT_TRUE(bodies().empty());
    }
};

TEST_F(TableHostTest, WithoutATerminalNothingIsShortened)
{
    const std::string name(300, 'x');
    EXPECT_THAT(listed({name}), HasSubstr(name + "  0     unknown  anna\n"));
}

TEST_F(TableHostTest, WidestColumnGivesWayFirstAndTheFirstOneLast)
{
    environment["COLUMNS"] = "62";
    EXPECT_EQ(listed({std::string(300, 'x'), "Plan"}),
              "workspaceID  workspaceN…  type  role     userName  description\n"
              "workspace-1  xxxxxxxxxx…  0     unknown  anna\n"
              "workspace-1  Plan         0     unknown  anna\n");
    environment["COLUMNS"] = "41";
    EXPECT_EQ(listed({std::string(300, 'x'), "Plan"}),
              "workspaceID  wor…  type  role  use…  des…\n"
              "workspace-1  xxx…  0     unk…  anna\n"
              "workspace-1  Plan  0     unk…  anna\n");
    environment["COLUMNS"] = "38";
    EXPECT_THAT(listed({"Plan"}), testing::StartsWith("workspa…  wor…  type  role  use…  des…\n"));
}

TEST_F(TableHostTest, NoColumnGetsTooNarrowToRead)
{
    environment["COLUMNS"] = "1";
    EXPECT_EQ(listed({"Plan"}), "wor…  wor…  type  role  use…  des…\nwor…  Plan  0     unk…  anna\n");
    for (const char* const nonsense : {"0", "-5", "wide", "99999999999999999999"}) {
        environment["COLUMNS"] = nonsense;
        EXPECT_THAT(listed({"Plan"}), testing::StartsWith("workspaceID  workspaceName  type")) << nonsense;
    }
}

TEST_F(TableHostTest, LettersAreNotCutInTheMiddle)
{
    const Words chosen{"--columns", "workspaceName", "--no-header"};
    environment["COLUMNS"] = "6";
    EXPECT_EQ(listed({"日本語日本語"}, chosen), "日本…\n");
    EXPECT_EQ(listed({"e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301"}, chosen),
              "e\u0301e\u0301e\u0301e\u0301e\u0301…\n");
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    EXPECT_EQ(listed({family + family + family + family}, chosen), family + family + "…\n");
    const std::string flag = "\U0001F1E9\U0001F1EA";
    EXPECT_EQ(listed({flag + flag + flag}, chosen), flag + flag + flag + "\n");
    EXPECT_EQ(listed({"abcdef"}, chosen), "abcdef\n");
}

TEST_F(TableHostTest, ColumnsAreChosenAndOrdered)
{
    EXPECT_EQ(listed({"Plan"}, {"--columns", "role, workspaceName,status"}),
              "role     workspaceName  status\nunknown  Plan           accepted\n");
    EXPECT_EQ(listed({"Plan"}, {"--columns", "userName", "--no-header"}), "anna\n");
    EXPECT_EQ(listed({}, {"--columns", "role"}), "role\n");
    EXPECT_EQ(listed({}, {"--no-header"}), "");
}

TEST_F(TableHostTest, ColumnThatIsNotThereIsRefusedBeforeAnythingIsSent)
{
    expectRefused(
        {"spaces", "list", "--columns", "workspaceName,rloe"},
        "--columns: 'rloe' is no column of 'spaces list'; did you mean 'role'? See pvwapi spaces list --help");
    expectRefused({"spaces", "list", "--columns", ""},
                  "--columns: '' is no column of 'spaces list'; see pvwapi spaces list --help");
    expectRefused({"spaces", "show", "W1", "--columns", "kind"},
                  "--columns: 'spaces show' shows no table; see pvwapi spaces show --help");
}

TEST_F(TableHostTest, JsonIsNeverChanged)
{
    environment["COLUMNS"] = "20";
    const std::string plain = listed({"Plan"}, {"--format", "json"});
    EXPECT_EQ(nlohmann::json::parse(plain).at(0).size(), 11U);
    EXPECT_EQ(nlohmann::json::parse(plain).at(0).at("role"), 0);
    EXPECT_EQ(listed({"Plan"}, {"--format", "json", "--columns", "role", "--no-header", "--color", "always"}), plain);
}

TEST_F(TableHostTest, HeaderIsBoldWhereThatIsAskedFor)
{
    EXPECT_THAT(listed({"Plan"}, {"--color", "always", "--columns", "userName"}), "\x1b[1muserName\x1b[0m\nanna\n");
    for (const char* const color : {"auto", "never"}) {
        EXPECT_THAT(listed({"Plan"}, {"--color", color}), Not(HasSubstr("\x1b")));
    }
}

TEST_F(TableHostTest, EveryListingHasTheColumnsThatItNames)
{
    // Were a name wrong, the command would end before it sent anything.
    const std::vector<Words> listings{
        {"tabs", "list", "W1", "--columns", "position,type"},
        {"members", "list", "W1", "--columns", "email,role"},
        {"members", "invite", "W1", "U1", "--columns", "user,inviteAs"},
        {"invitations", "list", "--columns", "inviteAsType,ownerID"},
        {"favourites", "list", "--list", "L", "--columns", "kind,members"},
        {"user", "profile", "U1", "--columns", "lastName,userID"},
        {"libraries", "list", "--columns", "templates,name"},
        {"libraries", "apps", "--columns", "apps,name"},
        {"roles", "W1", "--columns", "access,id"},
        {"notify", "W1", "--columns", "count"},
        {"activity", "W1", "--columns", "count,unreadMessageCount"},
    };
    for (const Words& words : listings) {
        succeed();
        const Ended ended = pvwapi(words);
        EXPECT_EQ(ended.status, 0) << words.front() << ended.err;
        EXPECT_THAT(ended.out, testing::StartsWith(words.back().substr(0, words.back().find(','))));
    }
}

}  // namespace
