// Text selectors: which elements they see, and what an element's text is.
#include "pvutil/XmlHandler.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/pvutil/Units.h"
#include "tests/pvutil/XmlRecorder.h"

namespace {

struct TextCase {
    const char* xml;
    const char* text;
};

// The text of /a/b/ alone.
class ElementText : public testing::TestWithParam<TextCase> {};

TEST_P(ElementText, IsStored)
{
    XmlRecorder handler({"/a/b/"});
    EXPECT_EQ(handler.parse(GetParam().xml), 1);
    EXPECT_EQ(handler.texts(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Plain, ElementText,
                         testing::Values(TextCase{"<a><b>x</b></a>", "x"}, TextCase{"<a><b/></a>", ""},
                                         TextCase{"<a><b></b></a>", ""}, TextCase{"<a></a>", "?"},
                                         TextCase{"<a/>", "?"}, TextCase{"<a><b id='1' n=\"x&lt;\">y</b></a>", "y"},
                                         TextCase{"<a  ><b\n>x</b\t></a >", "x"},
                                         TextCase{"<?xml version='1.0'?>\n<a>\n <b>x</b>\n</a>\n<!-- c -->\n", "x"},
                                         TextCase{"<a><b>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</b></a>",
                                                  "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"}));

INSTANTIATE_TEST_SUITE_P(Whitespace, ElementText,
                         testing::Values(TextCase{"<a><b> </b></a>", " "}, TextCase{"<a><b>\n</b></a>", "\n"},
                                         TextCase{"<a><b>  x \t y\n </b></a>", "  x \t y\n "},
                                         TextCase{"<a><b>x\r\ny\rz</b></a>", "x\ny\nz"},
                                         TextCase{"<a><b>x&#13;&#10;y</b></a>", "x\r\ny"},
                                         TextCase{"<a><b>\xC2\xA0x</b></a>", "\xC2\xA0x"}));

INSTANTIATE_TEST_SUITE_P(
    Cdata, ElementText,
    testing::Values(TextCase{"<a><b><![CDATA[x]]></b></a>", "x"}, TextCase{"<a><b><![CDATA[]]></b></a>", ""},
                    TextCase{"<a><b>1<![CDATA[<c>&amp;&#65;]]>2</b></a>", "1<c>&amp;&#65;2"},
                    TextCase{"<a><b><![CDATA[x]]]]><![CDATA[>y]]></b></a>", "x]]>y"},
                    TextCase{"<a><b> <![CDATA[ x ]]> </b></a>", "  x  "},
                    TextCase{"<a><b><![CDATA[<!DOCTYPE a><?p?><!-- -->]]></b></a>", "<!DOCTYPE a><?p?><!-- -->"},
                    TextCase{"<a><b><![CDATA[]]]></b></a>", "]"},
                    TextCase{"<a><b><![CDATA[1\r\n2]]></b></a>", "1\n2"}));

INSTANTIATE_TEST_SUITE_P(
    References, ElementText,
    testing::Values(TextCase{"<a><b>&lt;&gt;&amp;&quot;&apos;</b></a>", "<>&\"'"},
                    TextCase{"<a><b>x&amp;amp;y</b></a>", "x&amp;y"},
                    TextCase{"<a><b>&#65;&#x42;&#x63;&#0068;</b></a>", "ABcD"},
                    TextCase{"<a><b>&#233;&#xE9;&#x20AC;</b></a>", "\xC3\xA9\xC3\xA9\xE2\x82\xAC"},
                    TextCase{"<a><b>&#x1F600;&#128512;</b></a>", "\xF0\x9F\x98\x80\xF0\x9F\x98\x80"},
                    TextCase{"<a><b>&#x10000;&#x10FFFF;</b></a>", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
                    TextCase{"<a><b>&#xFFFD;&#x9;</b></a>", "\xEF\xBF\xBD\t"}));

INSTANTIATE_TEST_SUITE_P(
    Interrupted, ElementText,
    testing::Values(TextCase{"<a><b>x<!-- no -->y</b></a>", "xy"}, TextCase{"<a><b>x<?no no?>y</b></a>", "xy"},
                    TextCase{"<a><b><!-- only --></b></a>", ""}, TextCase{"<a><b>1<c>2</c>3</b></a>", "13"},
                    TextCase{"<a><b>1<c>2<d>3</d>4</c>5<c/>6</b></a>", "156"},
                    TextCase{"<a><b><b>inner</b></b></a>", ""}, TextCase{"<a><b>1<b>2</b>3</b></a>", "13"},
                    TextCase{"<a>0<b>1</b>2</a>", "1"}));

INSTANTIATE_TEST_SUITE_P(Elsewhere, ElementText,
                         testing::Values(TextCase{"<b>x</b>", "?"}, TextCase{"<a><c><b>x</b></c></a>", "?"},
                                         TextCase{"<a><a><b>x</b></a></a>", "?"},
                                         TextCase{"<c><a><b>x</b></a></c>", "?"}, TextCase{"<a><B>x</B></a>", "?"},
                                         TextCase{"<A><b>x</b></A>", "?"}, TextCase{"<a><bb>x</bb></a>", "?"},
                                         TextCase{"<aa><b>x</b></aa>", "?"}, TextCase{"<a><n:b>x</n:b></a>", "?"},
                                         TextCase{"<a><c><b>x</b></c><b>y</b><c><b>z</b></c></a>", "y"},
                                         TextCase{"<a b='x'/>", "?"}, TextCase{"<a><!--<b>x</b>--></a>", "?"}));

INSTANTIATE_TEST_SUITE_P(Repeated, ElementText,
                         testing::Values(TextCase{"<a><b>1</b><b>2</b></a>", "2"}, TextCase{"<a><b>1</b><b/></a>", ""},
                                         TextCase{"<a><b>long text</b><b>s</b></a>", "s"},
                                         TextCase{"<a><b>1</b><c/><b>2</b><c/></a>", "2"}));

TEST(TextSelector, SharesItsPathWithOthers)
{
    XmlRecorder handler({"/a/b/", "/a/b/", "/a/b/"});
    EXPECT_EQ(handler.parse("<a><b>x&amp;y</b></a>"), 1);
    EXPECT_EQ(handler.texts(), "x&y|x&y|x&y");
    EXPECT_EQ(handler.parse("<a><b/></a>"), 1);
    EXPECT_EQ(handler.texts(), "||");
}

TEST(TextSelector, SharesItsTargetWithOthers)
{
    CStringT target;
    EXPAT_EX::CXMLHandler handler;
    for (const char* path : {"/a/b/", "/a/c/", "/a/b/"}) handler.AddTextSelecter(wide(path), &target);
    EXPECT_EQ(handler.ParseXML("<a><b>1</b><c>2</c></a>"_w), 1);
    EXPECT_EQ(target, "2"_w);
    EXPECT_EQ(handler.ParseXML("<a><c>2</c><b>1</b></a>"_w), 1);
    EXPECT_EQ(target, "1"_w);
}

TEST(TextSelector, StandsOnAPathThatOthersBeginWith)
{
    XmlRecorder handler({"/a/", "/a/b/", "/a/b/c/", "/a/b/c/d/"});
    EXPECT_EQ(handler.parse("<a>1<b>2<c>3<d>4</d>5</c>6</b>7</a>"), 1);
    EXPECT_EQ(handler.texts(), "17|26|35|4");
}

TEST(TextSelector, NeedsNoSelectorOnTheWay)
{
    XmlRecorder handler({"/a/b/c/d/"});
    EXPECT_EQ(handler.parse("<a>1<b>2<c>3<d>4</d></c></b></a>"), 1);
    EXPECT_EQ(handler.texts(), "4");
}

TEST(TextSelector, FindsElementsInAnyOrder)
{
    XmlRecorder handler({"/a/b/", "/a/c/", "/a/d/", "/a/e/"});
    EXPECT_EQ(handler.parse("<a><e>1</e><d>2</d><c>3</c><b>4</b></a>"), 1);
    EXPECT_EQ(handler.texts(), "4|3|2|1");
    EXPECT_EQ(handler.parse("<a><c>5</c><e>6</e><c>7</c><b>8</b></a>"), 1);
    EXPECT_EQ(handler.texts(), "8|7|2|6");
}

TEST(TextSelector, IsNotLedAstrayByUnknownElementsAtAnyDepth)
{
    XmlRecorder handler({"/a/b/", "/a/b/c/", "/a/d/"});
    EXPECT_EQ(handler.parse("<a><x><b>no</b><d>no</d></x><b>1<y><c>no</c></y>2<c>3<z><c>no</c>no</z>4</c>5</b>"
                            "<x/><d><b>no</b>6</d><d2>no</d2></a>"),
              1);
    EXPECT_EQ(handler.texts(), "125|34|6");
}

TEST(TextSelector, StaysUntouchedUntilItsElementEnds)
{
    XmlRecorder handler({"/a/", "/a/b/"}, {{1, "/a/b/"}});
    EXPECT_EQ(handler.parse("<a>x<b>y</b></a>"), 1);
    EXPECT_EQ(handler.events(), "(1 ?|?; 1) ?|y; ");
    EXPECT_EQ(handler.texts(), "x|y");
}

TEST(TextSelector, TakesNamesOfOtherScripts)
{
    XmlRecorder handler({"/r\xC3\xA9ponse/\xE5\x90\x8D/"});
    EXPECT_EQ(handler.parse("<r\xC3\xA9ponse><\xE5\x90\x8D>x</\xE5\x90\x8D></r\xC3\xA9ponse>"), 1);
    EXPECT_EQ(handler.texts(), "x");
}

TEST(TextSelector, TakesLongTextsAndNames)
{
    const std::string name(300'000, 'n');
    const std::string text(1'000'000, 't');
    XmlRecorder handler({"/a/b/", ("/a/" + name + "/").c_str()});
    const std::string open = "<a><b>" + text + "&lt;" + text + "<![CDATA[" + text + "]]></b><";
    EXPECT_EQ(handler.parse(open + name + " x='" + text + "'>y</" + name + "></a>"), 1);
    EXPECT_TRUE(narrow(handler.text(0)) == text + "<" + text + text);
    EXPECT_EQ(handler.text(1), "y"_w);
}

TEST(TextSelector, TakesADeclarationOfEncodingForNothing)
{
    for (const char* encoding : {"UTF-8", "UTF-16", "UTF-16BE", "ISO-8859-1", "US-ASCII", "windows-1252", "no-such"}) {
        XmlRecorder handler({"/a/"});
        const std::string declaration = std::string("<?xml version=\"1.0\" encoding=\"") + encoding + "\"?>";
        EXPECT_EQ(handler.parse(declaration + "<a>\xC3\xA9\xE2\x82\xAC</a>"), 1) << encoding;
        EXPECT_EQ(handler.texts(), "\xC3\xA9\xE2\x82\xAC") << encoding;
    }
}

TEST(TextSelector, TakesAByteOrderMarkInFrontAndKeepsOneInside)
{
    XmlRecorder handler({"/a/"});
    EXPECT_EQ(handler.ParseXML(units({0xFEFF}) + "<a>x"_w + units({0xFEFF}) + "</a>"_w), 1);
    EXPECT_EQ(handler.text(0), "x"_w + units({0xFEFF}));
    EXPECT_EQ(handler.ParseXML(units({0xFEFF, 0xFEFF}) + "<a>y</a>"_w), 0);
    EXPECT_EQ(handler.text(0), "x"_w + units({0xFEFF}));
}

}  // namespace
