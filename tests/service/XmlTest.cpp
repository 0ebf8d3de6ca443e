#include <gmock/gmock.h>

#include "service/base/Refusal.h"
#include "service/http/Form.h"
#include "service/script/Selection.h"
#include "service/xml/Reader.h"
#include "service/xml/Writer.h"

namespace service::test {

namespace {

using testing::ElementsAre;

std::string written(const std::string& text)
{
    std::string out;
    xml::appendEscaped(out, text);
    return out;
}

TEST(Xml, ReadsTextInOnePieceFromAllItsParts)
{
    const xml::Node node =
        xml::read("<a>x<b>inner</b>&lt;<![CDATA[<&]]>\xC3\xA4&#x1F600;<!-- no --> y</a>", xml::Texts::plain);
    EXPECT_EQ(node.text, "x<<&\xC3\xA4\xF0\x9F\x98\x80 y");
    EXPECT_EQ(node.textAt("b"), "inner");
}

TEST(Xml, DecodesLiteralTextsAfterTheMarkupWasRead)
{
    const xml::Node node =
        xml::read("<a><b>%3Cc%3E%26%25</b><d><![CDATA[%5D%5D%3E]]></d></a>", xml::Texts::percentEncoded);
    EXPECT_EQ(node.textAt("b"), "<c>&%");
    EXPECT_EQ(node.textAt("d"), "]]>");
    EXPECT_THROW(xml::read("<a>%</a>", xml::Texts::percentEncoded), Refusal);
    EXPECT_THROW(xml::read("<a>%FF</a>", xml::Texts::percentEncoded), Refusal);
}

TEST(Xml, WritesNothingThatXmlCannotCarry)
{
    EXPECT_EQ(written("a<b>&\"'"), "a&lt;b&gt;&amp;\"'");
    EXPECT_EQ(written(std::string("\x01\x00\x1F", 3)), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(written("\xFF\xC3"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(written("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(written("\xEF\xBF\xBF"), "\xEF\xBF\xBD");
    EXPECT_EQ(written("\t\n\r\xF0\x9F\x98\x80"), "\t\n&#13;\xF0\x9F\x98\x80");
}

TEST(Form, ReadsAValueToTheNextAmpersand)
{
    const http::Form form = http::Form::fromUrlEncoded("cmd=execute&xml=<a b=\"=\">x/y=z</a>&cred=c+d%2B&empty=&flag");
    EXPECT_EQ(form.text("cmd"), "execute");
    EXPECT_EQ(form.text("xml"), "<a b=\"=\">x/y=z</a>");
    EXPECT_EQ(form.xml("xml").text, "x/y=z");
    EXPECT_EQ(form.xml("xml").attribute("b"), "=");
    EXPECT_EQ(form.text("cred"), "c d+");
    EXPECT_TRUE(form.has("empty"));
    EXPECT_TRUE(form.has("flag"));
    EXPECT_FALSE(form.has("none"));
    EXPECT_THROW(form.required("empty"), Refusal);
}

TEST(Selection, PrunesToTheUnionOfItsPaths)
{
    xml::Node node = xml::read("<o><a>1</a><b>t<c>2</c><d>3</d></b><bb>4</bb><a>5</a></o>", xml::Texts::plain);
    script::Selection("a:b/c", "o").prune(node);
    std::string text;
    xml::append(text, node);
    EXPECT_EQ(text, "<o><a>1</a><b><c>2</c></b><a>5</a></o>");
}

TEST(Selection, KnowsWhatItTouches)
{
    const script::Selection selection("o/a/b:c", "o");
    EXPECT_TRUE(selection.touches("a"));
    EXPECT_TRUE(selection.touches("a/b/d"));
    EXPECT_TRUE(selection.touches("c"));
    EXPECT_FALSE(selection.touches("a/bb"));
    EXPECT_FALSE(selection.touches("d"));
    EXPECT_TRUE(script::Selection("*", "o").touches("d"));
}

TEST(Node, FindsEveryTextAtAPathButTheAliases)
{
    xml::Node node = xml::read("<o><a><b>1</b></a><a><b>2</b><b>3</b></a></o>", xml::Texts::plain);
    EXPECT_THAT(xml::textsAt(node, "a/b"), ElementsAre("1", "2", "3"));
    node.children.front().addAlias("b", "4");
    EXPECT_TRUE(xml::anyTextEquals(node, "a/b", "4"));
    EXPECT_FALSE(xml::anyTextEquals(node, "a/b", "5"));
    EXPECT_THAT(xml::textsAt(node, "a/b"), ElementsAre("1", "2", "3"));
    std::string text;
    xml::append(text, node);
    EXPECT_EQ(text, "<o><a><b>1</b></a><a><b>2</b><b>3</b></a></o>");
}

}  // namespace

}  // namespace service::test
