// A recorder before services of other kinds than the stand-in.
#include <csignal>

#include "tests/service/DemoService.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/FileBytes.h"

namespace service::test {

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kReply = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: 5\r\n\r\n<ok/>";

class TapeUpstream : public testing::Test {
protected:
    std::string tape() const { return folder_.file("tape"); }

    std::vector<std::string> recording() const
    {
        return {"record",   "--to",       tape(), "--upstream", "http://127.0.0.1:" + std::to_string(server_.port()),
                "--listen", "127.0.0.1:0"};
    }

    TemporaryFolder folder_;
    kzn::test::CaptureServer server_;
};

// What a service says beforehand is no reply.
TEST_F(TapeUpstream, InterimRepliesAreReadPast)
{
    ServiceProcess recorder(recording());
    server_.script(kzn::test::Script()
                       .send("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 102 Processing\r\nX-A: b\r\n\r\n")
                       .send(kReply));
    EXPECT_EQ(form(recorder.port(), "cmd=x"), "<ok/>");
    EXPECT_THAT(bytesOf(tape()), HasSubstr("[reply] 200 text/xml\n<ok/>\n"));
}

// The host hears it, and the rest of the tape can be read.
TEST_F(TapeUpstream, AReplyThatNoTapeHoldsIsPassedOnAndLeftOut)
{
    ServiceProcess recorder(recording());
    server_.reply(999, "text/xml", "<odd/>");
    server_.reply(200, "text/xml", "<ok/>");
    EXPECT_EQ(form(recorder.port(), "cmd=x"), "<odd/>");
    EXPECT_EQ(form(recorder.port(), "cmd=x"), "<ok/>");
    EXPECT_THAT(bytesOf(tape()), Not(HasSubstr("odd")));
    ServiceProcess player({"replay", tape(), "--listen", "127.0.0.1:0"});
    EXPECT_EQ(form(player.port(), "cmd=x"), "<ok/>");
    recorder.signal(SIGTERM);
    EXPECT_THAT(recorder.errors(), HasSubstr("not on the tape: no tape can hold a reply with the status 999\n"));
}

}  // namespace

}  // namespace service::test
