// XML is shown with a line an element, and what is none as it is.
#include "log/Xml.h"

#include <gtest/gtest.h>

namespace {

using namespace logreader;

std::string indented(std::string_view xml)
{
    std::string text;
    writeIndented(xml, [&](std::string_view piece) { text += piece; });
    return text;
}

TEST(Xml, ElementsAreIndented)
{
    EXPECT_EQ(
        indented("<?xml version=\"1.0\"?>\r\n<a x='>'><b>t &amp; <![CDATA[<u>]]></b> <c/><d></d><!-- n --></a>\n"),
        "<?xml version=\"1.0\"?>\n<a x='>'>\n  <b>t &amp; <![CDATA[<u>]]></b>\n  <c/>\n  <d></d>\n  <!-- n -->\n</a>");
    EXPECT_EQ(indented("\xEF\xBB\xBF<a/>"), "<a/>");
    EXPECT_EQ(indented("<a>t<b/>u</a>"), "<a>t\n  <b/>\n  u</a>");
}

TEST(Xml, WhatIsNotWellFormedStaysAsItIs)
{
    for (const char* const text :
         {"", "plain", "<a>", "</a>", "<a></b>", "<a/><b/>", "<a/>t", "<a", "<a b='>", "<a><![CDATA[</a>", "<a><!--",
          "<a><?", "<1/>", "<>", "< a/>", "<!DOCTYPE a><a/>", "<a><b></a></b>", "<a><", "<![CDATA[x]]>"}) {
        EXPECT_FALSE(isWellFormed(text)) << text;
        EXPECT_EQ(indented(text), text);
    }
}

TEST(Xml, DepthIsBounded)
{
    std::string open;
    std::string close;
    for (int i = 0; i < 1000; ++i) {
        open += "<a>";
        close += "</a>";
    }
    EXPECT_TRUE(isWellFormed(open + close));
    EXPECT_FALSE(isWellFormed("<a>" + open + close + "</a>"));
    EXPECT_LT(indented(open + close).size(), 2000U * 50);
}

}  // namespace
