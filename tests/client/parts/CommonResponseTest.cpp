// What every reply has in common, and how a reply is put together from parts.
#include "client/CommonResponse.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/Text.h"

namespace {

class CommonResponse : public testing::Test {
protected:
    int parse(std::string_view xml) { return reply.ParseXML(wide(xml)); }

    CXMLWapiCommonResponse reply;
};

TEST_F(CommonResponse, IsNewWithEmptyTexts)
{
    for (const CStringT* text : {&reply.result, &reply.exceptionID, &reply.reason, &reply.messages, &reply.message})
        EXPECT_EQ(*text, CStringT());
    EXPECT_FALSE(reply.succeeded());
}

TEST_F(CommonResponse, ReadsTheOutcome)
{
    EXPECT_EQ(parse("<kznapi><response><result>FAILURE</result><reason>a &amp; b</reason>"
                    "<exceptionID>E_1</exceptionID></response></kznapi>"),
              1);
    EXPECT_EQ(reply.result, "FAILURE"_w);
    EXPECT_EQ(reply.reason, "a & b"_w);
    EXPECT_EQ(reply.exceptionID, "E_1"_w);
    EXPECT_EQ(reply.messages, CStringT());
    EXPECT_FALSE(reply.succeeded());
}

TEST_F(CommonResponse, PutsABreakBehindEachMessage)
{
    EXPECT_EQ(parse("<kznapi><messageStrings><message>a</message><message>b</message></messageStrings></kznapi>"), 1);
    EXPECT_EQ(reply.messages, "a<br>b<br>"_w);
    EXPECT_EQ(reply.message, "b"_w);
}

TEST_F(CommonResponse, PutsABreakBehindEmptyMessagesToo)
{
    parse("<kznapi><messageStrings><message/><message>b</message><message></message></messageStrings></kznapi>");
    EXPECT_EQ(reply.messages, "<br>b<br><br>"_w);
    EXPECT_EQ(reply.message, CStringT());
}

TEST_F(CommonResponse, HasNoMessagesInAnEmptyList)
{
    for (const char* list : {"<messageStrings/>", "<messageStrings></messageStrings>",
                             "<messageStrings> text <other>x</other></messageStrings>"}) {
        EXPECT_EQ(parse(std::string("<kznapi>") + list + "</kznapi>"), 1) << list;
        EXPECT_EQ(reply.messages, CStringT()) << list;
    }
}

TEST_F(CommonResponse, CollectsMessagesOfSeveralLists)
{
    parse(
        "<kznapi><messageStrings><message>1</message></messageStrings>"
        "<messageStrings><message>&lt;br&gt;</message></messageStrings></kznapi>");
    EXPECT_EQ(reply.messages, "1<br><br><br>"_w);
    EXPECT_EQ(reply.message, "<br>"_w);
}

TEST_F(CommonResponse, CollectsNoMessageThatBreaksOff)
{
    EXPECT_EQ(parse("<kznapi><messageStrings><message>a</message><message>b"), 0);
    EXPECT_EQ(reply.messages, "a<br>"_w);
    EXPECT_EQ(reply.message, "a"_w);
}

TEST_F(CommonResponse, DoesNotSeeAReasonOutsideTheResponse)
{
    EXPECT_EQ(parse("<kznapi><response><result>FAILURE</result></response><reason>Can't call login command!</reason>"
                    "</kznapi>"),
              1);
    EXPECT_EQ(reply.result, "FAILURE"_w);
    EXPECT_EQ(reply.reason, CStringT());
}

TEST_F(CommonResponse, DoesNotSeeAResultElsewhere)
{
    for (const char* xml :
         {"<kznapi><result>SUCCESS</result></kznapi>", "<result>SUCCESS</result>",
          "<response><result>SUCCESS</result></response>",
          "<kznapi><return><response><result>SUCCESS</result></response></return></kznapi>",
          "<kznapi><response><x><result>SUCCESS</result></x></response></kznapi>",
          "<other><kznapi><response><result>SUCCESS</result></response></kznapi></other>",
          "<KZNAPI><response><result>SUCCESS</result></response></KZNAPI>",
          "<kznapi><response result='SUCCESS'/></kznapi>", "<kznapi><response>SUCCESS</response></kznapi>"}) {
        EXPECT_EQ(parse(xml), 1) << xml;
        EXPECT_EQ(reply.result, CStringT()) << xml;
        EXPECT_FALSE(reply.succeeded()) << xml;
    }
}

TEST_F(CommonResponse, KeepsWhatCameBeforeAFault)
{
    EXPECT_EQ(parse("<kznapi><response><result>Success</result><reason>x</response></kznapi>"), 0);
    EXPECT_TRUE(reply.succeeded());
    EXPECT_EQ(reply.reason, CStringT());
}

TEST_F(CommonResponse, SucceedsWithoutRegardToCase)
{
    for (const char* result : {"SUCCESS", "success", "Success", "sUcCeSs", "SUCCEsS"}) {
        reply.result = wide(result);
        EXPECT_TRUE(reply.succeeded()) << result;
    }
}

TEST_F(CommonResponse, SucceedsWithNothingElse)
{
    for (const char* result : {"", "FAILURE", "SUCCES", "SUCCESSS", " SUCCESS", "SUCCESS ", "SUCCESS\n", "SUCC ESS",
                               "OK", "1", "true", "UNSUCCESS", "SUCCE\xC5\xBF\xC5\xBF", "\xEF\xBC\xB3UCCESS",
                               "S\xC3\xBC"
                               "CCESS",
                               "5UCCESS"}) {
        reply.result = wide(result);
        EXPECT_FALSE(reply.succeeded()) << result;
    }
    reply.result = "SUCCESS"_w + CStringT(1, 0);
    EXPECT_FALSE(reply.succeeded());
}

TEST_F(CommonResponse, AppendsAtTheEndOfAMessageAlone)
{
    reply.message = "m"_w;
    for (const unsigned id : {0U, 1U, 9U, 11U, 4294967295U}) reply.OnEndNodeListEvent(id);
    EXPECT_EQ(reply.messages, CStringT());
    reply.OnStartNodeListEvent(10);
    EXPECT_EQ(reply.messages, CStringT());
    reply.OnEndNodeListEvent(10);
    EXPECT_EQ(reply.messages, "m<br>"_w);
}

TEST(MessageReply, ReadsTheCredential)
{
    CXMLWapiMessage reply;
    EXPECT_EQ(reply.cred, CStringT());
    EXPECT_EQ(
        reply.ParseXML("<kznapi><response><result>SUCCESS</result></response><securityContext><cred>c&amp;d</cred>"
                       "</securityContext><cred>no</cred></kznapi>"_w),
        1);
    EXPECT_EQ(reply.cred, "c&d"_w);
    EXPECT_TRUE(reply.succeeded());
}

// ---- Parts ----------------------------------------------------------------------------------------------------------

class NotingPart : public CWapiReplyPart {
public:
    NotingPart(CXMLWapiCommonResponse& reply, PathPiece at, std::vector<std::string>& notes) : notes_(notes)
    {
        reply.add(*this);
        reply.listen(3, at, "items/item/", {{"", &own_}, {"name/", &name_}});
    }

