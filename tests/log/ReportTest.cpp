// How a call is shown.
#include "log/Report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/log/LogText.h"

namespace {

using namespace logreader;
using namespace logtest;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

Call only(std::string_view log)
{
    auto calls = callsOf(log);
    EXPECT_EQ(calls.size(), 1U);
    return std::move(calls.front());
}

std::string detailsOf(const Call& call, Secrets secrets = Secrets::masked)
{
    std::string text;
    writeDetails(call, secrets, [&](std::string_view piece) { text += piece; });
    return text;
}

TEST(Report, CallIsALine)
{
    const Call found = only(call("cmd=logout&cred=S3CRET", failure("no\x1b[1m", "e1")));
    EXPECT_EQ(
        lineOf(found, Secrets::masked, Process::leftOut),
        "    1  2026-01-31 23:59:58  logout                    FAILURE         22 out      114 in  no\\u001b[1m  (e1)");
    EXPECT_THAT(lineOf(found, Secrets::masked, Process::shown), HasSubstr("23:59:58  pid 11  logout  "));
    EXPECT_THAT(lineOf(only(entry("plain")), Secrets::masked, Process::leftOut),
                HasSubstr("WapiProxyCall             not XML          - out        5 in"));
    EXPECT_THAT(lineOf(only(entry("cmd=logout&cred=c")), Secrets::masked, Process::leftOut),
                AllOf(HasSubstr("logout                    no reply "), EndsWith("       - in")));
}

TEST(Report, HostileCommandIsNoLongName)
{
    const Call found = only(entry("cmd=" + std::string(1000, 'x') + "&cred=c"));
    EXPECT_LT(lineOf(found, Secrets::masked, Process::leftOut).size(), 200U);
}

TEST(Report, DetailsAreDecodedAndIndented)
{
    const Call found = only(call("cmd=execute&cred=S3CRET&xml=%3Ca%3E%3Cb%3Ex%0A%1B%3C%2Fb%3E%3C%2Fa%3E&id=",
                                 "<r><cred>S3CRET</cred><c>\xFF</c></r>"));
    EXPECT_EQ(detailsOf(found),
              "    request, 73 bytes\n"
              "        cmd = execute\n"
              "        cred = ***\n"
              "        xml =\n"
              "            <a>\n"
              "              <b>x\n"
              "            \\u001b</b>\n"
              "            </a>\n"
              "        id =\n"
              "    reply, 34 bytes\n"
              "        <r>\n"
              "          <cred>***</cred>\n"
              "          <c>\uFFFD</c>\n"
              "        </r>\n");
    EXPECT_THAT(detailsOf(found, Secrets::shown), HasSubstr("cred = S3CRET\n"));
    EXPECT_THAT(detailsOf(found, Secrets::shown), HasSubstr("<cred>S3CRET</cred>"));
}

TEST(Report, DetailsSayWhatIsMissing)
{
    EXPECT_THAT(detailsOf(only(entry("cmd=get&cred=c"))), HasSubstr("    no reply in the log\n"));
    EXPECT_THAT(detailsOf(only(call("cmd=get&cred=c", ""))), HasSubstr("    nothing came back\n"));
    EXPECT_THAT(detailsOf(only(entry("<a/>"))), HasSubstr("    no request in the log\n"));
    EXPECT_THAT(detailsOf(only(entry("<a", "1", "2", ""))), HasSubstr("        <a\n        ... the log ends here\n"));
}

TEST(Report, JsonHasWhatTheLineAndTheDetailsHave)
{
    const Call found = only(call("cmd=get&note=1&note=2&note=3&cred=S3CRET", failure("S3CRET \u202e", "e1")));
    const std::string line = jsonOf(found, Secrets::masked);
    EXPECT_EQ(std::ranges::count_if(line, [](char c) { return c < 0x20 || c == 0x7F; }), 0);
    EXPECT_THAT(line, Not(HasSubstr("S3CRET")));
    const auto object = nlohmann::json::parse(line);
    EXPECT_EQ(object["number"], 1);
    EXPECT_EQ(object["time"], kTime);
    EXPECT_EQ(object["pid"], 11);
    EXPECT_EQ(object["tid"], 12);
    EXPECT_EQ(object["operation"], "get");
    EXPECT_EQ(object["request"]["cred"], "***");
    EXPECT_EQ(object["request"]["note"], nlohmann::json::parse(R"(["1","2","3"])"));
    EXPECT_EQ(object["result"], "FAILURE");
    EXPECT_EQ(object["reason"], "*** \u202e");
    EXPECT_EQ(object["exceptionID"], "e1");
    EXPECT_EQ(object["bytesOut"], 40);
    EXPECT_EQ(object["reply"], failure("*** \u202e", "e1"));
    EXPECT_THAT(jsonOf(found, Secrets::shown), HasSubstr("\"cred\":\"S3CRET\""));
}

TEST(Report, JsonOfHalfACallHasNulls)
{
    const auto alone = nlohmann::json::parse(jsonOf(only(entry("\xFF")), Secrets::masked));
    EXPECT_TRUE(alone["request"].is_null());
    EXPECT_TRUE(alone["bytesOut"].is_null());
    EXPECT_EQ(alone["reply"], "\uFFFD");
    const auto waiting = nlohmann::json::parse(jsonOf(only(entry("cmd=x", "18446744073709551615")), Secrets::masked));
    EXPECT_TRUE(waiting["reply"].is_null());
    EXPECT_TRUE(waiting["bytesIn"].is_null());
    EXPECT_EQ(waiting["pid"], "18446744073709551615");
    EXPECT_EQ(waiting["result"], "no reply");
}

}  // namespace
