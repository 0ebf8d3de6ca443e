// Where the user's folders are, as the shell has it.
#include "pvutil/Folders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/Text.h"

namespace kzn::test {
namespace {

namespace fs = std::filesystem;

TEST(Folders, DataFolderIsTheShells)
{
    const auto folder = pvutil::applicationDataFolder();
    ASSERT_TRUE(folder);
    EXPECT_EQ(*folder, std::wstring(_wgetenv(L"APPDATA")) + L"\\");
    EXPECT_TRUE(fs::is_directory(*folder));
}

TEST(Folders, TemporaryFolderHasOneSeparatorAtItsEnd)
{
    const auto folder = pvutil::temporaryFolder();
    ASSERT_TRUE(folder);
    ASSERT_GE(folder->size(), 4U);
    EXPECT_EQ(folder->back(), L'\\');
    EXPECT_NE((*folder)[folder->size() - 2], L'\\');
    EXPECT_TRUE(fs::is_directory(*folder));
}

TEST(Folders, FoldersAreMadeWithAllAboveThem)
{
    const CStringT root = *pvutil::temporaryFolder() + L"pvwapi-folders-test";
    fs::remove_all(root);
    EXPECT_TRUE(pvutil::createFolders(root + L"\\a\\b\\c\\"));
    EXPECT_TRUE(pvutil::createFolders(root + L"\\a\\b\\c\\"));
    EXPECT_TRUE(pvutil::createFolders(root + L"\\Gr\u00F6\u00DFe\\\u0436\u0443\u0440\u043D\u0430\u043B"));
    EXPECT_TRUE(fs::is_directory(root + L"\\a\\b\\c"));
    EXPECT_TRUE(fs::is_directory(root + L"\\Gr\u00F6\u00DFe\\\u0436\u0443\u0440\u043D\u0430\u043B"));
    EXPECT_FALSE(pvutil::createFolders({}));
    std::ofstream(fs::path(root + L"\\file")) << "in the way";
    EXPECT_FALSE(pvutil::createFolders(root + L"\\file"));
    EXPECT_FALSE(pvutil::createFolders(root + L"\\file\\below"));
    fs::remove_all(root);
}

}  // namespace
}  // namespace kzn::test
