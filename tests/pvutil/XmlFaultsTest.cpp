// Texts that are no XML, that break off, that declare a document type, that come in pieces or one after another.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pvutil/XmlHandler.h"
#include "tests/pvutil/Units.h"
#include "tests/pvutil/XmlRecorder.h"

namespace {

class IllFormed : public testing::TestWithParam<const char*> {};

TEST_P(IllFormed, GivesZeroAndFillsNothing)
{
    XmlRecorder handler({"/a/", "/a/b/c/"});
    EXPECT_EQ(handler.parse(GetParam()), 0);
    EXPECT_EQ(handler.texts(), "?|?");
}

INSTANTIATE_TEST_SUITE_P(Texts, IllFormed,
                         testing::Values("", " ", "\n", "x", "kznapi", "<", "<a", "<a ", "<a>", "<a><b>", "</a>", "<>",
                                         "< a/>", "<1/>", "<a></b>", "<a></A>", "<a><b></a></b>", "x<a/>", "<a>&</a>",
                                         "<a>&amp</a>", "<a>&nbsp;</a>", "<a>&e;</a>", "<a>&;</a>", "<a>]]></a>",
                                         "<a><![CDATA[</a>", "<a><![cdata[x]]></a>", "<a><!-- </a>",
                                         "<a><!-- -- --></a>", "<a><?xml?></a>", "<a><?p</a>",
                                         " <?xml version='1.0'?><a/>", "<?xml?><a/>", "{\"result\":\"SUCCESS\"}",
                                         "<html><br></html>"));

INSTANTIATE_TEST_SUITE_P(Attributes, IllFormed,
                         testing::Values("<a x/>", "<a x=/>", "<a x=1/>", "<a x='1/>", "<a x='<'/>", "<a x='&e;'/>",
                                         "<a x='1' x='2'/>", "<a x='1'y='2'/>"));

INSTANTIATE_TEST_SUITE_P(Characters, IllFormed,
                         testing::Values("<a>\x01</a>", "<a>\x1F</a>", "<a>\x0B</a>", "<a>\xEF\xBF\xBE</a>",
                                         "<a>\xEF\xBF\xBF</a>", "<a>&#0;</a>", "<a>&#1;</a>", "<a>&#x0;</a>",
                                         "<a>&#xD800;</a>", "<a>&#xDFFF;</a>", "<a>&#xFFFE;</a>", "<a>&#x110000;</a>",
                                         "<a>&#99999999999;</a>", "<a>&#x;</a>", "<a>&#;</a>", "<a>&#xG;</a>",
                                         "<a>&#12</a>"));

TEST(IllFormedUnits, GiveZero)
{
    for (const unsigned unit : {0U, 0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU, 0xFFFEU, 0xFFFFU}) {
        XmlRecorder handler({"/a/b/", "/a/c/"});
        EXPECT_EQ(handler.ParseXML("<a><b>1</b><c>2"_w + units({unit}) + "</c></a>"_w), 0) << unit;
        EXPECT_EQ(handler.texts(), "1|?") << unit;
        EXPECT_EQ(handler.ParseXML("<a><b>3</b></a>"_w + units({unit})), 0) << unit;
        EXPECT_EQ(handler.texts(), "3|?") << unit;
    }
}

// The parser would take it for UTF-16, whatever it was told.
TEST(IllFormedUnits, GiveZeroWhereZerosStandBetweenLetters)
{
    const std::string text = "<a><b>1</b></a>";
    std::string little;
    std::string big;
    for (const char c : text) {
        little += {c, '\0'};
        big += {'\0', c};
    }
    for (const std::string& zeros :
         {little, big, std::string(1, '\0') + text, "<" + std::string(1, '\0') + text.substr(1)}) {
        XmlRecorder handler({"/a/b/"});
        EXPECT_EQ(handler.ParseUtf8(zeros), 0);
        EXPECT_EQ(handler.ParseXML(wide(zeros)), 0);
        EXPECT_EQ(handler.parseInPieces(zeros, 1), 0);
        EXPECT_EQ(handler.parseInPieces(zeros, 3), 0);
        EXPECT_EQ(handler.texts(), "?");
        EXPECT_EQ(handler.parse(text), 1);
        EXPECT_EQ(handler.texts(), "1");
    }
}

TEST(IllFormedUnits, GiveZeroAsReversedSurrogates)
{
    XmlRecorder handler({"/a/"});
    EXPECT_EQ(handler.ParseXML("<a>"_w + units({0xDE00, 0xD83D}) + "</a>"_w), 0);
    EXPECT_EQ(handler.ParseXML("<a>"_w + units({0xD83D})), 0);
    EXPECT_EQ(handler.texts(), "?");
}

TEST(IllFormedRest, LeavesWhatCameBefore)
{
    for (const char* rest : {"<c>", "&e;", "</b>", "<c></d>", "</a><a/>", "</a>x", "</a>&amp;", "\x01", "<c x=1/>",
                             "</a><![CDATA[x]]>", "</a><?xml version='1.0'?>"}) {
        XmlRecorder handler({"/a/b/", "/a/d/"});
        EXPECT_EQ(handler.parse(std::string("<a><b>1</b>") + rest + "<d>2</d></a>"), 0) << rest;
        EXPECT_EQ(handler.texts(), "1|?") << rest;
    }
}

// ---- Broken off and in pieces ---------------------------------------------------------------------------------------

constexpr const char* kReply =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
    "<kznapi v='1'><response><result>SUCC<!-- c -->ESS</result><reason>a &amp; b &#x1F600;</reason></response>"
    "<messageStrings><message>one</message><message/><message>\xF0\x9F\x98\x80 \xC3\xA9</message></messageStrings>\n"
    "<return><tab>mixed<id> 1 </id>text<name><![CDATA[x]]]]><![CDATA[>y & z]]></name></tab><?pi?><tab><id/></tab>"
    "</return></kznapi>\n<!-- end -->\n";

class Reply : public XmlRecorder {
public:
    Reply()
        : XmlRecorder({"/kznapi/response/result/", "/kznapi/response/reason/", "/kznapi/messageStrings/message/",
                       "/kznapi/return/tab/", "/kznapi/return/tab/id/", "/kznapi/return/tab/name/"},
                      {{10, "/kznapi/messageStrings/message/"}, {1, "/kznapi/return/tab/"}, {2, "/kznapi/"}})
    {
    }
};

TEST(ReplyInPieces, IsTheWholeReply)
{
    Reply whole;
    EXPECT_EQ(whole.parse(kReply), 1);
    EXPECT_EQ(whole.texts(), "SUCCESS|a & b \xF0\x9F\x98\x80|\xF0\x9F\x98\x80 \xC3\xA9|||x]]>y & z");
    for (std::size_t size = 1; size <= 5; ++size) {
        Reply pieces;
        EXPECT_EQ(pieces.parseInPieces(kReply, size), 1) << size;
        EXPECT_EQ(pieces.texts(), whole.texts()) << size;
        EXPECT_EQ(pieces.events(), whole.events()) << size;
    }
}

TEST(ReplyInPieces, MayHoldEmptyPieces)
{
    Reply reply;
    EXPECT_EQ(reply.ParsePiece("", false), 1);
    EXPECT_EQ(reply.ParsePiece("<kznapi><response><result>SU", false), 1);
    EXPECT_EQ(reply.ParsePiece("", false), 1);
    EXPECT_EQ(reply.ParsePiece("CCESS</result></response></kznapi>", false), 1);
    EXPECT_EQ(reply.ParsePiece("", true), 1);
    EXPECT_EQ(reply.text(0), "SUCCESS"_w);
}

TEST(ReplyInPieces, IsIllFormedFromTheFaultOn)
{
    Reply reply;
    EXPECT_EQ(reply.ParsePiece("<kznapi><response><result>x</result>", false), 1);
    EXPECT_EQ(reply.ParsePiece("</kznapi>", false), 0);
    EXPECT_EQ(reply.ParsePiece("<reason>y</reason></response></kznapi>", true), 0);
    EXPECT_EQ(reply.text(0), "x"_w);
    EXPECT_EQ(reply.text(1), "?"_w);
}

// The last of the two or three elements of that name that had ended by then.
struct Milestone {
    std::size_t index;
    const char* endOfElement;
    const char* text;
};

const std::vector<Milestone>& milestones()
{
    static const std::vector<Milestone> all = {{0, "ESS</result>", "SUCCESS"},
                                               {1, "</reason>", "a & b \xF0\x9F\x98\x80"},
                                               {2, "one</message>", "one"},
                                               {2, "<message/>", ""},
                                               {2, "\xC3\xA9</message>", "\xF0\x9F\x98\x80 \xC3\xA9"},
                                               {3, "</name></tab>", "mixedtext"},
                                               {3, "<id/></tab>", ""},
                                               {4, "1 </id>", " 1 "},
                                               {4, "<id/>", ""},
                                               {5, "</name>", "x]]>y & z"}};
    return all;
}

std::string expectedTexts(std::string_view readSoFar)
{
    std::vector<std::string> texts(6, "?");
    for (const Milestone& milestone : milestones())
        if (readSoFar.find(milestone.endOfElement) != std::string_view::npos) texts[milestone.index] = milestone.text;
    std::string all;
    for (const std::string& text : texts) all += (&text == &texts.front() ? "" : "|") + text;
    return all;
}

TEST(ReplyBrokenOff, FillsWhatHadEndedAtEveryCut)
{
    const CStringT whole = wide(kReply);
    const std::size_t end = whole.find("</kznapi>"_w) + 9;
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        const CStringT text = whole.substr(0, cut);
        const bool endsInComment = cut > end + 1 && cut < whole.size() - 1;
        Reply reply;
        EXPECT_EQ(reply.ParseXML(text), cut >= end && !endsInComment ? 1 : 0) << cut;
        EXPECT_EQ(reply.texts(), expectedTexts(narrow(text))) << cut;
        Reply pieces;
        pieces.parseInPieces(narrow(text), 3);
        EXPECT_EQ(pieces.texts(), reply.texts()) << cut;
        EXPECT_EQ(pieces.events(), reply.events()) << cut;
    }
}

