// The character sets of a reply.
#include "tests/pvutil/HttpFixture.h"

namespace kzn::test {
namespace {

using namespace std::string_literals;

class HttpCharset : public HttpFixture {
protected:
    // What a reply of that type is read as.
    CStringT read(std::string_view contentType, const std::string& body)
    {
        server.reply(200, contentType, body);
        EXPECT_EQ(post("a=b"), 200);
        EXPECT_EQ(client.GetResponse(), body);
        return client.ResponseContent();
    }

    bool readUtf8(std::string_view contentType, const std::string& body)
    {
        read(contentType, body);
        return client.ResponseUtf8(utf8);
    }

    std::string_view utf8;
};

TEST_F(HttpCharset, Utf8IsTakenWhereNothingElseIsDeclared)
{
    for (const auto* type : {"", "text/xml", "text/xml; charset=utf-8", "text/xml; charset=UTF-8",
                             "text/xml;charset=\"utf-8\"", "text/xml; charset=koi8-r", "text/xml; charset=",
                             "text/xml; charset", "text/xml; boundary=x", "charset=utf-16", "text/xml; xcharset=utf-16",
                             "text/xml; a=\"; charset=utf-16\"", "text/xml; a=\"; charset=utf-16; b\"", ";;;="})
        EXPECT_EQ(read(type, "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"_w) << type;
}

TEST_F(HttpCharset, IllFormedUtf8IsReplaced)
{
    EXPECT_EQ(read("text/xml", "a\xFFz"), "a\xEF\xBF\xBDz"_w);
    EXPECT_EQ(read("text/xml", "a\xC3"), "a\xEF\xBF\xBD"_w);
}

TEST_F(HttpCharset, NameIsReadInAnyCaseAndForm)
{
    for (const auto* type :
         {"text/xml; charset=iso-8859-1", "text/xml; charset=ISO-8859-1", "text/xml;CharSet=\"Iso-8859-1\"",
          "text/xml ; charset = iso-8859-1 ", "text/xml; a=b; charset=iso-8859-1; c=d",
          "text/xml; a=\"x;y\";charset=iso-8859-1", "text/xml; charset=iso-8859-1; charset=utf-16"})
        EXPECT_EQ(read(type, "\xE4"), "\xC3\xA4"_w) << type;
}

TEST_F(HttpCharset, Latin1IsEachByteItsOwnNumber)
{
    std::string bytes;
    CStringT expected;
    for (unsigned int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
        expected += static_cast<CStringT::value_type>(byte);
    }
    EXPECT_EQ(read("text/xml; charset=iso-8859-1", bytes), expected);
}

TEST_F(HttpCharset, Windows1252HasLettersAmongTheControls)
{
    EXPECT_EQ(read("text/xml; charset=windows-1252", "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E"),
              "\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D"_w);
    EXPECT_EQ(read("text/xml; charset=windows-1252", "\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F"),
              "\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178"_w);
    EXPECT_EQ(read("text/xml; charset=windows-1252", "\x81\x8D\x8F\x90\x9D"),
              "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D"_w);
    EXPECT_EQ(read("text/xml; charset=windows-1252", "a\x7F\xA0\xFF"), "a\x7F\xC2\xA0\xC3\xBF"_w);
}

TEST_F(HttpCharset, AsciiHasNothingBeyond)
{
    EXPECT_EQ(read("text/xml; charset=us-ascii", "a\x7F\x80\xC3\xBC\xFFz"),
              "a\x7F\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDz"_w);
}

TEST_F(HttpCharset, Utf16OrderComesFromTheMark)
{
    EXPECT_EQ(read("text/xml; charset=utf-16", "\xFE\xFF\0<\x20\xAC\xD8\x3D\xDE\x00"s),
              "<\xE2\x82\xAC\xF0\x9F\x98\x80"_w);
    EXPECT_EQ(read("text/xml; charset=utf-16", "\xFF\xFE<\0\xAC\x20\x3D\xD8\x00\xDE"s),
              "<\xE2\x82\xAC\xF0\x9F\x98\x80"_w);
    EXPECT_EQ(read("text/xml; charset=utf-16", "\xFF\xFE"s), ""_w);
}

TEST_F(HttpCharset, Utf16OrderComesFromTheFirstBracket)
{
    EXPECT_EQ(read("text/xml; charset=UTF-16", "<\0a\0"s), "<a"_w);
    EXPECT_EQ(read("text/xml; charset=UTF-16", "\0<\0a"s), "<a"_w);
    EXPECT_EQ(read("text/xml; charset=UTF-16", "\0a\0<"s), "a<"_w);
    EXPECT_EQ(read("text/xml; charset=UTF-16", "a\0"s), "\u6100"_w);
}

TEST_F(HttpCharset, Utf16CutInTheMiddleOfAUnit)
{
    EXPECT_EQ(read("text/xml; charset=UTF-16", "\0<\0a\0"s), "<a\xEF\xBF\xBD"_w);
    EXPECT_EQ(read("text/xml; charset=UTF-16", "x"), "\xEF\xBF\xBD"_w);
    EXPECT_EQ(read("text/xml; charset=UTF-16", ""), ""_w);
}

TEST_F(HttpCharset, Utf8MarkIsDropped)
{
    EXPECT_EQ(read("text/xml; charset=utf-8", "\xEF\xBB\xBF<a/>"), "<a/>"_w);
    EXPECT_EQ(read("", "\xEF\xBB\xBF\xEF\xBB\xBF<a/>"), "\xEF\xBB\xBF<a/>"_w);
}

TEST_F(HttpCharset, WellFormedUtf8IsHandedOutAsItCame)
{
    EXPECT_TRUE(readUtf8("text/xml", "\xEF\xBB\xBF<a>\xC3\xA4\xF0\x9F\x98\x80\xEF\xBF\xBD</a>"));
    EXPECT_EQ(utf8, "<a>\xC3\xA4\xF0\x9F\x98\x80\xEF\xBF\xBD</a>");
    EXPECT_TRUE(readUtf8("text/xml; charset=utf-8", ""));
    EXPECT_EQ(utf8, "");
}

TEST_F(HttpCharset, AnythingElseIsNot)
{
    for (const auto* body : {"\xFF", "a\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                             "\xF0\x9F\x98", "\xEF\xBF", "\x80", "\xEF\xBF\xBD\xEF\xBF"}) {
        EXPECT_FALSE(readUtf8("text/xml", body)) << body;
        EXPECT_EQ(utf8, "");
    }
    EXPECT_FALSE(readUtf8("text/xml; charset=us-ascii", "a"));
    EXPECT_FALSE(readUtf8("text/xml; charset=utf-16", "\0a"s));
    EXPECT_EQ(utf8, "");
}

}  // namespace
}  // namespace kzn::test
