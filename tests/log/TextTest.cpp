// What reaches a terminal.
#include "log/Text.h"

#include <gtest/gtest.h>

namespace {

using namespace logreader;

TEST(LogText, NothingCommandsATerminal)
{
    EXPECT_EQ(harmless("a\x1b[2J\r\n\t\x7f z"), "a\\u001b[2J\\u000d\\u000a\\u0009\\u007f z");
    EXPECT_EQ(harmless(std::string_view("\0", 1)), "\\u0000");
    EXPECT_EQ(harmless("\u0085\u009b\u202e\u2066\u200e\u061c\u2028"),
              "\\u0085\\u009b\\u202e\\u2066\\u200e\\u061c\\u2028");
    EXPECT_EQ(harmless("a\nb\x1b", "\n"), "a\nb\\u001b");
    EXPECT_EQ(harmless("R\u00e9sum\u00e9 \U0001F600"), "R\u00e9sum\u00e9 \U0001F600");
}

TEST(LogText, BytesThatAreNoUtf8AreReplaced)
{
    EXPECT_EQ(harmless("a\xFFz"), "a\uFFFDz");
    EXPECT_EQ(harmless("\xC3"), "\uFFFD");
    EXPECT_EQ(harmless("\x80\xC0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(harmless("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(harmless("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(harmless("\xE2\x82z"), "\uFFFD\uFFFDz");
    // A C1 control written longer than it has to be.
    EXPECT_EQ(harmless("\xE0\x82\x9B"), "\uFFFD\uFFFD\uFFFD");
}

TEST(LogText, LineIsCutToItsColumns)
{
    EXPECT_EQ(fitted("abcdef", 6), "abcdef");
    EXPECT_EQ(fitted("abcdef", 5), "abcd\u2026");
    EXPECT_EQ(fitted("\u00e9\u00e9\u00e9", 2), "\u00e9\u2026");
    EXPECT_EQ(fitted("\u4e00\u4e00\u4e00", 5), "\u4e00\u4e00\u2026");
    EXPECT_EQ(fitted("\u4e00\u4e00\u4e00", 4), "\u4e00\u2026");
    EXPECT_EQ(fitted("e\u0301e\u0301", 2), "e\u0301e\u0301");
    EXPECT_EQ(fitted("", 1), "");
}

TEST(LogText, LinesAreBrokenAtBlanks)
{
    EXPECT_EQ(wrapped("one two three\n\nfour\n", 8), "one two\nthree\n\nfour\n");
    EXPECT_EQ(wrapped("  -x    one two three", 12), "  -x    one\n        two\n        three\n");
    EXPECT_EQ(wrapped("    one two three", 12), "    one two\n    three\n");
    EXPECT_EQ(wrapped("one two", 7), "one two\n");
    EXPECT_EQ(wrapped("onetwothree four", 8), "onetwothree four\n");
    EXPECT_EQ(wrapped("  -x    one two", 4), "  -x    one two\n");
    EXPECT_EQ(wrapped("", 4), "");
}

}  // namespace
