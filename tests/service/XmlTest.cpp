#include <gmock/gmock.h>

#include <stdexcept>

#include "service/base/Refusal.h"
#include "service/http/Form.h"
#include "service/script/Selection.h"
#include "service/xml/Reader.h"
#include "service/xml/Writer.h"
#include "tests/service/Work.h"

namespace service::test {

namespace {

using testing::ElementsAre;

// The text of an element as it is written.
std::string written(const std::string& text)
{
    std::string out = "before";
    xml::append(out, xml::Node("t", text), "behind");
    EXPECT_TRUE(out.starts_with("before<t>") && out.ends_with("</t>behind")) << out;
    constexpr std::size_t kBegin = std::string_view("before<t>").size();
    constexpr std::size_t kEnd = std::string_view("</t>behind").size();
    return out.substr(kBegin, out.size() - kBegin - kEnd);
}

TEST(Xml, ReadsTextInOnePieceFromAllItsParts)
{
    const xml::Node node =
        xml::read("<a>x<b>inner</b>&lt;<![CDATA[<&]]>\xC3\xA4&#x1F600;<!-- no --> y</a>", xml::Texts::plain);
    EXPECT_EQ(node.text, "x<<&\xC3\xA4\xF0\x9F\x98\x80 y");
    EXPECT_EQ(node.textAt("b"), "inner");
}

// Why a document is refused; empty where it is read.
std::string refusalOf(const std::string& document)
{
    try {
        xml::read(document, xml::Texts::plain);
        return {};
    } catch (const Refusal& refusal) {
        EXPECT_STREQ(refusal.exceptionID(), "KZN:BadXml");
        return refusal.what();
    }
}

constexpr const char* kIllFormed[] = {
    // names
    "<x\xC3\x97/>",
    "<a\xC3\xB7>1</a\xC3\xB7>",
    "<a><x\xC3\x97>1</x\xC3\x97></a>",
    "<-a/>",
    "<.a/>",
    "<1/>",
    "<a\xE2\x82\xAC/>",
    "<\xF0\x9F\x98\x80/>",
    "<a$/>",
    "<a;b/>",
    "<a\x7F/>",
    "<a b\xC3\x97=\"1\"/>",
    "<a 1=\"1\"/>",
    // tags
    "< a/>",
    "<a/ >",
    "<a / >",
    "<a></ a>",
    "<a></a b>",
    "<a></a/>",
    "<a b/>",
    "<a b=/>",
    "<a b=\"1\"c=\"2\"/>",
    "<a \"1\"/>",
    "<a =\"1\"/>",
    "<a b==\"1\"/>",
    "<a b=\"\" b=\"\"/>",
    "<a b=\"1\" c=\"2\" b=\"3\"/>",
    "<a b=\"&#0;\"/>",
    "<a></A>",
    "<a><b></a></b>",
    "<></>",
    "<a>",
    "<a",
    "</a>",
    // texts and references
    "<a>&#;</a>",
    "<a>&#x;</a>",
    "<a>&#X41;</a>",
    "<a>& amp;</a>",
    "<a>&amp</a>",
    "<a>&nbsp;</a>",
    "<a>&#xD800;</a>",
    "<a>&#x110000;</a>",
    "<a>\xEF\xBF\xBF</a>",
    "<a>\x1B</a>",
    "<a>\xED\xA0\x80</a>",
    "<a>\xC0\x80</a>",
    "<a>\xF4\x90\x80\x80</a>",
    "<a>\xC3</a>",
    "<a>]]></a>",
    "<a/>&#32;",
    "<a/>&amp;",
    "<![CDATA[ ]]><a/>",
    // what is neither
    "<a><!-- -- --></a>",
    "<a><!-- ---></a>",
    "<a><!- a --></a>",
    "<a><![cdata[a]]></a>",
    "<a><![CDATA [a]]></a>",
    "<a><? b?></a>",
    "<a><? ?></a>",
    "<a><?b</a>",
    "<a><?xml version=\"1.0\"?></a>",
    " <?xml version=\"1.0\"?><a/>",
    "<?xml version='1.0'?><?xml version='1.0'?><a/>",
    "<?xml?><a/>",
    "<?xml version=\"1.0\" standalone=\"maybe\"?><a/>",
    "<?xml encoding=\"UTF-8\" version=\"1.0\"?><a/>",
    "<a/><a/>",
    "<a/>x",
    "x<a/>",
    "",
    " ",
};

TEST(Xml, IsRefusedWhereItIsIllFormed)
{
    for (const char* const document : kIllFormed) {
        EXPECT_THAT(refusalOf(document), testing::StartsWith("the XML is not well-formed: ")) << document;
    }
    EXPECT_THAT(refusalOf(std::string("<a>\0</a>", 8)), testing::StartsWith("the XML is not well-formed: "));
}

TEST(Xml, HasNoDocumentType)
{
    for (const std::string document : {"<!DOCTYPE a><a/>", "<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>",
                                       "<!DOCTYPE a SYSTEM \"file:///etc/hostname\"><a/>"}) {
        EXPECT_EQ(refusalOf(document), "the XML holds a declaration, which is not accepted") << document;
    }
}

TEST(Xml, TakesWhatIsWellFormed)
{
    for (const std::string document :
         {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>\n", "<a b = '1'\tc=\">\"\n/>", "<a  ></a\n>",
          "<_.-:\xC3\xA4\xE4\xB8\xAD/>", "<a><?b c?><!----><![CDATA[]]></a><!-- - -->", "\xEF\xBB\xBF<a/>"}) {
        EXPECT_EQ(refusalOf(document), "") << document;
    }
    // Whatever a document says of its bytes, they are UTF-8.
    EXPECT_EQ(xml::read("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA4</a>", xml::Texts::plain).text,
              "\xC3\xA4");
}

TEST(Xml, EndsAtADepthOfOneHundred)
{
    const auto nested = [](int depth) {
        std::string document;
        for (int i = 0; i < depth; ++i) document += "<a>";
        for (int i = 0; i < depth; ++i) document += "</a>";
        return document;
    };
    EXPECT_EQ(refusalOf(nested(100)), "");
    try {
        xml::read(nested(101), xml::Texts::plain);
        ADD_FAILURE() << "it was read";
    } catch (const Refusal& refusal) {
        EXPECT_STREQ(refusal.exceptionID(), "KZN:LimitExceeded");
        EXPECT_STREQ(refusal.what(), "the XML is nested deeper than 100");
    }
}

TEST(Xml, TenTimesTheAttributesAreTenTimesTheWork)
{
    const auto withAttributes = [](int count) {
        std::string document = "<a";
        for (int i = 0; i < count; ++i) document += " a" + std::to_string(i) + "=\"v\"";
        return document + "/>";
    };
    const std::string some = withAttributes(2'000);
    const std::string many = withAttributes(20'000);
    EXPECT_EQ(xml::read(many, xml::Texts::plain).attributes.size(), 20'000U);
    const double few = workOf([&] { xml::read(some, xml::Texts::plain); });
    EXPECT_LT(workOf([&] { xml::read(many, xml::Texts::plain); }), kTenfold * few);
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

TEST(Xml, WritesNoElementThatXmlCannotName)
{
    std::string out;
    for (const std::string name : {"", "x\xC3\x97", "1", "a b", "a/", "a>", "-a", "\xFF", "a\xE2\x82\xAC"}) {
        EXPECT_THROW(xml::append(out, xml::Node(name)), std::logic_error) << name;
    }
    for (const std::string name : {"a", "_a-1.b:c", "\xC3\xA4\xE4\xB8\xAD"}) {
        out.clear();
        xml::append(out, xml::Node(name));
        EXPECT_EQ(out, "<" + name + "></" + name + ">");
    }
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
