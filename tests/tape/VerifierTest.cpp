// What a service that answers otherwise is told apart by.
#include "service/tape/Verifier.h"

namespace service::tape {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A service that answers with these bodies, one after another, and keeps what it was asked.
class TapeVerifier : public testing::Test {
protected:
    std::vector<std::string> check(const std::string& text, std::vector<std::string> replies)
    {
        std::size_t next = 0;
        Verifier verifier("http://127.0.0.1:1", {"pass&word"}, [&](const http::Request& request) {
            asked.push_back(request.body);
            return http::Response{status, type, replies.at(next++)};
        });
        std::vector<std::string> differences;
        for (const Exchange& exchange : readTape(text)) differences.push_back(verifier.check(exchange));
        return differences;
    }

    unsigned status = 200;
    std::string type = "text/xml";
    std::vector<std::string> asked;
};

constexpr const char* kForm = "[headers]\nContent-Type: application/x-www-form-urlencoded\n";

TEST_F(TapeVerifier, WhatTheServiceMadeMayBeAnother)
{
    const std::string tape = std::string(kForm) +
                             "[body]\nlogin={secret}\n[reply]\n<cred>{cred 1}</cred><i>{id 1 = old-1}</i>"
                             "<t>{time = 2026-02-01T09:30:00Z}</t>\n" +
                             kForm + "[body]\ncred={cred 1}&id={id 1}\n[reply]\n<i>{id 1}</i><u>{server}/x</u>\n";
    EXPECT_THAT(check(tape, {"<cred>n&amp;w</cred><i>new-2</i><t>2027-01-01T00:00:00Z</t>",
                             "<i>new-2</i><u>http://127.0.0.1:1/x</u>"}),
                ElementsAre("", ""));
    EXPECT_THAT(asked, ElementsAre("login=pass%26word", "cred=n%26w&id=new-2"));
}

TEST_F(TapeVerifier, NamesTheFirstDifference)
{
    const std::string tape =
        "[body]\na\n[reply]\n<n>1</n><i>{id 1 = old-1}</i>\n[body]\n{id 1}\n[reply]\n<i>{id 1}</i>\n";
    EXPECT_THAT(check(tape, {"<n>1</n><i>new-2</i>", "<i>new-3</i>"}),
                ElementsAre("", HasSubstr("its reply differs at byte 3: the tape has {id 1}, and not \"new-3")));
    EXPECT_THAT(check(tape, {"<n>2</n><i>new-2</i>"}),
                ElementsAre("its reply differs at byte 3: the tape has \"1</n><i>\", and not \"2</n><i>new-2</i>\"",
                            "its request needs {id 1}, which no reply has given"));
    EXPECT_THAT(check(tape, {"<n>1</n><i>new-2</i> ", "<i>new-2"}),
                ElementsAre(HasSubstr("the tape has nothing more, and not \" \""),
                            HasSubstr("the tape has \"</i>\", and not the end")));
    status = 500;
    EXPECT_THAT(check(tape, {"<n>1</n><i>new-2</i>", "<i>new-2</i>"}),
                ElementsAre("its status is 200, and not 500", "its status is 200, and not 500"));
    status = 200;
    type = "text/html";
    EXPECT_THAT(check(tape, {"<n>1</n><i>new-2</i>", "<i>new-2</i>"}),
                testing::Each(HasSubstr("content type is \"text/xml\", and not \"text/html\"")));
}

TEST_F(TapeVerifier, TellsNoSecretOfAReplyThatDiffers)
{
    const std::string tape = "[body]\n{secret}\n[reply]\n<a>1</a><cred>{cred 1}</cred>\n";
    EXPECT_THAT(check(tape, {"<b>2</b><cred>s3cret</cred><c>pass&amp;word</c>"}),
                ElementsAre(HasSubstr("and not \"b>2</b><cred>***</cred><c>***</c>\"")));
    EXPECT_THAT(check(tape, {"<token a=''>s3cret</token>"}),
                ElementsAre(HasSubstr("and not \"token a=''>***</token>")));
}

TEST_F(TapeVerifier, FormsGetABoundaryThatIsNotInThem)
{
    const std::string tape =
        "[headers]\nContent-Type: multipart/form-data; boundary={boundary}\n"
        "[body]\n--{boundary} ------------------------pvwapi\n[reply]\n<a/>\n";
    EXPECT_THAT(check(tape, {"<a/>"}), ElementsAre(""));
    EXPECT_EQ(asked.front(), "--------------------------pvwapi0 ------------------------pvwapi");
}

TEST(TapeSecrets, OnesThatARequestNeedsAreCounted)
{
    EXPECT_EQ(secretsOf(readTape("[body]\na\n[reply]\n{secret 4}\n[body]\n{secret 4}{secret 2}\n[reply]\n")), 2);
    EXPECT_EQ(secretsOf(readTape("[body]\na\n[reply]\n")), 0);
}

}  // namespace

}  // namespace service::tape
