// Pictures on the command line.
#include <fstream>
#include <iterator>

#include "tests/host/HostFixture.h"

namespace {

using namespace std::string_literals;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kPicture = "\x89PNG\r\n\x1A\n\0-----------------------------7d73d42312zelkor\xFF"s;

TEST_F(SessionHostTest, PictureGoesUpByteForByteAndTheAddressIsShown)
{
    writeFile(path("ein Bild.png"), kPicture, true);
    succeed("<return><url>http://x/icon/1.png</url></return>");
    const Ended ended = pvwapi({"icon", "set", "W1", path("ein Bild.png")});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "url  http://x/icon/1.png\n");
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(server.requests().back().target, "/kznconnect/upload.do?");
    EXPECT_THAT(bodies().back(), testing::AllOf(HasSubstr("\r\n\r\n" + kPicture + "\r\n"), HasSubstr("ein Bild.png")));
}

TEST_F(SessionHostTest, PictureThatCannotBeReadIsNamed)
{
    std::filesystem::create_directory(path("folder"));
    for (const char* const name : {"absent.png", "folder"}) {
        const Ended ended = pvwapi({"icon", "set", "W1", path(name)});
        EXPECT_EQ(ended.status, 2) << name;
        EXPECT_EQ(ended.err, "pvwapi: icon set: Unable to read the picture: " + path(name) + "\n");
    }
    EXPECT_TRUE(bodies().empty());
}

TEST_F(SessionHostTest, PictureComesDownIntoAFile)
{
    server.reply(200, "image/png", kPicture);
    const Ended ended = pvwapi({"icon", "get", server.address("/icons/pvwapi-host-test.png"), "--format", "json"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    const std::string local = (std::filesystem::temp_directory_path() / "pvwapi-host-test.png").string();
    std::ifstream stream(local, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), kPicture);
    stream.close();
    std::filesystem::remove(local);
}

TEST_F(SessionHostTest, PictureThatIsNotThereIsAFailure)
{
    server.reply(404, "text/plain", "no");
    const Ended ended = pvwapi({"icon", "get", server.address("/icons/none.png")});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, StartsWith("pvwapi: icon get: Network error."));
}

}  // namespace
