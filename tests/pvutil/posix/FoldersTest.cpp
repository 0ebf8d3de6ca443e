// Where the user's folders are, as the environment has it.
#include "pvutil/Folders.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "tests/support/Text.h"

namespace kzn::test {
namespace {

namespace fs = std::filesystem;
using pvutil::applicationDataFolder;
using pvutil::temporaryFolder;

// A variable of the environment, as it was before when the test ends.
class Variable {
public:
    Variable(const char* name, const char* value) : name_(name)
    {
        if (const char* const before = std::getenv(name)) before_ = before;
        if (value == nullptr) unsetenv(name);
        else setenv(name, value, 1);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable()
    {
        if (before_) setenv(name_, before_->c_str(), 1);
        else unsetenv(name_);
    }

private:
    const char* name_;
    std::optional<std::string> before_;
};

class Folders : public testing::Test {
protected:
    Folders()
    {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        root = fs::temp_directory_path() / (std::string("pvwapi-folders-") + test->name());
        fs::remove_all(root);
        fs::create_directories(root);
    }
    ~Folders() override { fs::remove_all(root); }

    std::string at(const char* below) const { return (root / below).string(); }

    fs::path root;
};

TEST_F(Folders, DataFolderIsTheOneThatIsNamed)
{
    const Variable data("XDG_DATA_HOME", at("data").c_str());
    EXPECT_EQ(applicationDataFolder(), wide(at("data") + "/"));
    EXPECT_TRUE(fs::is_directory(root / "data"));
}

TEST_F(Folders, DataFolderHasOneSeparatorAtItsEnd)
{
    const Variable data("XDG_DATA_HOME", at("data/").c_str());
    EXPECT_EQ(applicationDataFolder(), wide(at("data") + "/"));
}

TEST_F(Folders, DataFolderIsInTheHomeWhereNoneIsNamed)
{
    const Variable home("HOME", at("home").c_str());
    for (const char* named : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
        const Variable data("XDG_DATA_HOME", named);
        EXPECT_EQ(applicationDataFolder(), wide(at("home") + "/.local/share/"));
        EXPECT_TRUE(fs::is_directory(root / "home/.local/share"));
        fs::remove_all(root / "home");
    }
    EXPECT_FALSE(fs::exists("relative"));
}

TEST_F(Folders, NoDataFolderWithoutAHome)
{
    const Variable data("XDG_DATA_HOME", nullptr);
    for (const char* named : {static_cast<const char*>(nullptr), "", "relative"}) {
        const Variable home("HOME", named);
        EXPECT_EQ(applicationDataFolder(), std::nullopt);
    }
}

TEST_F(Folders, NoDataFolderWhereItCannotBeMade)
{
    std::ofstream(root / "file") << "in the way";
    const Variable data("XDG_DATA_HOME", at("file/data").c_str());
    EXPECT_EQ(applicationDataFolder(), std::nullopt);
}

TEST_F(Folders, TemporaryFolder)
{
    {
        const Variable named("TMPDIR", "/var/tmp");
        EXPECT_EQ(temporaryFolder(), "/var/tmp/"_w);
    }
    for (const char* none : {static_cast<const char*>(nullptr), ""}) {
        const Variable named("TMPDIR", none);
        EXPECT_EQ(temporaryFolder(), "/tmp/"_w);
    }
}

TEST_F(Folders, FoldersAreMadeWithAllAboveThem)
{
    EXPECT_TRUE(pvutil::createFolders(wide(at("a/b//c/"))));
    EXPECT_TRUE(pvutil::createFolders(wide(at("a/b//c/"))));
    EXPECT_TRUE(pvutil::createFolders(wide(at("Größe/журнал"))));
    EXPECT_TRUE(fs::is_directory(root / "a/b/c"));
    EXPECT_TRUE(fs::is_directory(root / "Größe/журнал"));
    EXPECT_FALSE(pvutil::createFolders({}));
    std::ofstream(root / "file") << "in the way";
    EXPECT_FALSE(pvutil::createFolders(wide(at("file"))));
    EXPECT_FALSE(pvutil::createFolders(wide(at("file/below"))));
}

}  // namespace
}  // namespace kzn::test
