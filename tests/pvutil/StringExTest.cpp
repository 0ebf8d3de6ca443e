// The conversions between UTF-8 and UTF-16, against texts worked out by hand, and what makes a text safe in XML.
#include "pvutil/StringEx.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/pvutil/Units.h"
#include "tests/pvutil/XmlRecorder.h"

namespace {

using kzn::pvutil::stringex::CharT;
using kzn::pvutil::stringex::FromUtf8;
using kzn::pvutil::stringex::ToUtf8;
using kzn::pvutil::stringex::XmlText;

constexpr unsigned kFffd = 0xFFFD;

// Where the block writers of both directions fill up, once and twice.
std::vector<std::size_t> lengthsAroundBlocks()
{
    std::vector<std::size_t> lengths;
    for (std::size_t length = 1016; length <= 1032; ++length) lengths.push_back(length);
    for (std::size_t length = 2040; length <= 2056; ++length) lengths.push_back(length);
    return lengths;
}

// A second road to the same bytes: by division, where the library shifts.
void appendPoint(std::string& utf8, CStringT& wide, unsigned point)
{
    const auto byte = [&](unsigned value) { utf8 += static_cast<char>(value); };
    if (point < 0x10000) {
        wide += static_cast<CharT>(point);
    } else {
        wide += static_cast<CharT>((point - 0x10000) / 1024 + 55296);
        wide += static_cast<CharT>((point - 0x10000) % 1024 + 56320);
    }
    if (point < 128) {
        byte(point);
    } else if (point < 2048) {
        byte(192 + point / 64);
    } else if (point < 65536) {
        byte(224 + point / 4096);
        byte(128 + point / 64 % 64);
    } else {
        byte(240 + point / 262144);
        byte(128 + point / 4096 % 64);
        byte(128 + point / 64 % 64);
    }
    if (point >= 128) byte(128 + point % 64);
}

struct Pair {
    std::string utf8;
    CStringT wide;
};

class WellFormed : public testing::TestWithParam<Pair> {};

TEST_P(WellFormed, ComesFromUtf8)
{
    EXPECT_EQ(FromUtf8(GetParam().utf8), GetParam().wide);
}

TEST_P(WellFormed, GoesToUtf8)
{
    EXPECT_EQ(ToUtf8(GetParam().wide), GetParam().utf8);
}

INSTANTIATE_TEST_SUITE_P(StringEx, WellFormed,
                         testing::Values(Pair{"", units({})}, Pair{"A", units({0x41})}, Pair{"\x7F", units({0x7F})},
                                         Pair{"\xC2\x80", units({0x80})}, Pair{"\xDF\xBF", units({0x7FF})},
                                         Pair{"\xE0\xA0\x80", units({0x800})}, Pair{"\xED\x9F\xBF", units({0xD7FF})},
                                         Pair{"\xEE\x80\x80", units({0xE000})}, Pair{"\xEF\xBB\xBF", units({0xFEFF})},
                                         Pair{"\xEF\xBF\xBD", units({0xFFFD})}, Pair{"\xEF\xBF\xBE", units({0xFFFE})},
                                         Pair{"\xEF\xBF\xBF", units({0xFFFF})},
                                         Pair{"\xF0\x90\x80\x80", units({0xD800, 0xDC00})},
                                         Pair{"\xF0\x9F\x98\x80", units({0xD83D, 0xDE00})},
                                         Pair{"\xF3\xBF\xBF\xBF", units({0xDBBF, 0xDFFF})},
                                         Pair{"\xF4\x8F\xBF\xBF", units({0xDBFF, 0xDFFF})},
                                         Pair{"a\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E z",
                                              units({0x61, 0xE9, 0x20AC, 0xD834, 0xDD1E, 0x20, 0x7A})},
                                         Pair{std::string("a\0b\0", 4), units({0x61, 0, 0x62, 0})}));

class IllFormedUtf8 : public testing::TestWithParam<Pair> {};

TEST_P(IllFormedUtf8, GivesOneReplacementForEachMaximalBeginning)
{
    EXPECT_EQ(FromUtf8(GetParam().utf8), GetParam().wide);
}

TEST_P(IllFormedUtf8, GivesTheSameInTheMiddleOfText)
{
    EXPECT_EQ(FromUtf8("<" + GetParam().utf8 + ">"), units({'<'}) + GetParam().wide + units({'>'}));
}

INSTANTIATE_TEST_SUITE_P(ContinuationAlone, IllFormedUtf8,
                         testing::Values(Pair{"\x80", units({kFffd})}, Pair{"\xBF", units({kFffd})},
                                         Pair{"\x80\xBF", units({kFffd, kFffd})}));

INSTANTIATE_TEST_SUITE_P(OverLong, IllFormedUtf8,
                         testing::Values(Pair{"\xC0\x80", units({kFffd, kFffd})},
                                         Pair{"\xC1\xBF", units({kFffd, kFffd})},
                                         Pair{"\xE0\x80\x80", units({kFffd, kFffd, kFffd})},
                                         Pair{"\xE0\x9F\xBF", units({kFffd, kFffd, kFffd})},
                                         Pair{"\xF0\x80\x80\x80", units({kFffd, kFffd, kFffd, kFffd})},
                                         Pair{"\xF0\x8F\xBF\xBF", units({kFffd, kFffd, kFffd, kFffd})},
                                         Pair{"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82"
                                              "A",
                                              units({kFffd, kFffd, kFffd, kFffd, kFffd, kFffd, kFffd, kFffd, 'A'})}));

INSTANTIATE_TEST_SUITE_P(SurrogatesAndBeyond, IllFormedUtf8,
                         testing::Values(Pair{"\xED\xA0\x80", units({kFffd, kFffd, kFffd})},
                                         Pair{"\xED\xBF\xBF", units({kFffd, kFffd, kFffd})},
                                         Pair{"\xED\xA0\xBD\xED\xB8\x80",
                                              units({kFffd, kFffd, kFffd, kFffd, kFffd, kFffd})},
                                         Pair{"\xED\xAF"
                                              "A",
                                              units({kFffd, kFffd, 'A'})},
                                         Pair{"\xF4\x90\x80\x80", units({kFffd, kFffd, kFffd, kFffd})},
                                         Pair{"\xF5\x80\x80\x80", units({kFffd, kFffd, kFffd, kFffd})},
                                         Pair{"\xF7\xBF\xBF\xBF", units({kFffd, kFffd, kFffd, kFffd})},
                                         Pair{"\xF8\x88\x80\x80\x80", units({kFffd, kFffd, kFffd, kFffd, kFffd})},
                                         Pair{"\xFE\xFF", units({kFffd, kFffd})},
                                         Pair{"\xF4\x91\x92\x93\xFF"
                                              "A\x80\xBF"
                                              "B",
                                              units({kFffd, kFffd, kFffd, kFffd, kFffd, 'A', kFffd, kFffd, 'B'})}));

INSTANTIATE_TEST_SUITE_P(BrokenOff, IllFormedUtf8,
                         testing::Values(Pair{"\xC2", units({kFffd})},
                                         Pair{"\xDF"
                                              "A",
                                              units({kFffd, 'A'})},
                                         Pair{"\xE2", units({kFffd})},
                                         Pair{"\xE2"
                                              "A",
                                              units({kFffd, 'A'})},
                                         Pair{"\xE2\x82", units({kFffd})},
                                         Pair{"\xE2\x82"
                                              "A",
                                              units({kFffd, 'A'})},
                                         Pair{"\xE0\xA0", units({kFffd})}, Pair{"\xED\x9F", units({kFffd})},
                                         Pair{"\xF0", units({kFffd})},
                                         Pair{"\xF0"
                                              "A",
                                              units({kFffd, 'A'})},
                                         Pair{"\xF0\x9F", units({kFffd})},
                                         Pair{"\xF0\x9F"
                                              "A",
                                              units({kFffd, 'A'})},
                                         Pair{"\xF0\x9F\x98", units({kFffd})},
                                         Pair{"\xF0\x9F\x98"
                                              "A",
                                              units({kFffd, 'A'})},
                                         Pair{"\xF4\x8F\xBF", units({kFffd})},
                                         Pair{"\xE1\xA0\xC0", units({kFffd, kFffd})},
                                         Pair{"\xE2\x82\xE2\x82\xAC", units({kFffd, 0x20AC})},
                                         Pair{"\xF0\x9F\x98\xF0\x9F\x98\x80", units({kFffd, 0xD83D, 0xDE00})},
                                         Pair{"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF"
                                              "A",
                                              units({kFffd, kFffd, kFffd, kFffd, 'A'})},
                                         Pair{"a\xF1\x80\x80\xE1\x80\xC2"
                                              "b\x80"
                                              "c\x80\xBF"
                                              "d",
                                              units({'a', kFffd, kFffd, kFffd, 'b', kFffd, 'c', kFffd, kFffd, 'd'})}));

class LoneSurrogates : public testing::TestWithParam<Pair> {};

TEST_P(LoneSurrogates, BecomeReplacements)
{
    EXPECT_EQ(ToUtf8(GetParam().wide), GetParam().utf8);
}

INSTANTIATE_TEST_SUITE_P(StringEx, LoneSurrogates,
                         testing::Values(Pair{"\xEF\xBF\xBD", units({0xD800})}, Pair{"\xEF\xBF\xBD", units({0xDBFF})},
                                         Pair{"\xEF\xBF\xBD", units({0xDC00})}, Pair{"\xEF\xBF\xBD", units({0xDFFF})},
                                         Pair{"\xEF\xBF\xBD"
                                              "A",
                                              units({0xD83D, 'A'})},
                                         Pair{"A\xEF\xBF\xBD", units({'A', 0xDE00})},
                                         Pair{"\xEF\xBF\xBD\xEF\xBF\xBD", units({0xDC00, 0xD800})},
                                         Pair{"\xEF\xBF\xBD\xEF\xBF\xBD", units({0xDC00, 0xDFFF})},
                                         Pair{"\xEF\xBF\xBD\xEF\xBF\xBD", units({0xD800, 0xDBFF})},
                                         Pair{"\xEF\xBF\xBD\xF0\x9F\x98\x80", units({0xD83D, 0xD83D, 0xDE00})},
                                         Pair{"\xF0\x9F\x98\x80\xEF\xBF\xBD", units({0xD83D, 0xDE00, 0xDE00})},
                                         Pair{"\xEF\xBF\xBD\xEE\x80\x80", units({0xDBFF, 0xE000})},
                                         Pair{"\xED\x9F\xBF\xEF\xBF\xBD", units({0xD7FF, 0xDC00})}));

TEST(StringEx, ConvertsEveryCharacterOfUnicode)
{
    std::string utf8;
    CStringT wide;
    for (unsigned point = 0; point <= 0x10FFFF; ++point)
        if (point < 0xD800 || point > 0xDFFF) appendPoint(utf8, wide, point);
    ASSERT_EQ(wide.size(), 0xF800 + 2 * 0x100000U);
    EXPECT_TRUE(FromUtf8(utf8) == wide);
    EXPECT_TRUE(ToUtf8(wide) == utf8);
}

TEST(StringEx, ConvertsAnyCharacterWhereABlockEnds)
{
    for (const std::size_t length : lengthsAroundBlocks()) {
        for (const unsigned point : {0x7AU, 0xE9U, 0x20ACU, 0x1F600U}) {
            std::string utf8(length, 'a');
            CStringT wide(length, CharT{'a'});
            appendPoint(utf8, wide, point);
            utf8 += 'b';
            wide += CharT{'b'};
            ASSERT_EQ(FromUtf8(utf8), wide) << length << " units before " << point;
            ASSERT_EQ(ToUtf8(wide), utf8) << length << " units before " << point;
        }
    }
}

// Letters are converted many at a time: none of them may be taken for one where another stands among them.
TEST(StringEx, ConvertsOneOtherCharacterAnywhereAmongLetters)
{
    for (std::size_t before = 0; before < 70; ++before) {
        for (const unsigned point : {0x7FU, 0x80U, 0x7FFU, 0xFFFFU, 0x10FFFFU}) {
            std::string utf8(before, 'a');
            CStringT wide(before, CharT{'a'});
            appendPoint(utf8, wide, point);
            utf8.append(70 - before, 'b');
            wide.append(70 - before, CharT{'b'});
            ASSERT_EQ(FromUtf8(utf8), wide) << before << " units before " << point;
            ASSERT_EQ(ToUtf8(wide), utf8) << before << " units before " << point;
        }
    }
}

TEST(StringEx, BreaksOffWhereABlockEnds)
{
    for (const std::size_t length : lengthsAroundBlocks()) {
        const std::string utf8(length, 'a');
        const CStringT wide(length, CharT{'a'});
        ASSERT_EQ(FromUtf8(utf8 + "\xF0\x9F\x98"), wide + units({kFffd})) << length;
        ASSERT_EQ(ToUtf8(wide + units({0xD83D})), utf8 + "\xEF\xBF\xBD") << length;
    }
}

TEST(StringEx, ConvertsLongTexts)
{
    constexpr std::size_t kTimes = 1'000'000;
    std::string utf8;
    CStringT wide;
    for (std::size_t i = 0; i < kTimes; ++i) {
        utf8 += "k\xC3\xA9\xF0\x9F\x98\x80";
        wide += units({'k', 0xE9, 0xD83D, 0xDE00});
    }
    EXPECT_TRUE(FromUtf8(utf8) == wide);
    EXPECT_TRUE(ToUtf8(wide) == utf8);
}

TEST(StringEx, ReadsNothingBehindTheEnd)
{
    const std::string storage = "\xF0\x9F\x98\x80";
    for (std::size_t length = 1; length < storage.size(); ++length)
        EXPECT_EQ(FromUtf8(std::string_view(storage).substr(0, length)), units({kFffd})) << length;
}

// What a reader of the document finds where the text was put.
CStringT readBack(const CStringT& safe)
{
    XmlRecorder reader({"/a/"});
    EXPECT_EQ(reader.ParseXML("<a>"_w + safe + "</a>"_w), 1);
    return reader.text(0);
}

TEST(XmlText, ReplacesWhatWouldBeMarkup)
{
    EXPECT_EQ(XmlText("a & b < c > d"_w), "a &amp; b &lt; c &gt; d"_w);
    EXPECT_EQ(XmlText("&amp;]]></a><b/>"_w), "&amp;amp;]]&gt;&lt;/a&gt;&lt;b/&gt;"_w);
    EXPECT_EQ(XmlText("&"_w), "&amp;"_w);
    EXPECT_EQ(XmlText("\"'`=%+#"_w), "\"'`=%+#"_w);
}

TEST(XmlText, DropsWhatADocumentCannotCarry)
{
    for (unsigned control = 0; control < 0x20; ++control) {
        const bool stays = control == '\t' || control == '\n' || control == '\r';
        EXPECT_EQ(XmlText(units({'a', control, 'b'})), stays ? units({'a', control, 'b'}) : "ab"_w) << control;
    }
    EXPECT_EQ(XmlText(units({'a', 0xFFFE, 'b', 0xFFFF})), "ab"_w);
    EXPECT_EQ(XmlText(units({0xD83D})), CStringT());
    EXPECT_EQ(XmlText(units({'a', 0xDE00, 'b', 0xD83D})), "ab"_w);
    EXPECT_EQ(XmlText(units({0xD83D, '&', 0xDE00})), "&amp;"_w);
    EXPECT_EQ(XmlText(units({0xD83D, 0xD83D, 0xDE00, 0xDE00})), units({0xD83D, 0xDE00}));
}

TEST(XmlText, KeepsEveryOtherCharacter)
{
    const CStringT ends = units({0x20, 0x7F, 0x80, 0x9F, 0xA0, 0xD7FF, 0xE000, 0xFFFC, 0xFFFD});
    EXPECT_EQ(XmlText(ends), ends);
    const CStringT astral = units({0xD800, 0xDC00, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF});
    EXPECT_EQ(XmlText(astral), astral);
}

TEST(XmlText, OfNothingIsNothing)
{
    EXPECT_EQ(XmlText({}), CStringT());
    EXPECT_EQ(readBack(XmlText({})), CStringT());
}

TEST(XmlText, IsReadBackAsItWas)
{
    for (const char* text : {"a & b < c > d", "]]>", "<![CDATA[x]]>", "&#x26;&lt;", "</a>", "<?x?><!--", " \t\n ",
                             "\"quoted\" 'too'", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBD"})
        EXPECT_EQ(narrow(readBack(XmlText(wide(text)))), text);
    EXPECT_EQ(narrow(readBack(XmlText("one\r\ntwo\rthree"_w))), "one\ntwo\nthree") << "every reader sees line feeds";
}

TEST(XmlText, TakesEveryUnitThereIs)
{
    CStringT all;
    CStringT kept;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        all += static_cast<CharT>(unit);
        const bool control = unit < 0x20 && unit != '\t' && unit != '\n';
        const bool surrogate = unit >= 0xD800 && unit <= 0xDFFF;
        if (control || unit > 0xFFFD) continue;
        // The last high surrogate meets the first low one, and they are a pair.
        if (!surrogate || unit == 0xDBFF || unit == 0xDC00) kept += static_cast<CharT>(unit);
    }
    std::erase(all, CharT{'\r'});
    EXPECT_TRUE(readBack(XmlText(all)) == kept);
}

TEST(XmlText, IsMadeOfLongTexts)
{
    CStringT text;
    CStringT safe;
    for (int times = 0; times < 300'000; ++times) {
        text += units({'<', 0x1, 0xD83D, 0xDE00, '&', 0xDE00});
        safe += "&lt;"_w + units({0xD83D, 0xDE00}) + "&amp;"_w;
    }
    EXPECT_TRUE(XmlText(text) == safe);
}

}  // namespace
