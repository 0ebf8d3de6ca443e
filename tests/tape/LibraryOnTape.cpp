#include "tests/tape/LibraryOnTape.h"

#include <filesystem>

#include "client/WapiClient.h"
#include "tests/support/FileBytes.h"
#include "tests/support/Text.h"
#include "tests/tape/Address.h"

namespace service::test {

namespace {

using testing::HasSubstr;
using testing::Not;

std::vector<std::string> with(std::vector<std::string> words, const std::vector<std::string>& more)
{
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

void tellSpaces(CWapiClient& client, std::vector<std::string>& seen)
{
    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
    EXPECT_EQ(client.GetWkspList(client.getRootCred(), {}, {}, spaces, invitations), 1);
    for (const SpaceForList& space : spaces) {
        seen.push_back(narrow(space.workspaceID) + " " + narrow(space.workspaceName) + " " + narrow(space.description) +
                       " " + narrow(space.userName) + " " + narrow(space.spaceIconURL));
    }
}

// Gives the workspace a picture, and has it back.
void tellPicture(CWapiClient& client, const CStringT& spaceID, const std::string& file, std::vector<std::string>& seen)
{
    CStringT url;
    EXPECT_EQ(client.SetSpaceIcon(client.getRootCred(), spaceID, wide(file), url), 1);
    CStringT copy;
    EXPECT_EQ(client.GetSpaceIcon(client.getRootCred(), url, copy), 1) << narrow(url);
    const std::filesystem::path path = std::filesystem::u8path(narrow(copy));
    EXPECT_EQ(bytesOf(path), bytesOf(std::filesystem::u8path(file)));
    std::filesystem::remove(path);
    seen.push_back(narrow(url));
}

}  // namespace

LibraryOnTape::LibraryOnTape()
    : first_(std::in_place, ServiceProcess::on(folder_.file("first"), {"--seed", "demo"})),
      other_(ServiceProcess::on(folder_.file("other"), {"--seed", "demo"}))
{
    std::string picture("\x89PNG\r\n\x1A\n\0{cred 1}\\", 18);
    for (int value = 0; value < 256; ++value) picture += static_cast<char>(value);
    std::ofstream(std::filesystem::u8path(icon()), std::ios::binary) << picture;
    std::ofstream(std::filesystem::u8path(secrets())) << "not hers\nanna-demo-1\n";
}

std::vector<std::string> LibraryOnTape::day(unsigned short port) const
{
    CWapiClient client(wide(urlOf(port) + "/kznconnect/op.do"));
    std::vector<std::string> seen;
    EXPECT_EQ(client.login("anna"_w, {}, {}, "not hers"_w, 0, 1), 0);
    seen.push_back(narrow(client.GetLstMsg().exceptionID) + ": " + narrow(client.GetLstMsg().reason));
    EXPECT_EQ(client.login("anna"_w, {}, {}, "anna-demo-1"_w, 0, 1), 1) << narrow(client.GetLstMsg().reason);
    std::vector<CWapiClient::WKSP_Field_Value> fields = {{0, "Pläne & <Listen>"_w}};
    CStringT spaceID;
    EXPECT_EQ(client.createSpace(client.getRootCred(), "Umbau 𝄞"_w, fields, spaceID, 0, 0), 1);
    tellPicture(client, spaceID, icon(), seen);
    tellSpaces(client, seen);
    EXPECT_THAT(seen, testing::Contains(narrow(spaceID) + " Umbau 𝄞 Pläne & <Listen> anna " + seen.at(1)));
    EXPECT_THAT(seen.at(1), testing::StartsWith(urlOf(port) + "/"));
    EXPECT_EQ(client.logout(client.getRootCred()), 1);
    for (std::string& text : seen) text = withoutPort(text, port);
    return seen;
}

std::vector<std::string> LibraryOnTape::record(const Upstream& service) const
{
    ServiceProcess recorder(
        with({"record", "--to", tape(), "--upstream", service.url, "--listen", "127.0.0.1:0"}, service.more));
    std::vector<std::string> seen = day(recorder.port());
    recorder.signal(SIGTERM);
    EXPECT_THAT(recorder.errors(), IsLike("[1-9][0-9]* exchanges are on the tape\n"));
    EXPECT_EQ(recorder.wait(), 0);
    return seen;
}

std::vector<std::string> LibraryOnTape::replay() const
{
    ServiceProcess player({"replay", tape(), "--listen", "127.0.0.1:0"});
    std::vector<std::string> seen = day(player.port());
    player.signal(SIGTERM);
    EXPECT_THAT(player.errors(), IsLike("([0-9]+) of \\1 exchanges were played; 0 requests fitted none\n"));
    EXPECT_EQ(player.wait(), 0);
    return seen;
}

std::string LibraryOnTape::verify(const Upstream& service, int& status) const
{
    ServiceProcess verifier(with({"verify", tape(), "--upstream", service.url, "--secrets", secrets()}, service.more));
    std::string said = verifier.output() + verifier.errors();
    status = verifier.wait();
    return said;
}

void LibraryOnTape::expectHolds(const Upstream& service) const
{
    int status = -1;
    EXPECT_THAT(verify(service, status), IsLike("[1-9][0-9]* exchanges, 0 different\n"));
    EXPECT_EQ(status, 0);
    EXPECT_THAT(verify(service, status), IsLike("(exchange [0-9]+ [^\n]*\n)+[1-9][0-9]* exchanges, 1 different\n"));
    EXPECT_EQ(status, 1);
}

void LibraryOnTape::expectTapeTellsNobody() const
{
    const std::string text = bytesOf(std::filesystem::u8path(tape()));
    EXPECT_THAT(text, HasSubstr("{server}/kzndms/icon/"));
    for (const char* const telling : {"anna-demo-1", "not hers", "not+hers", "not%20hers", "127.0.0.1"}) {
        EXPECT_THAT(text, Not(HasSubstr(telling)));
    }
}

}  // namespace service::test
