// The body of a request, piece by piece.
#include "client/FormBody.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "tests/support/Text.h"

namespace {

using wapi::Cdata;
using wapi::FormBody;

std::string text(const CStringT& body)
{
    return narrow(body);
}

TEST(FormBody, IsEmptyAtFirst)
{
    EXPECT_EQ(text(FormBody()), "");
}

TEST(FormBody, KeepsTheOrderOfItsPieces)
{
    FormBody body;
    body.encoded("cmd=", "get").encoded("&cred=", "c/1"_w).literal("&type=", "workspace").encoded("&id=", 12, "x"_w);
    EXPECT_EQ(text(body), "cmd=get&cred=c%2F1&type=workspace&id=12x");
}

TEST(FormBody, EncodesValuesAndNotNames)
{
    FormBody body;
    body.encoded("&x y=<", "&x y=<").encoded("&z=", " &=<>%+/\xC3\xA9\xF0\x9F\x98\x80"_w);
    EXPECT_EQ(text(body), "&x y=<%26x%20y%3D%3C&z=%20%26%3D%3C%3E%25%2B%2F%C3%A9%F0%9F%98%80");
}

TEST(FormBody, TakesAnEmptyValueAndNoValueAlike)
{
    FormBody body;
    body.encoded("a=").encoded("&b=", "").encoded("&c=", CStringT()).literal("").literal();
    EXPECT_EQ(text(body), "a=&b=&c=");
}

TEST(FormBody, ContinuesAValue)
{
    FormBody body;
    body.encoded("&xml=", "<a>");
    body.more("b c"_w, "</a>").more().more(7);
    EXPECT_EQ(text(body), "&xml=%3Ca%3Eb%20c%3C%2Fa%3E7");
}

TEST(FormBody, LeavesLiteralPiecesAsTheyStand)
{
    FormBody body;
    body.literal("cmd=x&y=%20 ", "<a>\xC3\xA9</a>"_w, "&n=", -3);
    EXPECT_EQ(text(body), "cmd=x&y=%20 <a>\xC3\xA9</a>&n=-3");
}

TEST(FormBody, WritesNumbersInDecimal)
{
    FormBody body;
    body.encoded("a=", 0, ",", -1, ",", 1000000);
    body.encoded("&b=", std::numeric_limits<int>::max()).literal("&c=", std::numeric_limits<int>::min());
    EXPECT_EQ(text(body), "a=0%2C-1%2C1000000&b=2147483647&c=-2147483648");
}

TEST(FormBody, EncodesACdataSectionWithItsMarks)
{
    const CStringT name = "a<b>&c"_w;
    FormBody body;
    body.encoded("&xml=", "<n>", Cdata{name}, "</n>");
    EXPECT_EQ(text(body), "&xml=%3Cn%3E%3C%21%5BCDATA%5Ba%3Cb%3E%26c%5D%5D%3E%3C%2Fn%3E");
}

TEST(FormBody, LetsTheEndOfASectionStand)
{
    const CStringT name = "x]]>y"_w;
    FormBody body;
    body.encoded("v=", Cdata{name});
    EXPECT_EQ(text(body), "v=%3C%21%5BCDATA%5Bx%5D%5D%3Ey%5D%5D%3E");
}

TEST(FormBody, TakesLongValues)
{
    FormBody body;
    body.encoded("a=", CStringT(100'000, ' ')).literal("&b=", CStringT(100'000, ' '));
    std::string expected = "a=";
    for (int i = 0; i < 100'000; ++i) expected += "%20";
    EXPECT_TRUE(text(body) == expected + "&b=" + std::string(100'000, ' '));
}

}  // namespace
