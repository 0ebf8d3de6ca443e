// The scripts for completion in their shells, and the man pages under their formatter.
#include <fstream>
#include <iterator>
#include <sstream>

#include "tests/host/HostFixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ShellTest : public HostTest {
protected:
    /// Runs a script of a shell's, for which the program's own script is the file $SCRIPT.
    std::string run(const std::string& shell, const std::string& script, const Words& options = {})
    {
        const std::string file = path("completion." + shell);
        writeFile(file, pvwapi({"completion", shell}).out, true);
        environment["SCRIPT"] = file;
        Words words{shell};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), {"-c", script});
        const Ended ended = runProgram("/usr/bin/env", words, environment);
        EXPECT_EQ(ended.status, 0) << ended.err;
        EXPECT_EQ(ended.err, "");
        return ended.out;
    }

    /// What bash offers for the last word.
    std::string bash(const std::string& words)
    {
        return run("bash", "source \"$SCRIPT\"; COMP_WORDS=(pvwapi " + words +
                               "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _pvwapi; echo \"${COMPREPLY[@]}\"");
    }

    /// What zsh describes for the last word. Only its own completion could call the function for real.
    std::string zsh(const std::string& words)
    {
        return run("zsh",
                   "compdef() { :; }; _describe() { print -l -- ${(P)2}; }; _files() { print FILES; }; "
                   "source $SCRIPT; words=(pvwapi " +
                       words + "); CURRENT=$#words; _pvwapi");
    }

    std::string fish(const std::string& line)
    {
        return run("fish", "source $SCRIPT; complete -C 'pvwapi " + line + "'", {"--no-config"});
    }
};

TEST_F(ShellTest, BashCompletesCommands)
{
    EXPECT_EQ(bash("sp"), "spaces\n");
    EXPECT_EQ(bash("spaces ''"), "list show create clone edit delete leave test\n");
    EXPECT_EQ(bash("--format json tabs d"), "delete\n");
    EXPECT_EQ(bash("session c"), "clone\n");
    EXPECT_EQ(bash("spaces create ''"), "\n");
}

TEST_F(ShellTest, BashCompletesOptionsAndTheirValues)
{
    EXPECT_EQ(bash("spaces create --f"), "--format --favourite\n");
    EXPECT_EQ(bash("spaces list --favo"), "\n");
    EXPECT_EQ(bash("--format ''"), "table json\n");
    EXPECT_EQ(bash("spaces list --format = j"), "json\n");
    EXPECT_EQ(bash("spaces list --format ="), "table json\n");
    EXPECT_EQ(bash("members invite W --role a"), "admin\n");
    EXPECT_EQ(bash("members role W U ''"), "member admin\n");
    EXPECT_EQ(bash("members role W ''"), "\n");
    EXPECT_EQ(bash("completion z"), "zsh\n");
}

TEST_F(ShellTest, BashCompletesFiles)
{
    writeFile(path("picture one.png"), "", true);
    EXPECT_EQ(bash("icon set W " + path("pict")).find(path("picture one.png")), 0U);
    EXPECT_EQ(bash("spaces list --credentials " + path("pict")).find(path("picture one.png")), 0U);
}

TEST_F(ShellTest, ZshDescribesTheSame)
{
    run("zsh", "exec zsh -n $SCRIPT");
    EXPECT_EQ(zsh("icon ''"),
              "set:Send a picture, and print the address that it is kept under\n"
              "get:Fetch a picture into the temporary folder, and print the file's name\n");
    EXPECT_THAT(zsh("spaces create -"),
                AllOf(HasSubstr("--favourite:Put it among"), HasSubstr("--format:How results")));
    EXPECT_EQ(zsh("members role W U ''"), "member\nadmin\n");
    EXPECT_EQ(zsh("--format ''"), "table\njson\n");
    EXPECT_EQ(zsh("icon set W ''"), "FILES\n");
}

TEST_F(ShellTest, FishCompletes)
{
    run("fish", "fish --no-execute $SCRIPT", {"--no-config"});
    EXPECT_EQ(fish("icon "),
              "get\tFetch a picture into the temporary folder, and print the file's name\n"
              "set\tSend a picture, and print the address that it is kept under\n");
    EXPECT_THAT(fish("spaces create --f"), AllOf(HasSubstr("--favourite\t"), HasSubstr("--format\t")));
    EXPECT_THAT(fish("spaces list --f"), AllOf(Not(HasSubstr("--favourite\t")), HasSubstr("--format\t")));
    EXPECT_THAT(fish("members role W U "), AllOf(HasSubstr("admin\t"), HasSubstr("member\t")));
    EXPECT_THAT(fish("--format json sp"), HasSubstr("spaces\t"));
    EXPECT_THAT(fish("members invite W --role "), HasSubstr("admin\t"));
}

TEST_F(ShellTest, PackageHasWhatTheProgramWrites)
{
    const auto packaged = [](const std::string& file) {
        std::ifstream stream(std::string(PVWAPI_HOST_SHARE) + "/" + file);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    EXPECT_EQ(packaged("bash-completion/completions/pvwapi"), pvwapi({"completion", "bash"}).out);
    EXPECT_EQ(packaged("zsh/site-functions/_pvwapi"), pvwapi({"completion", "zsh"}).out);
    EXPECT_EQ(packaged("fish/vendor_completions.d/pvwapi.fish"), pvwapi({"completion", "fish"}).out);
    EXPECT_EQ(packaged("man/man1/pvwapi.1"), pvwapi({"man"}).out);
    std::istringstream lines(pvwapi({"man", "--list"}).out);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(packaged("man/man1/pvwapi-" + line + ".1"), pvwapi({"man", line}).out) << line;
    }
}

TEST_F(ShellTest, ManPagesAreWellFormed)
{
    Words topics{""};
    std::istringstream lines(pvwapi({"man", "--list"}).out);
    for (std::string line; std::getline(lines, line);) topics.push_back(line);
    EXPECT_GT(topics.size(), 20U);
    for (const std::string& topic : topics) {
        const std::string file = path("page.1");
        writeFile(file, pvwapi(topic.empty() ? Words{"man"} : Words{"man", topic}).out, true);
        const Ended checked = runProgram("/usr/bin/env", {"groff", "-man", "-ww", "-z", "-Tutf8", file}, environment);
        EXPECT_EQ(checked.status, 0);
        EXPECT_EQ(checked.err, "") << topic;
        const Ended read = runProgram("/usr/bin/env", {"groff", "-man", "-Tascii", "-P-cbou", file}, environment);
        EXPECT_THAT(read.out, AllOf(HasSubstr("--credentials"), HasSubstr("SEE ALSO"))) << topic;
    }
}

}  // namespace
