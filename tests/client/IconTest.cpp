// The picture of a workspace on its way up, as a multipart form, and down, into a file.
#include <utility>

#include "pvutil/HttpClient.h"
#include "tests/client/IconFixture.h"
#include "tests/support/LogLines.h"
#include "tests/support/TestSystem.h"
#include "tests/support/TraceLines.h"

namespace {

namespace fs = std::filesystem;
using IconTest = IconFixture;

const std::string kBoundary = "---------------------------7d73d42312zelkor";
const std::string kPicture = std::string("\x89PNG\r\n\0\x1a", 8) + "\r\n--" + kBoundary + "--\xff";

std::string field(const std::string& name, const std::string& value)
{
    return "--" + kBoundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
}

std::vector<std::string> enterAndLeave(const std::string& operation)
{
    return {"9 Debug: ---->>>> Enter CWapiClient::" + operation, "9 Debug: <<<<---- Leave CWapiClient::" + operation};
}

}  // namespace

TEST_F(IconTest, GoesUpByteForByte)
{
    reply(resultReply("SUCCESS",
                      "<return><url>http://h/i?a=1&amp;b=2</url></return>"
                      "<securityContext><cred>other</cred></securityContext>"));
    client.setRootCred("own"_w);
    const fs::path picture = write("bild é𝄞.png", kPicture);
    ASSERT_EQ(upload(picture), 1);
    EXPECT_EQ(narrow(url), "http://h/i?a=1&b=2");
    EXPECT_EQ(narrow(client.getRootCred()), "own");

    const auto request = server.requests().back();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/kznconnect/upload.do?");
    EXPECT_EQ(request.header("Content-Type"), "multipart/form-data; boundary=" + kBoundary);
    const std::string xml =
        "<code><workspaceID>w&<é</workspaceID><dmsURL>" + server.address("/kzndms") + "</dmsURL></code>";
    EXPECT_EQ(request.body, field("cred", "c&1") + field("name", "bild é𝄞.png") + field("cmd", "execute") +
                                field("task", "ManageSpaceIcon") + field("xml", xml) + field("fileFields", "theFile") +
                                "--" + kBoundary + "\r\nContent-Disposition: form-data; name=\"theFile\"; filename=\"" +
                                utf8(picture) + "\"\r\nContent-Type: image/jpeg\r\n\r\n" + kPicture + "\r\n--" +
                                kBoundary + "--");
}

TEST_F(IconTest, TracesTheReplyAndNotTheBody)
{
    const std::string answer = resultReply("success", "<return><url>u</url></return>");
    reply(answer);
    const fs::path file = write("a.png", kPicture);
    TraceLines lines;
    ASSERT_EQ(upload(file), 1);
    EXPECT_EQ(lines.all(),
              (std::vector<std::string>{"9 Debug: ---->>>> Enter CWapiClient::SetSpaceIcon", "9 Debug: " + answer,
                                        "9 Debug: <<<<---- Leave CWapiClient::SetSpaceIcon"}));
}

TEST_F(IconTest, IsToldByTheReplyWhateverItsStatus)
{
    for (const int status : {500, 404, 202}) {
        server.reply(status, "text/xml", resultReply("SUCCESS", "<return><url>kept</url></return>"));
        EXPECT_EQ(upload(write("a.png", kPicture)), 1) << status;
        EXPECT_EQ(narrow(std::exchange(url, {})), "kept");
        EXPECT_EQ(client.getNetworkError(), 0);
    }
}

TEST_F(IconTest, IsNotLogged)
{
    const LogLines log(logFile());
    reply(resultReply("SUCCESS"));
    ASSERT_EQ(upload(write("a.png", kPicture)), 1);
    ASSERT_EQ(download("logged-" + std::to_string(server.port())), 1);
    fs::remove(narrow(path));
    EXPECT_TRUE(log.sinceMade().empty());
    EXPECT_EQ(client.callWapi({}, {}), 0);
    EXPECT_FALSE(log.sinceMade().empty()) << "the log stands elsewhere";
}

TEST_F(IconTest, TracesNothingOfItsOwnOnItsWayDown)
{
    const std::string name = "traced-" + std::to_string(server.port());
    const TraceLines lines;
    ASSERT_EQ(download(name), 1);
    EXPECT_EQ(TraceLines::all(), enterAndLeave("GetSpaceIcon"));
    fs::remove(narrow(path));
}