TEST(ReplyBrokenOff, IsOneFaultWhicheverByteIsMissing)
{
    const std::string whole = kReply;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string bytes = whole;
        bytes.erase(at, 1);
        Reply one;
        const int well = one.ParseUtf8(bytes);
        Reply two;
        EXPECT_EQ(two.parseInPieces(bytes, 1), well) << at;
        EXPECT_EQ(two.texts(), one.texts()) << at;
        EXPECT_EQ(two.events(), one.events()) << at;
    }
}

// What is fed as text is fed as the same bytes, and ends at a surrogate that lost its partner.
TEST(ReplyBrokenOff, IsTheSameFaultOfTheText)
{
    const CStringT whole = wide(kReply);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        CStringT text = whole;
        text.erase(at, 1);
        const bool isLone = whole[at] >= 0xD800 && whole[at] <= 0xDFFF;
        std::string bytes = narrow(text);
        if (isLone) bytes.replace(bytes.find("\xEF\xBF\xBD"), 3, "\xFF");
        Reply one;
        const int well = one.ParseUtf8(bytes);
        EXPECT_TRUE(!isLone || well == 0) << at;
        Reply two;
        EXPECT_EQ(two.ParseXML(text), well) << at;
        EXPECT_EQ(two.texts(), one.texts()) << at;
        EXPECT_EQ(two.events(), one.events()) << at;
    }
}

