// Where an entry begins and where its text ends.
#include "log/EntryReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/log/LogText.h"

namespace {

using namespace logreader;
using logtest::entry;
using testing::ElementsAre;

std::vector<Entry> entriesOf(std::string_view log, std::size_t piece = 1U << 20U)
{
    std::vector<Entry> entries;
    EntryReader reader([&](Entry&& found) { entries.push_back(std::move(found)); });
    while (!log.empty()) {
        reader.feed(log.substr(0, piece));
        log.remove_prefix(std::min(piece, log.size()));
    }
    reader.end();
    return entries;
}

std::vector<std::string> textsOf(std::string_view log, std::size_t piece = 1U << 20U)
{
    std::vector<std::string> texts;
    for (const Entry& found : entriesOf(log, piece)) texts.push_back(found.text);
    return texts;
}

TEST(EntryReader, HeadTellsTimeProcessThreadAndLevel)
{
    const auto entries = entriesOf(entry("text", "4294967295", "7", "\n", "Warning"));
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].time, "2026-01-31 23:59:58");
    EXPECT_EQ(entries[0].pid, "4294967295");
    EXPECT_EQ(entries[0].tid, "7");
    EXPECT_EQ(entries[0].level, Level::warning);
    EXPECT_EQ(entries[0].text, "text");
    EXPECT_EQ(entries[0].bytes, 4U);
    EXPECT_TRUE(entries[0].isWhole);
}

TEST(EntryReader, EveryLevelHasItsName)
{
    std::string log;
    for (const char* const level : {"Error", "Warning", "Info", "Debug"}) log += entry("", "1", "2", "\n", level);
    std::vector<Level> levels;
    for (const Entry& found : entriesOf(log)) levels.push_back(found.level);
    EXPECT_THAT(levels, ElementsAre(Level::error, Level::warning, Level::info, Level::debug));
}

TEST(EntryReader, LineBreaksOfATextStay)
{
    const std::vector<std::string> texts = {"", "\n", "one\ntwo", "one\r\ntwo\r\n", "\n\n", "<a>\n<b/>\n</a>\n"};
    for (const std::string_view endOfLine : {"\n", "\r\n"}) {
        std::string log;
        for (const std::string& text : texts) log += entry(text, "1", "2", endOfLine);
        EXPECT_EQ(textsOf(log + entry("last")).size(), texts.size() + 1);
        for (std::size_t piece = 1; piece < 90; ++piece) {
            auto found = textsOf(log + entry("last"), piece);
            found.pop_back();
            EXPECT_EQ(found, texts) << "in pieces of " << piece;
        }
    }
}

TEST(EntryReader, LogWhoseLineEndsWereConvertedIsReadToo)
{
    std::string log = entry("one\ntwo") + entry("three");
    std::erase(log, '\r');
    EXPECT_THAT(textsOf(log), ElementsAre("one\ntwo", "three"));
}

TEST(EntryReader, WhatIsAlmostAHeadIsText)
{
    const std::vector<std::string> lines = {
        "<2026-01-31 23:59:58, pid=1, tid=2> Debug: one blank",
        "<2026-01-31 23:59:58, pid=1, tid=2> Trace:  ",
        "<2026-01-31 23:59:58, pid=, tid=2> Debug:  ",
        "<2026-01-31 23:59:58, pid=1, tid=> Debug:  ",
        "<2026-01-31 23:59:58, pid=-1, tid=2> Debug:  ",
        "<2026-01-31 23:59:58, pid=123456789012345678901, tid=2> Debug:  ",
        "<2026-01-31T23:59:58, pid=1, tid=2> Debug:  ",
        "<26-01-31 23:59:58, pid=1, tid=2> Debug:  ",
        " <2026-01-31 23:59:58, pid=1, tid=2> Debug:  ",
        "<2026-01-31 23:59:58>",
    };
    std::string text = "first";
    for (const std::string& line : lines) text += "\r\n" + line;
    for (const std::size_t piece : {1U, 7U, 1000000U}) {
        EXPECT_THAT(textsOf(entry(text) + entry("next"), piece), ElementsAre(text, "next"));
    }
}

TEST(EntryReader, LineThatIsAHeadBeginsAnEntryWhoeverWroteIt)
{
    EXPECT_THAT(textsOf(entry("a reply" + entry("forged", "5", "6", "") + " and its rest") + entry("next")),
                ElementsAre("a reply", "forged and its rest", "next"));
}

TEST(EntryReader, WhatStandsBeforeTheFirstHeadIsNobodys)
{
    EXPECT_THAT(textsOf("the end of an older entry\n" + entry("first")), ElementsAre("first"));
    EXPECT_THAT(textsOf("no log at all\n<a/>"), testing::IsEmpty());
    EXPECT_THAT(textsOf(""), testing::IsEmpty());
}

TEST(EntryReader, CutOffAtAnyByteTheEntriesBeforeAreWhole)
{
    const std::vector<std::string> texts = {"cmd=get&cred=c", "<a>\r\n</a>\n", "", "\xC3\xA9\xFF\n\n"};
    std::string log;
    std::vector<std::size_t> ends;
    for (const std::string& text : texts) {
        log += entry(text);
        ends.push_back(log.size());
    }
    for (std::size_t length = 0; length <= log.size(); ++length) {
        const auto entries = entriesOf(std::string_view(log).substr(0, length));
        const auto whole = static_cast<std::size_t>(std::ranges::upper_bound(ends, length) - ends.begin());
        ASSERT_GE(entries.size(), whole) << length;
        ASSERT_LE(entries.size(), whole + 1) << length;
        for (std::size_t at = 0; at < whole; ++at) {
            EXPECT_EQ(entries[at].text, texts[at]) << length;
            EXPECT_TRUE(entries[at].isWhole) << length;
        }
    }
}

TEST(EntryReader, PauseEndsAnEntryWhoseLineHasEnded)
{
    std::vector<std::string> texts;
    EntryReader reader([&](Entry&& found) { texts.push_back(found.text); });
    const std::string log = entry("text");
    reader.feed(std::string_view(log).substr(0, log.size() - 1));
    reader.pause();
    EXPECT_THAT(texts, testing::IsEmpty());
    reader.feed("\n");
    reader.pause();
    EXPECT_THAT(texts, ElementsAre("text"));
    reader.feed(entry("next"));
    reader.end();
    EXPECT_THAT(texts, ElementsAre("text", "next"));
}

TEST(EntryReader, TextBeyondAnyReplyIsCountedAndNotKept)
{
    std::vector<Entry> entries;
    EntryReader reader([&](Entry&& found) { entries.push_back(std::move(found)); });
    const std::string piece(std::size_t{1} << 20, 'x');
    constexpr std::size_t kPieces = (kLongestText >> 20) + 2;
    reader.feed(entry("", "1", "2", ""));
    for (std::size_t i = 0; i < kPieces; ++i) reader.feed(piece);
    reader.feed("\n" + entry("next"));
    reader.end();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].bytes, kPieces << 20);
    EXPECT_EQ(entries[0].text.size(), kLongestText);
    EXPECT_TRUE(entries[0].isWhole);
    EXPECT_EQ(entries[1].text, "next");
}

}  // namespace
