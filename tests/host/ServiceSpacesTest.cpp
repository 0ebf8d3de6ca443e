// Workspaces with their tabs, pictures and applications, from the first to the last day.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "tests/host/ServiceFixture.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class ServiceSpacesTest : public ServiceHostTest {
protected:
    ServiceSpacesTest()
    {
        workspace = shown({"spaces", "create", "Büro", "--description", "Planung"}).at("workspaceID");
    }
    ~ServiceSpacesTest() override
    {
        actAs("anna");
        done({"spaces", "delete", workspace});
    }

    std::vector<std::string> tabNames(const std::string& of) { return valuesOf(shown({"tabs", "list", of}), "name"); }

    std::string workspace;
};

TEST_F(ServiceSpacesTest, EditedAndCloned)
{
    done({"spaces", "edit", workspace, "--name", "Büro und Lager", "--description", "<Regale> & Kisten"});
    const json space = shown({"spaces", "show", workspace}).at("space");
    EXPECT_EQ(space.at("workspaceName"), "Büro und Lager");
    EXPECT_EQ(space.at("descriptionText"), "<Regale> & Kisten");
    EXPECT_EQ(valuesOf(space.at("members"), "userID"), std::vector<std::string>{"user-anna"});

    const std::string copy =
        shown({"spaces", "clone", "Vorlage", workspace, "--type", "3", "--template"}).at("workspaceID");
    const json cloned = shown({"spaces", "show", copy}).at("space");
    EXPECT_EQ(cloned.at("isTemplate"), "true");
    EXPECT_EQ(cloned.at("descriptionText"), "<Regale> & Kisten");
    EXPECT_EQ(cloned.at("kind"), 3 | 16);
    EXPECT_EQ(tabNames(copy), tabNames(workspace));
    done({"spaces", "delete", copy});
    refused({"spaces", "delete", copy}, "NoSuchObject");
}

TEST_F(ServiceSpacesTest, LastAdministratorStays)
{
    refused({"spaces", "leave", workspace}, "Conflict");
    actAs("ben");
    refused({"spaces", "delete", workspace}, "NoSuchObject");
}

TEST_F(ServiceSpacesTest, TabsAreAddedNamedOrderedAndDeleted)
{
    EXPECT_THAT(tabNames(workspace), ElementsAre("Discussions", "Files"));
    const std::string tab = shown({"tabs", "create", workspace, "Ideen", "--position", "3"}).at("tabID");
    done({"tabs", "rename", workspace, tab, "Überblick 東京"});
    done({"tabs", "order", workspace, tab, "docTab", "commTab"});
    EXPECT_THAT(tabNames(workspace), ElementsAre("Überblick 東京", "Files", "Discussions"));
    done({"tabs", "rename", workspace, "docTab", "Dateien"});
    EXPECT_THAT(tabNames(workspace), ElementsAre("Überblick 東京", "Dateien", "Discussions"));
    const Ended fixed = run({"tabs", "delete", workspace, "docTab"});
    EXPECT_EQ(fixed.status, 1);
    EXPECT_THAT(fixed.err, HasSubstr("the files tab stay"));
    done({"tabs", "delete", workspace, tab});
    EXPECT_THAT(tabNames(workspace), ElementsAre("Dateien", "Discussions"));
}

TEST_F(ServiceSpacesTest, PictureComesBackAsItWasSent)
{
    const auto file =
        std::filesystem::temp_directory_path() / ("pvwapi-picture-" + std::to_string(std::random_device()()) + ".png");
    std::string picture("\x89PNG\r\n\x1A\n\0", 9);
    for (int value = 0; value < 200'000; ++value) picture.push_back(static_cast<char>(value % 256));
    writeFile(file.string(), picture, true);

    const std::string url = shown({"icon", "set", workspace, file.string()}).at("url");
    std::filesystem::remove(file);
    EXPECT_EQ(recordWith(shown({"spaces", "list"}), "workspaceID", workspace).at("spaceIconURL"), url);

    const std::string local = shown({"icon", "get", url}).at("localPath");
    std::ifstream stream(local, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), picture);
    stream.close();
    std::filesystem::remove(local);

    actAs("ben");
    EXPECT_EQ(run({"icon", "get", url}).status, 1);
}

TEST_F(ServiceSpacesTest, SavedAsAnApplicationAndMadeAgain)
{
    shown({"tabs", "create", workspace, "Ideen", "--position", "3"});
    EXPECT_NE(shown({"apps", "save", workspace, "Bürobetrieb", "lib-anna", "--description", "D"}).at("widgetID"), "");
    refused({"apps", "save", workspace, "Bürobetrieb", "lib-anna"}, "Conflict");

    const std::string made = shown({"apps", "instantiate", "Zweigstelle", "Bürobetrieb"}).at("workspaceID");
    EXPECT_EQ(tabNames(made), tabNames(workspace));
    done({"spaces", "delete", made});
    refused({"apps", "instantiate", "Nichts", "no such application"}, "NoSuchObject");
    const std::string blank = shown({"apps", "instantiate", "Leer", "Blank", "--type", "2"}).at("workspaceID");
    EXPECT_THAT(tabNames(blank), ElementsAre("default"));
    done({"spaces", "delete", blank});
}

}  // namespace
