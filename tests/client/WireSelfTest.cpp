// The runner of the wire examples notices what is wrong: each case here is one mistake away from a right one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/client/WireOperations.h"
#include "tests/client/WireRunner.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kRight = R"(A credential for one workspace
[call] cloneSession
cred = c d
workspace = w1
[body]
cmd=cloneSession&autocommit=true&cred=c%20d
    &workspace=w1
[reply]
<kznapi><response><result>SUCCESS</result></response><securityContext><cred>x</cred></securityContext></kznapi>
[result] 1
[outputs]
newCred = x
[trace]
9 Debug: ---->>>> Enter CWapiClient::cloneSession
9 Debug: {body}
9 Debug: {reply}
9 Debug: <<<<---- Leave CWapiClient::cloneSession
[log]
Debug:  {body}
Debug:  {reply}
)";

std::vector<std::string> differencesWith(const std::string& from, const std::string& to)
{
    std::string text = kRight;
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
    return runWireCase(parseWireCase(text), wireOperations());
}

}  // namespace

TEST(WireRunner, FindsNothingWhereNothingIsWrong)
{
    EXPECT_THAT(differencesWith("c d", "c d"), IsEmpty());
}

TEST(WireRunner, FindsAWrongBody)
{
    EXPECT_THAT(differencesWith("&cred=c%20d", "&cred=c+d"),
                ElementsAre(StartsWith("trace\n"), StartsWith("log\n"), StartsWith("body\n")));
}

TEST(WireRunner, FindsAWrongResult)
{
    EXPECT_THAT(differencesWith("[result] 1", "[result] 0"), ElementsAre(StartsWith("result\n")));
}

TEST(WireRunner, FindsAWrongOutput)
{
    EXPECT_THAT(differencesWith("newCred = x", "newCred = y"), ElementsAre(StartsWith("outputs\n")));
}

TEST(WireRunner, FindsAnOutputThatShouldHaveBeenLeftAlone)
{
    EXPECT_THAT(differencesWith("[outputs]\nnewCred = x\n", ""), ElementsAre(StartsWith("outputs\n")));
}

TEST(WireRunner, FindsAMissingLastMessage)
{
    EXPECT_THAT(differencesWith("[trace]", "[last message]\nreason = none\n[trace]"),
                ElementsAre(StartsWith("reason of the client\n")));
}

TEST(WireRunner, FindsAChangeOfTheClient)
{
    EXPECT_THAT(differencesWith("[trace]", "[client]\nrootCred = x\n[trace]"),
                ElementsAre(StartsWith("rootCred of the client\n")));
}

TEST(WireRunner, FindsAWrongTarget)
{
    EXPECT_THAT(differencesWith("[reply]", "[request] POST\n/other\n[reply]"), ElementsAre(StartsWith("target\n")));
}

TEST(WireRunner, FindsAMissingHeader)
{
    EXPECT_THAT(differencesWith("[reply]", "[headers]\nX-Test: 1\n[reply]"),
                ElementsAre(StartsWith("header X-Test\n")));
}

TEST(WireRunner, FindsAMissingTraceLine)
{
    EXPECT_THAT(differencesWith("9 Debug: {reply}\n", ""), ElementsAre(StartsWith("trace\n")));
}

TEST(WireRunner, FindsAMissingLogLine)
{
    EXPECT_THAT(differencesWith("Debug:  {reply}\n", ""), ElementsAre(StartsWith("log\n")));
}

TEST(WireRunner, FindsARequestThatShouldNotHaveBeenSent)
{
    const std::string text = "t\n[call] logout\ncred = c\n[nothing sent]\n[result] 1\n[last message] unchanged\n";
    EXPECT_THAT(runWireCase(parseWireCase(text), wireOperations()), ElementsAre(StartsWith("requests sent\n")));
}

TEST(WireRunner, FindsAnArgumentThatTheOperationDoesNotHave)
{
    EXPECT_THAT(differencesWith("workspace = w1", "workspace = w1\nworkspce = w2"),
                ElementsAre(StartsWith("arguments that the operation does not have\n")));
}

TEST(WireRunner, RefusesAnArgumentThatIsNotThere)
{
    EXPECT_THROW(differencesWith("workspace = w1\n", ""), WireFileError);
}

TEST(WireRunner, RefusesAnUnknownOperation)
{
    EXPECT_THROW(differencesWith("cloneSession", "clonSession"), WireFileError);
}

TEST(WireFile, RefusesWhatHasNoMeaning)
{
    const std::string call = "t\n[call] logout\ncred = c\n";
    EXPECT_NO_THROW(parseWireCase(call + "[nothing sent]\n[result] 1\n"));
    EXPECT_THROW(parseWireCase(""), WireFileError);
    EXPECT_THROW(parseWireCase(call + "[nothing sent]\n"), WireFileError) << "no result";
    EXPECT_THROW(parseWireCase(call + "[result] 1\n"), WireFileError) << "neither a body nor nothing";
    EXPECT_THROW(parseWireCase(call + "[body]\na\n[result] 1\n"), WireFileError) << "no reply";
    EXPECT_THROW(parseWireCase(call + "[nothing sent]\n[reply]\n[result] 1\n"), WireFileError);
    EXPECT_THROW(parseWireCase(call + "[nothing sent]\n[result] x\n"), WireFileError);
    EXPECT_THROW(parseWireCase(call + "[nothing sent]\n[result] 1\n[result] 0\n"), WireFileError);
    EXPECT_THROW(parseWireCase(call + "[nothing sent]\n[result] 1\n[oututs]\n"), WireFileError);
    EXPECT_THROW(parseWireCase(call + "[nothing sent]\n[result] 1\n[outputs]\na = \\q\n"), WireFileError);
    EXPECT_THROW(parseWireCase(call + "[nothing sent]\n[result] 1\n[last message]\nresaon = x\n"), WireFileError);
}

TEST(WireFile, JoinsLinesAndReadsEscapes)
{
    const WireCase wire = parseWireCase(
        "t\nwhy\n[call] x\na = \\sb\\s\nc =\n[body]\n  k=1\n# for the eye\n\n  &l=\\x41\\\\\n"
        "[reply] 500 text/plain; charset=x\n <a>\n  \\n</a>\n[result] 0\n");
    EXPECT_EQ(wire.title, "t");
    EXPECT_EQ(wire.arguments.at(0).value, " b ");
    EXPECT_EQ(wire.arguments.at(1).value, "");
    EXPECT_EQ(wire.request.value().body, "k=1&l=A\\");
    EXPECT_EQ(wire.reply.value().status, 500);
    EXPECT_EQ(wire.reply.value().contentType, "text/plain; charset=x");
    EXPECT_EQ(wire.reply.value().body, "<a>\n</a>");
}
