// The scripts for completion hold every command, whatever the shell.
#include <sstream>

#include "tests/host/HostFixture.h"

namespace {

using testing::HasSubstr;

std::size_t countOf(const std::string& text, char letter)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), letter));
}

TEST_F(HostTest, EveryShellKnowsEveryCommand)
{
    std::istringstream lines(pvwapi({"--operations"}).out);
    std::vector<std::string> paths;
    for (std::string line; std::getline(lines, line);) paths.push_back(line.substr(0, line.find('\t')));
    EXPECT_GT(paths.size(), 50U);
    for (const char* const shell : {"bash", "zsh", "fish", "powershell"}) {
        const Ended ended = pvwapi({"completion", shell});
        EXPECT_EQ(ended.status, 0) << ended.err;
        for (const std::string& path : paths) EXPECT_THAT(ended.out, HasSubstr("'" + path + "'")) << shell;
    }
}

TEST_F(HostTest, ShellThatIsNotKnownIsRefused)
{
    const Ended ended = pvwapi({"completion", "bsh"});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err,
              "pvwapi: shell: 'bsh' is none of bash, zsh, fish, powershell; did you mean 'bash'? See pvwapi completion "
              "--help\n");
}

TEST_F(HostTest, PowerShellScriptIsWhole)
{
    const std::string script = pvwapi({"completion", "powershell"}).out;
    EXPECT_THAT(script,
                HasSubstr("Register-ArgumentCompleter -Native -CommandName pvwapi, pvwapi.exe -ScriptBlock {\n"));
    EXPECT_THAT(script, HasSubstr("        'icon' = @('set', 'get')\n"));
    EXPECT_THAT(script, HasSubstr("        ':--format' = @('table', 'json')\n"));
    EXPECT_THAT(script, HasSubstr("        'members role:2' = @('member', 'admin')\n"));
    EXPECT_THAT(script, HasSubstr("        'spaces create' = @('--type', '--description', '--favourite')\n"));
    EXPECT_EQ(countOf(script, '{'), countOf(script, '}'));
    EXPECT_EQ(countOf(script, '('), countOf(script, ')'));
    EXPECT_EQ(countOf(script, '\'') % 2, 0U);
    // A key that stood twice in one table would keep PowerShell from reading the script.
    for (std::size_t from = script.find("= @{\n"); from != std::string::npos; from = script.find("= @{\n", from + 1)) {
        std::istringstream table(script.substr(from + 5, script.find("    }\n", from) - from - 5));
        std::vector<std::string> keys;
        for (std::string line; std::getline(table, line);) keys.push_back(line.substr(0, line.find(" = ")));
        std::ranges::sort(keys);
        EXPECT_EQ(std::ranges::adjacent_find(keys), keys.end());
        EXPECT_FALSE(keys.empty());
    }
}

}  // namespace
