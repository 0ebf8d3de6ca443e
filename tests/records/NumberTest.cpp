// Numbers read from texts.
#include "records/Number.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/Text.h"

namespace {

struct Case {
    const char* text;
    int number;
};

constexpr int kMax = 2147483647;
constexpr int kMin = -kMax - 1;

class Number : public testing::TestWithParam<Case> {};

TEST_P(Number, IsRead)
{
    EXPECT_EQ(toInt(wide(GetParam().text)), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Plain, Number,
                         testing::Values(Case{"0", 0}, Case{"7", 7}, Case{"10", 10}, Case{"-7", -7}, Case{"+7", 7},
                                         Case{"007", 7}, Case{"-0", 0}, Case{"3600", 3600}, Case{"010", 10}));

INSTANTIATE_TEST_SUITE_P(Blanks, Number,
                         testing::Values(Case{" 7", 7}, Case{"\t\n\v\f\r 7", 7}, Case{"  -7  ", -7}, Case{"7 8", 7},
                                         Case{"- 7", 0}, Case{"+ 7", 0}, Case{"   ", 0},
                                         Case{"\xC2\xA0"
                                              "7",
                                              0},
                                         Case{"\xE3\x80\x80"
                                              "7",
                                              0},
                                         Case{"\b7", 0}));

INSTANTIATE_TEST_SUITE_P(Letters, Number,
                         testing::Values(Case{"", 0}, Case{"7x", 7}, Case{"abc", 0}, Case{"x7", 0}, Case{"0x10", 0},
                                         Case{"1e3", 1}, Case{"7.9", 7}, Case{"-7.9", -7}, Case{"1,000", 1},
                                         Case{"true", 0}, Case{"12/34", 12}, Case{"12:34", 12}));

INSTANTIATE_TEST_SUITE_P(Signs, Number,
                         testing::Values(Case{"-", 0}, Case{"+", 0}, Case{"+-3", 0}, Case{"-+3", 0}, Case{"--3", 0},
                                         Case{"++3", 0}, Case{"3-", 3}, Case{"3+4", 3},
                                         Case{"\xE2\x88\x92"
                                              "3",
                                              0}));

INSTANTIATE_TEST_SUITE_P(Limits, Number,
                         testing::Values(Case{"2147483646", kMax - 1}, Case{"2147483647", kMax},
                                         Case{"2147483648", kMax}, Case{"-2147483647", kMin + 1},
                                         Case{"-2147483648", kMin}, Case{"-2147483649", kMin}, Case{"4294967295", kMax},
                                         Case{"4294967296", kMax}, Case{"4294967303", kMax}, Case{"-4294967297", kMin},
                                         Case{"9223372036854775808", kMax}, Case{"-9223372036854775809", kMin},
                                         Case{"18446744073709551616", kMax}, Case{"18446744073709551623", kMax},
                                         Case{"+99999999999999999999999", kMax}, Case{"-99999999999999999999999", kMin},
                                         Case{"00000000000000000000000000000012", 12}, Case{"2147483648x", kMax},
                                         Case{"21474836470", kMax}, Case{"-21474836480", kMin}));

INSTANTIATE_TEST_SUITE_P(OtherDigits, Number,
                         testing::Values(Case{"\xEF\xBC\x97", 0}, Case{"1\xEF\xBC\x97", 1}, Case{"\xD9\xA7", 0},
                                         Case{"\xC2\xB2", 0}));

TEST(NumberInText, EndsAtAZeroUnit)
{
    EXPECT_EQ(toInt(wide(std::string_view("1\0"
                                          "2",
                                          3))),
              1);
}

TEST(NumberInText, OfAnyLengthIsTheNearestLimit)
{
    EXPECT_EQ(toInt(wide(std::string(1'000'000, '9'))), kMax);
    EXPECT_EQ(toInt(wide("-" + std::string(1'000'000, '9'))), kMin);
}

}  // namespace