TEST_F(IconTest, ClearsTheLastMessageWhenItGoesWell)
{
    const fs::path file = write("a.png", kPicture);
    const std::string refusal =
        "<kznapi><response><result>FAILURE</result><reason>no</reason><exceptionID>E1</exceptionID></response>"
        "</kznapi>";
    const auto fail = [&] {
        reply(refusal);
        EXPECT_EQ(upload(file), 0);
        EXPECT_EQ(reason(), "no");
    };
    const auto expectCleared = [&] {
        EXPECT_EQ(reason(), "");
        EXPECT_EQ(narrow(client.GetLstMsg().exceptionID), "");
        EXPECT_EQ(narrow(client.GetLstMsg().response), "");
        EXPECT_EQ(client.getNetworkError(), 0);
    };
    fail();
    reply(resultReply("SUCCESS"));
    ASSERT_EQ(upload(file), 1);
    expectCleared();

    fail();
    ASSERT_EQ(download("cleared-" + std::to_string(server.port())), 1);
    expectCleared();
    fs::remove(narrow(path));
}

TEST_F(IconTest, FindsTheNetworkAgain)
{
    const fs::path file = write("a.png", kPicture);
    const auto loseIt = [&] {
        server.script(kzn::test::Script().send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf").close());
        EXPECT_EQ(upload(file), 0);
        EXPECT_EQ(client.getNetworkError(), 1);
    };
    loseIt();
    reply(resultReply("SUCCESS"));
    EXPECT_EQ(upload(file), 1);
    EXPECT_EQ(client.getNetworkError(), 0);

    loseIt();
    EXPECT_EQ(download("again-" + std::to_string(server.port())), 1);
    EXPECT_EQ(client.getNetworkError(), 0);
    fs::remove(narrow(path));
}

TEST_F(IconTest, KeepsTheRefusalOfTheService)
{
    const std::string answer =
        "<kznapi><response><result>FAILURE</result><reason>too large</reason>"
        "<exceptionID>E1</exceptionID></response></kznapi>";
    reply(answer);
    EXPECT_EQ(upload(write("a.png", kPicture)), 0);
    EXPECT_EQ(narrow(url), "before");
    const WAPIMESSAGE message = client.GetLstMsg();
    EXPECT_EQ(narrow(message.reason), "too large");
    EXPECT_EQ(narrow(message.exceptionID), "E1");
    EXPECT_EQ(narrow(message.response), answer);
    EXPECT_EQ(client.getNetworkError(), 0);
}

TEST_F(IconTest, SaysWhereItCouldNotGo)
{
    const std::string base = "http://127.0.0.1:" + std::to_string(kzn::test::CaptureServer::closedPort());
    CWapiClient away(wide(base + "/kznconnect/op.do"));
    const TraceLines lines;
    EXPECT_EQ(away.SetSpaceIcon("c"_w, "w"_w, wide(utf8(write("a.png", kPicture))), url), 0);
    EXPECT_EQ(narrow(away.GetLstMsg().reason),
              "Network error. Unable to connect to " + base + "/kznconnect/upload.do?");
    EXPECT_EQ(away.getNetworkError(), 1);
    EXPECT_EQ(TraceLines::all(), enterAndLeave("SetSpaceIcon"));
}

TEST_F(IconTest, IsNotSentWhenItCannotBeRead)
{
    for (const fs::path& file : {folder / "missing.png", folder}) {
        const TraceLines lines;
        EXPECT_EQ(upload(file), 0) << file;
        EXPECT_NE(reason().find(utf8(file)), std::string::npos) << file;
        EXPECT_EQ(TraceLines::all(), enterAndLeave("SetSpaceIcon"));
    }
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(IconTest, SaysNothingOfTheNetworkWhenItCannotBeRead)
{
    server.script(kzn::test::Script().send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf").close());
    EXPECT_EQ(upload(write("a.png", kPicture)), 0);
    EXPECT_EQ(upload(folder / "missing.png"), 0);
    EXPECT_EQ(client.getNetworkError(), 1) << "nothing was sent that could have found it";
}

TEST_F(IconTest, IsRefusedByAServiceThatTakesNoneSoLarge)
{
    server.reply(413, "text/xml",
                 "<kznapi><response><result>FAILURE</result><reason>too large</reason></response></kznapi>");
    EXPECT_EQ(upload(write("a.png", std::string(1 << 20, 'x'))), 0);
    EXPECT_EQ(reason(), "too large");
    EXPECT_EQ(client.getNetworkError(), 0);
}

TEST_F(IconTest, OfABareNameIsNamedByIt)
{
    write("bare.png", kPicture);
    const fs::path before = fs::current_path();
    fs::current_path(folder);
    reply(resultReply("SUCCESS"));
    EXPECT_EQ(upload("bare.png"), 1);
    fs::current_path(before);
    const std::string body = server.requests().back().body;
    EXPECT_NE(body.find(field("name", "bare.png")), std::string::npos);
    EXPECT_NE(body.find("filename=\"bare.png\""), std::string::npos);
}

TEST_F(IconTest, OfANameWithAZeroIsNotRead)
{
    write("a.png", kPicture);
    const CStringT file = wide(utf8(folder / "a.png")) + CStringT(1, 0) + "x"_w;
    EXPECT_EQ(client.SetSpaceIcon("c"_w, "w"_w, file, url), 0);
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(IconTest, GoesUpEmptyAndTheServiceDecides)
{
    reply(resultReply("FAILURE"));
    EXPECT_EQ(upload(write("empty.png", "")), 0);
    EXPECT_EQ(requestCount(), 1U);
}

TEST_F(IconTest, MayBeStoppedOnItsWayUp)
{
    otherwise(resultReply("SUCCESS"));
    std::size_t whole = 0;
    client.onTransferProgress([&](std::size_t, std::size_t all) {
        whole = all;
        return false;
    });
    EXPECT_EQ(upload(write("a.png", std::string(1 << 20, 'x'))), 0);
    EXPECT_GT(whole, std::size_t{1} << 20);
    EXPECT_EQ(client.getNetworkError(), 1);
}

TEST_F(IconTest, IsWatchedByACopyToo)
{
    reply(resultReply("SUCCESS"));
    std::size_t last = 0;
    client.onTransferProgress([&](std::size_t done, std::size_t) { return (last = done) != 0; });
    CWapiClient copy(client);
    EXPECT_EQ(copy.SetSpaceIcon("c"_w, "w"_w, wide(utf8(write("a.png", kPicture))), url), 1);
    EXPECT_EQ(last, lastBody().size());
}

TEST_F(IconTest, SaysThatTheConnectionBrokeOnItsWayUp)
{
    otherwise(resultReply("SUCCESS"));
    client.onTransferProgress([&](std::size_t, std::size_t) {
        server.closeConnections();
        return true;
    });
    EXPECT_EQ(upload(write("a.png", std::string(16 << 20, 'x'))), 0);
    EXPECT_EQ(narrow(url), "before");
    EXPECT_EQ(reason(), "Network error. Unable to connect to " + server.address("/kznconnect/upload.do?"));
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(IconTest, OfSixtyFourMebibytesIsSent)
{
    const fs::path file = write("largest.png", "");
    fs::resize_file(file, std::uintmax_t{64} << 20);
    reply(resultReply("SUCCESS"));
    EXPECT_EQ(upload(file), 1);
    ASSERT_EQ(requestCount(), 1U);
    EXPECT_GT(lastBody().size(), std::size_t{64} << 20);
}

TEST_F(IconTest, LargerThanSixtyFourMebibytesIsNotSent)
{
    const fs::path file = write("large.png", "");
    fs::resize_file(file, (std::uintmax_t{64} << 20) + 1);
    EXPECT_EQ(upload(file), 0);
    EXPECT_EQ(reason(), "Picture too large: " + utf8(file));
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(IconTest, ComesDownIntoTheTemporaryFolder)
{
    server.reply(200, "image/png", kPicture);
    const std::string name = "icon " + std::to_string(server.port()) + ".png";
    ASSERT_EQ(client.GetSpaceIcon("c&1"_w, server.url("/icons/" + name), path), 1);
    EXPECT_EQ(server.requests().back().method, "GET");
    EXPECT_EQ(server.requests().back().target, "/icons/icon%20" + std::to_string(server.port()) + ".png?cred=c&1");
    const fs::path file(std::u8string(reinterpret_cast<const char8_t*>(narrow(path).c_str())));
    EXPECT_EQ(utf8(file.filename()), name);
    EXPECT_EQ(bytesOf(file), kPicture);
    fs::remove(file);
}

TEST_F(IconTest, IsAskedForBehindWhateverItsAddressHolds)
{
    const std::string name = "asked-" + std::to_string(server.port());
    server.reply(200, "image/png", kPicture);
    ASSERT_EQ(client.GetSpaceIcon({}, server.url("/" + name + "?a=1"), path), 1);
    EXPECT_EQ(server.requests().back().target, "/" + name + "?a=1?cred=");
    EXPECT_EQ(utf8(fs::path(narrow(path)).filename()), name);
    fs::remove(narrow(path));
}

TEST_F(IconTest, MayBeEmptyWhenItComesDown)
{
    ASSERT_EQ(download("empty-" + std::to_string(server.port()), ""), 1);
    EXPECT_EQ(fs::file_size(narrow(path)), 0U);
    fs::remove(narrow(path));
}

TEST_F(IconTest, MayBeStoppedOnItsWayDown)
{
    std::size_t whole = 0;
    client.onTransferProgress([&](std::size_t, std::size_t all) {
        whole = all;
        return false;
    });
    EXPECT_EQ(download("stopped-" + std::to_string(server.port()), std::string(1 << 20, 'x')), 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(whole, std::size_t{1} << 20);
}

TEST_F(IconTest, MayHaveANameAsLongAsTheSystemAllows)
{
    const std::string name = std::string(240, 'n') + std::to_string(server.port());
    ASSERT_EQ(download(name), 1);
    EXPECT_TRUE(fs::remove(narrow(path)));
}

TEST_F(IconTest, ReplacesTheFileOfThatName)
{
    const std::string name = "again-" + std::to_string(server.port());
    for (const std::string bytes : {"first and longer", "second"}) {
        ASSERT_EQ(download(name, bytes), 1);
        EXPECT_EQ(bytesOf(narrow(path)), bytes);
    }
    fs::remove(narrow(path));
}

TEST_F(IconTest, IsNoIconWhereTheServiceHasNone)
{
    for (const int status : {404, 500, 204, 302}) {
        server.reply(status, "text/plain", status == 204 ? "" : "sorry");
        EXPECT_EQ(client.GetSpaceIcon("c"_w, server.url("/x.png"), path), 0) << status;
        EXPECT_EQ(narrow(path), "before");
        EXPECT_EQ(reason(), "Network error. Unable to connect to " + server.address("/x.png") + "?cred=c");
        EXPECT_EQ(client.getNetworkError(), 0) << status;
    }
}

TEST_F(IconTest, SaysWhereItCouldNotComeFrom)
{
    const std::string address = "http://127.0.0.1:" + std::to_string(kzn::test::CaptureServer::closedPort()) + "/a.png";
    const TraceLines lines;
    EXPECT_EQ(client.GetSpaceIcon("c"_w, wide(address), path), 0);
    EXPECT_EQ(TraceLines::all(), enterAndLeave("GetSpaceIcon"));
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(reason(), "Network error. Unable to connect to " + address + "?cred=c");
    EXPECT_EQ(client.getNetworkError(), 1);
}

TEST_F(IconTest, LeavesNothingBehindWhenItIsCutOff)
{
    const std::string name = "half-" + std::to_string(server.port());
    server.script(kzn::test::Script().send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf").close());
    EXPECT_EQ(client.GetSpaceIcon("c"_w, server.url("/" + name), path), 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(reason(), "Network error. Unable to connect to " + server.address("/" + name) + "?cred=c");
    EXPECT_EQ(client.getNetworkError(), 1);
    for (const auto& entry : fs::directory_iterator(fs::temp_directory_path()))
        EXPECT_EQ(utf8(entry.path().filename()).find(name), std::string::npos) << entry.path();
}

TEST_F(IconTest, SaysWhichFileCouldNotBeWritten)
{
    // A folder of that name is in the way.
    const fs::path taken = fs::temp_directory_path() / ("taken-" + std::to_string(server.port()));
    fs::create_directories(taken / "full");
    EXPECT_EQ(download(utf8(taken.filename())), 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_NE(reason().find(utf8(taken.filename())), std::string::npos);
    fs::remove_all(taken);
}
