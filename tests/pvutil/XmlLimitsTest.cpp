// How much a text may hold: what goes beyond it is told apart from what is read, and from what is ill-formed.
#include <gtest/gtest.h>

#include <string>

#include "pvutil/Limits.h"
#include "tests/pvutil/XmlRecorder.h"

namespace {

using EXPAT_EX::XmlLimitPassed;
using kzn::pvutil::limits::kXmlDepth;
using kzn::pvutil::limits::kXmlItems;
using kzn::pvutil::limits::kXmlTextUnits;

std::string repeated(const std::string& text, std::size_t times)
{
    std::string all;
    for (std::size_t i = 0; i < times; ++i) all += text;
    return all;
}

/// Elements so deep inside one another, the root among them.
std::string nested(const std::string& name, std::size_t depth)
{
    return "<a><b>1</b>" + repeated("<" + name + ">", depth - 1) + repeated("</" + name + ">", depth - 1) +
           "<b>2</b></a>";
}

void expectPassed(XmlRecorder& handler, const std::string& text, const char* what)
{
    try {
        handler.parse(text);
        ADD_FAILURE() << "was read: " << what;
    } catch (const XmlLimitPassed& passed) {
        EXPECT_STREQ(passed.what(), what);
    }
}

class CountingHandler : public EXPAT_EX::CXMLHandler {
public:
    CountingHandler() { AddNodeListEventListener(1, "/a/b/"_w); }
    void OnEndNodeListEvent(unsigned) override { ++count; }
    std::size_t count = 0;
};

TEST(XmlLimits, Depth)
{
    constexpr const char* kTooDeep = "The reply is nested too deeply.";
    for (const std::string name : {"a", "c"}) {  // known to the handler in part, and not at all
        XmlRecorder handler({"/a/b/", "/a/a/a/b/"});
        EXPECT_EQ(handler.parse(nested(name, kXmlDepth)), 1) << name;
        EXPECT_EQ(handler.text(0), "2"_w) << name;
        expectPassed(handler, nested(name, kXmlDepth + 1), kTooDeep);
        EXPECT_EQ(handler.text(0), "1"_w) << name;
        expectPassed(handler, "<a><b>3</b>" + repeated("<" + name + ">", 20'000'000), kTooDeep);
        EXPECT_EQ(handler.parse(nested(name, kXmlDepth)), 1) << name;
    }
}

TEST(XmlLimits, DepthIsOneInWhicheverPieceItIs)
{
    for (const std::size_t size : {1U, 7U, 4096U}) {
        XmlRecorder handler({"/a/b/"});
        EXPECT_EQ(handler.parseInPieces(nested("c", kXmlDepth), size), 1) << size;
        EXPECT_THROW(handler.parseInPieces(nested("c", kXmlDepth + 1), size), XmlLimitPassed) << size;
    }
}

TEST(XmlLimits, DepthThatIsNotReachedIsIllFormedAsEver)
{
    XmlRecorder handler({"/a/b/"});
    EXPECT_EQ(handler.parse("<a><b>1</b>" + repeated("<a>", kXmlDepth - 1)), 0);
    EXPECT_EQ(handler.texts(), "1");
}

// Elements beside one another are none inside one another.
TEST(XmlLimits, DepthEndsWithEachElement)
{
    XmlRecorder handler({"/a/b/"});
    EXPECT_EQ(handler.parse("<a>" + repeated("<b>1</b><c/>", kXmlDepth) + "</a>"), 1);
}

TEST(XmlLimits, TextOfAnElement)
{
    constexpr const char* kTooLong = "A text of the reply is too long.";
    const std::string most(kXmlTextUnits, 'x');
    XmlRecorder handler({"/a/b/"});
    EXPECT_EQ(handler.parse("<a><b>" + most + "</b></a>"), 1);
    EXPECT_EQ(handler.text(0).size(), kXmlTextUnits);
    expectPassed(handler, "<a><b>" + most + "x</b></a>", kTooLong);
    expectPassed(handler, "<a><b><![CDATA[" + most + "]]><c/>&amp;</b></a>", kTooLong);
    EXPECT_EQ(handler.text(0).size(), kXmlTextUnits) << "the one that was read before";
    EXPECT_EQ(handler.parse("<a><b>1</b><b>" + most + "</b></a>"), 1) << "each element has its own";
    EXPECT_EQ(handler.parse("<a><c>" + most + most + "</c><b>1</b></a>"), 1) << "nobody reads that one";
}

// Units count, whatever they take on the wire, and in however many pieces they come.
TEST(XmlLimits, TextOfSeveralBytesACharacter)
{
    XmlRecorder handler({"/a/b/"});
    for (const char* twoUnits : {"\xC3\xA9\n", "\xF0\x9F\x98\x80"}) {
        const std::string most = repeated(twoUnits, kXmlTextUnits / 2);
        EXPECT_EQ(handler.parse("<a><b>" + most + "</b></a>"), 1);
        EXPECT_EQ(handler.text(0).size(), kXmlTextUnits);
        EXPECT_THROW(handler.parse("<a><b>" + most + "x</b></a>"), XmlLimitPassed);
        EXPECT_THROW(handler.parse("<a><b>x" + most + "</b></a>"), XmlLimitPassed);
    }
}

TEST(XmlLimits, ItemsOfAList)
{
    CountingHandler handler;
    EXPECT_EQ(handler.ParseXML(wide("<a>" + repeated("<b/>", kXmlItems) + "<c/></a>")), 1);
    EXPECT_EQ(handler.count, kXmlItems);
    EXPECT_EQ(handler.ParseXML(wide("<a>" + repeated("<b/>", kXmlItems) + "</a>")), 1) << "counted anew in each text";
    handler.count = 0;
    try {
        handler.ParseXML(wide("<a>" + repeated("<b/>", kXmlItems + 1) + "</a>"));
        ADD_FAILURE() << "was read";
    } catch (const XmlLimitPassed& passed) {
        EXPECT_STREQ(passed.what(), "A list of the reply is too long.");
    }
    EXPECT_EQ(handler.count, kXmlItems);
    EXPECT_EQ(handler.ParseXML(wide("<a>" + repeated("<c/>", kXmlItems + 1) + "</a>")), 1) << "no list";
}

}  // namespace
