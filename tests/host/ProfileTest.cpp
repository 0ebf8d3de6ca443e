// Settings from the configuration file, and what wins over them.
#include "tests/host/HostFixture.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ProfileTest : public SessionHostTest {
protected:
    ProfileTest()
    {
        std::filesystem::create_directories(path("config/pvwapi"));
        environment.erase("PVWAPI_BASE_URL");
    }

    void configure(const std::string& text) { writeFile(file(), text, false); }
    std::string file() const { return path("config") + "/pvwapi/config"; }

    /// Tells where the request goes and how the answer is shown.
    std::string shown(const Words& options)
    {
        Words words{"notify", "W1"};
        words.insert(words.end(), options.begin(), options.end());
        succeed();
        const Ended ended = pvwapi(words);
        return ended.status == 0 ? ended.out : ended.err;
    }

    void expectRefused(const std::string& text, const std::string& problem)
    {
        configure(text);
        const Ended ended = pvwapi({"notify", "W1"});
        EXPECT_EQ(ended.status, 2);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "pvwapi: " + file() + ": " + problem + "\n");
        EXPECT_TRUE(bodies().empty());
    }

    const std::string url = server.address("/kznconnect/op.do");
    const std::string json = "[]\n";
    const std::string table = "workspaceID  count\n";
};

TEST_F(ProfileTest, LinesBeforeTheFirstSectionHoldWithoutAProfile)
{
    configure("# mine\nbase-url = \"" + url + "\"\nformat = json\n");
    EXPECT_THAT(shown({}), StartsWith(json));
    EXPECT_THAT(shown({"--format", "table"}), StartsWith(table));
}

TEST_F(ProfileTest, ProfileWinsOverThem)
{
    configure("base-url = \"http://127.0.0.1:9/\"\nformat = json\n[work]\nbase-url = \"" + url +
              "\"\nformat = \"table\"\n[other]\nbase-url = \"" + url + "\"\n");
    EXPECT_THAT(shown({"--profile", "work"}), StartsWith(table));
    EXPECT_THAT(shown({"--profile", "other"}), StartsWith(json));
    environment["PVWAPI_PROFILE"] = "other";
    EXPECT_THAT(shown({}), StartsWith(json));
    EXPECT_THAT(shown({"--profile", "work"}), StartsWith(table));
}

TEST_F(ProfileTest, EnvironmentAndCommandLineWinOverTheProfile)
{
    configure("[work]\nbase-url = \"http://127.0.0.1:9/\"\ncredentials = \"absent\"\nformat = json\n");
    environment["PVWAPI_BASE_URL"] = url;
    EXPECT_THAT(shown({"--profile", "work"}), StartsWith(json));
    environment.erase("PVWAPI_BASE_URL");
    EXPECT_THAT(shown({"--profile", "work", "--base-url", url}), StartsWith(json));
    environment.erase("PVWAPI_CRED");
    environment.erase("PVWAPI_USER");
    EXPECT_THAT(shown({"--profile", "work", "--base-url", url}), HasSubstr("absent: "));
}

TEST_F(ProfileTest, FileOfCredentialsIsBesideIt)
{
    environment.erase("PVWAPI_CRED");
    environment.erase("PVWAPI_USER");
    writeFile(path("mine"), "[work]\ncredentials = \"my, cred\"\nbase-url = \"" + url + "\"\n", false);
    writeFile(path("my, cred"), "cred=C7\n", true);
    EXPECT_THAT(shown({"--config", path("mine"), "--profile", "work"}), StartsWith(table));
    EXPECT_THAT(bodies().back(), HasSubstr("cred=C7"));
}

TEST_F(ProfileTest, WhatDoesNotBelongThereIsRefused)
{
    expectRefused("[work]\npasswort = secret\n",
                  "'passwort' is no key of a profile, in [work]; see pvwapi help profiles");
    expectRefused("[work]\npassword = secret\n",
                  "'password' is no key of a profile, in [work]; see pvwapi help profiles");
    expectRefused("yes = true\n", "'yes' is no key of a profile; see pvwapi help profiles");
    expectRefused("base-ulr = x\n",
                  "'base-ulr' is no key of a profile; did you mean 'base-url'? See pvwapi help profiles");
    expectRefused("format = xml\n", "format: 'xml' is none of table, json");
    expectRefused("credentials = a b\n", "credentials takes one value; one with blanks or commas stands in quotes");
    expectRefused("[[[\n]]]]\n", "'[[[' is no key of a profile; see pvwapi help profiles");
    expectRefused(std::string(70'000, '#'), "too large for a configuration file");
}

TEST_F(ProfileTest, ProfileOrFileThatIsNotThereIsNamed)
{
    configure("[work]\nformat = json\n[home]\nformat = table\n");
    EXPECT_EQ(shown({"--profile", "wrok"}),
              "pvwapi: " + file() + ": there is no profile 'wrok'; did you mean 'work'?\n");
    EXPECT_EQ(shown({"--config", path("absent")}),
              "pvwapi: " + path("absent") + ": cannot be read: No such file or directory\n");
    std::filesystem::remove(file());
    EXPECT_EQ(shown({"--profile", "work"}), "pvwapi: " + file() + ": cannot be read: No such file or directory\n");
    EXPECT_THAT(shown({"--base-url", url}), StartsWith(table));
}

TEST_F(ProfileTest, HelpNeedsNoFile)
{
    configure("nonsense = 1\n");
    for (const Words& words : {Words{"help"}, Words{"spaces", "--help"}, Words{"completion", "bash"}, Words{"man"}}) {
        EXPECT_EQ(pvwapi(words).status, 0) << words.front();
    }
}

TEST_F(ProfileTest, FileIsUtf8WithOrWithoutAByteOrderMark)
{
    expectRefused("format = json # \xFF\n", "not UTF-8");
    configure(
        "\xEF\xBB\xBF"
        "format = json\nbase-url = \"" +
        url + "\"\n");
    EXPECT_THAT(shown({}), StartsWith(json));
}

TEST_F(ProfileTest, SectionWithoutLinesIsAProfile)
{
    configure("base-url = \"" + url + "\"\n[empty]\n[work]\nformat = json\n");
    EXPECT_THAT(shown({"--profile", "empty"}), StartsWith(table));
}

}  // namespace