// ---- Document types -------------------------------------------------------------------------------------------------

class DocumentType : public testing::TestWithParam<const char*> {};

TEST_P(DocumentType, EndsTheParse)
{
    XmlRecorder handler({"/a/", "/a/b/"}, {{1, "/a/"}});
    const std::string reply = std::string(GetParam()) + "<a>x<b>1</b></a>";
    EXPECT_EQ(handler.parse(reply), 0);
    EXPECT_EQ(handler.texts(), "?|?");
    EXPECT_EQ(handler.events(), "");
    EXPECT_EQ(handler.parseInPieces(reply, 1), 0);
    EXPECT_EQ(handler.texts(), "?|?");
    EXPECT_EQ(handler.parse("<a><b>2</b></a>"), 1);
    EXPECT_EQ(handler.texts(), "|2");
}

INSTANTIATE_TEST_SUITE_P(XmlFaults, DocumentType,
                         testing::Values("<!DOCTYPE a>", "<!DOCTYPE a []>", "<!DOCTYPE a [<!ENTITY e \"x\">]>",
                                         "<!DOCTYPE a [<!ENTITY e 'x'><!ENTITY f '&e;&e;&e;&e;'>]>",
                                         "<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x\">'>%p;]>",
                                         "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/hostname'>]>",
                                         "<!DOCTYPE a SYSTEM 'other.dtd'>",
                                         "<!DOCTYPE a PUBLIC '-//X//Y' 'http://127.0.0.1:1/x.dtd'>",
                                         "<!DOCTYPE a SYSTEM 'other.dtd' [<!ENTITY e \"x\">]>",
                                         "<!DOCTYPE a [<!ELEMENT a ANY>]>", "<!DOCTYPE a [<!ATTLIST a x CDATA 'y'>]>",
                                         "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'>]>", "<!DOCTYPE a [<!-- c --><?p?>]>",
                                         "<?xml version='1.0' standalone='no'?><!DOCTYPE a>", "<!-- c --><!DOCTYPE a>",
                                         "<!DOCTYPE a [", "<!DOCTYPE a [<!ENTITY e \"x"));