    void onEnd(unsigned id) override
    {
        notes_.push_back(std::to_string(id) + " " + narrow(own_) + "," + narrow(name_));
    }

private:
    std::vector<std::string>& notes_;
    CStringT own_;
    CStringT name_;
};

constexpr const char* kItems =
    "<kznapi><response><result>SUCCESS</result></response><messageStrings><message>m</message></messageStrings>"
    "<return><items><item>x<name>a</name></item></items><step><items><item>y<name>b</name></item></items></step>"
    "</return></kznapi>";

TEST(ReplyPart, IsToldOfTheEndsBelowItsPrefix)
{
    std::vector<std::string> notes;
    CXMLWapiCommonResponse reply;
    const NotingPart part(reply, kDirectReply, notes);
    EXPECT_EQ(reply.ParseXML(wide(kItems)), 1);
    EXPECT_EQ(notes, (std::vector<std::string>{"10 ,", "3 x,a"}));
    EXPECT_TRUE(reply.succeeded());
    EXPECT_EQ(reply.messages, "m<br>"_w);
}

TEST(ReplyPart, ServesAStepOfAScriptAsWell)
{
    std::vector<std::string> notes;
    CXMLWapiCommonResponse reply;
    const NotingPart part(reply, kScriptReply, notes);
    EXPECT_EQ(reply.ParseXML(wide(kItems)), 1);
    EXPECT_EQ(notes, (std::vector<std::string>{"10 ,", "3 y,b"}));
}

TEST(ReplyPart, IsOneOfSeveralInTheOrderOfTheirMaking)
{
    std::vector<std::string> notes;
    CXMLWapiCommonResponse reply;
    const NotingPart first(reply, kDirectReply, notes);
    const NotingPart second(reply, "/kznapi/other/", notes);
    EXPECT_EQ(reply.ParseXML("<kznapi><other><items><item>z</item></items></other></kznapi>"_w), 1);
    EXPECT_EQ(notes, (std::vector<std::string>{"3 ,", "3 z,"}));
}

}  // namespace
