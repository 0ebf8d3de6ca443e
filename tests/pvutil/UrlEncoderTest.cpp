// Percent-encoding, byte by byte against a table.
#include "pvutil/UrlEncoder.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/pvutil/Units.h"

namespace {

using kzn::pvutil::URLEncoder;
using kzn::pvutil::stringex::CharT;

// Sixteen bytes a row, from 0x00 to 0xFF.
constexpr std::array<const char*, 16> kRows = {
    "%00%01%02%03%04%05%06%07%08%09%0A%0B%0C%0D%0E%0F",
    "%10%11%12%13%14%15%16%17%18%19%1A%1B%1C%1D%1E%1F",
    "%20%21%22%23%24%25%26%27%28%29%2A%2B%2C-.%2F",
    "0123456789%3A%3B%3C%3D%3E%3F",
    "%40ABCDEFGHIJKLMNO",
    "PQRSTUVWXYZ%5B%5C%5D%5E_",
    "%60abcdefghijklmno",
    "pqrstuvwxyz%7B%7C%7D~%7F",
    "%80%81%82%83%84%85%86%87%88%89%8A%8B%8C%8D%8E%8F",
    "%90%91%92%93%94%95%96%97%98%99%9A%9B%9C%9D%9E%9F",
    "%A0%A1%A2%A3%A4%A5%A6%A7%A8%A9%AA%AB%AC%AD%AE%AF",
    "%B0%B1%B2%B3%B4%B5%B6%B7%B8%B9%BA%BB%BC%BD%BE%BF",
    "%C0%C1%C2%C3%C4%C5%C6%C7%C8%C9%CA%CB%CC%CD%CE%CF",
    "%D0%D1%D2%D3%D4%D5%D6%D7%D8%D9%DA%DB%DC%DD%DE%DF",
    "%E0%E1%E2%E3%E4%E5%E6%E7%E8%E9%EA%EB%EC%ED%EE%EF",
    "%F0%F1%F2%F3%F4%F5%F6%F7%F8%F9%FA%FB%FC%FD%FE%FF",
};

std::string bytesOfRow(std::size_t row)
{
    std::string bytes;
    for (std::size_t column = 0; column < 16; ++column) bytes += static_cast<char>(row * 16 + column);
    return bytes;
}

CStringT widened(const std::string& ascii)
{
    return CStringT(ascii.begin(), ascii.end());
}

CStringT encoded(const CStringT& text)
{
    CStringT body;
    URLEncoder::append(body, text);
    return body;
}

TEST(UrlEncoder, EncodesEveryByteAsTheTableSays)
{
    for (std::size_t row = 0; row < kRows.size(); ++row) EXPECT_EQ(URLEncoder::EncodeA(bytesOfRow(row)), kRows[row]);
}

TEST(UrlEncoder, EncodesEveryByteAlone)
{
    for (std::size_t row = 0; row < kRows.size(); ++row) {
        std::string alone;
        for (const char byte : bytesOfRow(row)) alone += URLEncoder::EncodeA(std::string(1, byte));
        EXPECT_EQ(alone, kRows[row]);
    }
}

TEST(UrlEncoder, AppendsEveryAsciiCharacterWide)
{
    for (std::size_t row = 0; row < 8; ++row) {
        EXPECT_EQ(encoded(widened(bytesOfRow(row))), widened(kRows[row]));
        CStringT body;
        URLEncoder::append(body, std::string_view(bytesOfRow(row)));
        EXPECT_EQ(body, widened(kRows[row]));
    }
}

TEST(UrlEncoder, EncodesNothingAsNothing)
{
    EXPECT_EQ(URLEncoder::EncodeA(""), "");
    EXPECT_EQ(encoded(CStringT()), CStringT());
}

TEST(UrlEncoder, EncodesWideTextByItsUtf8Bytes)
{
    EXPECT_EQ(encoded(units({0x80})), widened("%C2%80"));
    EXPECT_EQ(encoded(units({0xE9})), widened("%C3%A9"));
    EXPECT_EQ(encoded(units({0x7FF, 0x800})), widened("%DF%BF%E0%A0%80"));
    EXPECT_EQ(encoded(units({0x20AC})), widened("%E2%82%AC"));
    EXPECT_EQ(encoded(units({0xFFFF})), widened("%EF%BF%BF"));
    EXPECT_EQ(encoded(units({0xD83D, 0xDE00})), widened("%F0%9F%98%80"));
    EXPECT_EQ(encoded(units({0xDBFF, 0xDFFF})), widened("%F4%8F%BF%BF"));
    EXPECT_EQ(encoded(units({'a', ' ', 0, '&', '='})), widened("a%20%00%26%3D"));
}

TEST(UrlEncoder, EncodesALoneSurrogateAsReplacement)
{
    EXPECT_EQ(encoded(units({0xD83D})), widened("%EF%BF%BD"));
    EXPECT_EQ(encoded(units({0xDE00, 'x'})), widened("%EF%BF%BDx"));
    EXPECT_EQ(encoded(units({0xDE00, 0xD83D})), widened("%EF%BF%BD%EF%BF%BD"));
}

TEST(UrlEncoder, LeavesWhatTheBodyHoldsAlone)
{
    CStringT body = widened("cmd=get&id=");
    URLEncoder::append(body, widened("a b"));
    URLEncoder::append(body, std::string_view("/c"));
    EXPECT_EQ(body, widened("cmd=get&id=a%20b%2Fc"));
}

TEST(UrlEncoder, EncodesWhereABlockEnds)
{
    for (std::size_t length = 1016; length <= 1032; ++length) {
        const std::string plain(length, 'a');
        EXPECT_EQ(URLEncoder::EncodeA(plain + "&b"), plain + "%26b") << length;
        EXPECT_EQ(encoded(widened(plain) + units({0xD83D, 0xDE00, 'b'})), widened(plain + "%F0%9F%98%80b")) << length;
        EXPECT_EQ(encoded(widened(plain) + units({0xD83D})), widened(plain + "%EF%BF%BD")) << length;
    }
}

TEST(UrlEncoder, EncodesLongTexts)
{
    constexpr std::size_t kTimes = 500'000;
    std::string expected;
    for (std::size_t i = 0; i < kTimes; ++i) expected += "%25";
    EXPECT_TRUE(URLEncoder::EncodeA(std::string(kTimes, '%')) == expected);
    EXPECT_TRUE(encoded(CStringT(kTimes, CharT{'%'})) == widened(expected));
}

}  // namespace