TEST(DocumentTypeBehindTheRoot, LeavesWhatCameBefore)
{
    XmlRecorder handler({"/a/b/"});
    EXPECT_EQ(handler.parse("<a><b>1</b></a><!DOCTYPE a>"), 0);
    EXPECT_EQ(handler.texts(), "1");
    EXPECT_EQ(handler.parse("<a><b>2</b><!DOCTYPE a></a>"), 0);
    EXPECT_EQ(handler.texts(), "2");
}

// ---- One text after another -----------------------------------------------------------------------------------------

TEST(NextText, BeginsAfreshAfterOneThatBrokeOff)
{
    XmlRecorder handler({"/a/", "/a/b/"}, {{1, "/a/b/"}});
    EXPECT_EQ(handler.parse("<a>old<b>old"), 0);
    EXPECT_EQ(handler.parse("<a>new<b>1</b></a>"), 1);
    EXPECT_EQ(handler.texts(), "new|1");
    EXPECT_EQ(handler.events(), "(1 ?|?; (1 ?|?; 1) ?|1; ");
}

TEST(NextText, BeginsAfreshAfterOneThatBrokeOffInAnUnknownElement)
{
    XmlRecorder handler({"/a/b/"});
    EXPECT_EQ(handler.parse("<a><x><y>"), 0);
    EXPECT_EQ(handler.parse("<a><b>1</b></a>"), 1);
    EXPECT_EQ(handler.texts(), "1");
}

TEST(NextText, BeginsAfreshAfterPiecesWithoutALast)
{
    XmlRecorder handler({"/a/b/"});
    EXPECT_EQ(handler.ParsePiece("<a><x><b>old", false), 1);
    EXPECT_EQ(handler.parse("<a><b>1</b></a>"), 1);
    EXPECT_EQ(handler.texts(), "1");
    EXPECT_EQ(handler.parseInPieces("<a><b>2</b></a>", 2), 1);
    EXPECT_EQ(handler.texts(), "2");
}

TEST(NextText, LeavesWhatItDoesNotHold)
{
    XmlRecorder handler({"/a/b/", "/a/c/"});
    EXPECT_EQ(handler.parse("<a><b>1</b><c>2</c></a>"), 1);
    EXPECT_EQ(handler.parse("<a><c>3</c></a>"), 1);
    EXPECT_EQ(handler.texts(), "1|3");
}

TEST(NextText, MayMeetSelectorsAddedInBetween)
{
    XmlRecorder handler({"/a/b/"});
    CStringT late;
    EXPECT_EQ(handler.parse("<a><b>1</b><c>2</c></a>"), 1);
    handler.AddTextSelecter("/a/c/"_w, &late);
    EXPECT_EQ(handler.parse("<a><c>3</c><b>4</b></a>"), 1);
    EXPECT_EQ(handler.texts(), "4");
    EXPECT_EQ(late, "3"_w);
}

}  // namespace
