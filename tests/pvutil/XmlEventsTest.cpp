// Node lists: which events come, and in what order.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <stdexcept>
#include <string>

#include "pvutil/XmlHandler.h"
#include "tests/pvutil/XmlRecorder.h"

namespace {

using EXPAT_EX::CXMLHandler;

TEST(NodeList, StartsAndEndsWithEachElement)
{
    XmlRecorder handler({"/r/i/"}, {{7, "/r/i/"}});
    EXPECT_EQ(handler.parse("<r><i>a</i><x/><i>b</i><i/></r>"), 1);
    EXPECT_EQ(handler.events(), "(7 ?; 7) a; (7 a; 7) b; (7 b; 7) ; ");
}

TEST(NodeList, EndsAfterTheTextsInside)
{
    XmlRecorder handler({"/r/i/n/", "/r/i/d/e/"}, {{1, "/r/i/"}});
    EXPECT_EQ(handler.parse("<r><i><n>a</n><d><e>b</e></d></i><i><d><e>c</e></d></i></r>"), 1);
    EXPECT_EQ(handler.events(), "(1 ?|?; 1) a|b; (1 a|b; 1) a|c; ");
}

TEST(NodeList, NestsInDocumentOrder)
{
    XmlRecorder handler({"/r/s/m/"}, {{1, "/r/s/"}, {2, "/r/s/m/"}, {3, "/r/"}, {4, "/r/s/m/k/"}});
    EXPECT_EQ(handler.parse("<r><s><m>a<k/></m><m>b</m></s><s/></r>"), 1);
    EXPECT_EQ(handler.events(), "(3 ?; (1 ?; (2 ?; (4 ?; 4) ?; 2) a; (2 a; 2) b; 1) b; (1 b; 1) b; 3) b; ");
}

TEST(NodeList, ServesSeveralListenersInTheOrderOfRegistration)
{
    XmlRecorder handler({}, {{9, "/r/i/"}, {2, "/r/i/"}, {5, "/r/i/"}});
    EXPECT_EQ(handler.parse("<r><i/><i/></r>"), 1);
    EXPECT_EQ(handler.events(), "(9; (2; (5; 9); 2); 5); (9; (2; (5; 9); 2); 5); ");
}

TEST(NodeList, CarriesOneIDFromSeveralPaths)
{
    XmlRecorder handler({}, {{1, "/r/i/"}, {1, "/r/k/"}, {0, "/r/l/"}, {4294967295U, "/r/m/"}});
    EXPECT_EQ(handler.parse("<r><k/><i/><l/><m/></r>"), 1);
    EXPECT_EQ(handler.events(), "(1; 1); (1; 1); (0; 0); (4294967295; 4294967295); ");
}

TEST(NodeList, IsRaisedAtItsOwnDepthOnly)
{
    XmlRecorder handler({}, {{1, "/r/i/"}});
    EXPECT_EQ(handler.parse("<r><x><i/></x><i><i/></i><r><i/></r><I/><ii/></r>"), 1);
    EXPECT_EQ(handler.events(), "(1; 1); ");
}

/// Counts what it is told of, lists and what nobody asked for.
class CallbackCounter : public CXMLHandler {
public:
    CallbackCounter()
    {
        AddNodeListEventListener(1, wide("/r/i/"));
        AddTextSelecter(wide("/r/i/n/"), &text_);
    }

    void OnStartNodeListEvent(unsigned) override { ++lists_; }
    void OnEndNodeListEvent(unsigned) override { ++lists_; }
    void OnStartNodeEvent(unsigned) override { ++others_; }
    void OnEndNodeEvent(unsigned) override { ++others_; }
    void OnStartAttributeEvent(unsigned) override { ++others_; }
    void OnEndAttributeEvent(unsigned) override { ++others_; }

    int lists() const noexcept { return lists_; }
    int others() const noexcept { return others_; }

private:
    CStringT text_;
    int lists_ = 0;
    int others_ = 0;
};

TEST(NodeList, CostsTwoCallbacksAnItemWhateverStandsInIt)
{
    constexpr int kItems = 1'000;
    std::string text = "<r>";
    for (int item = 0; item < kItems; ++item) text += "<i a='1'><n>x&amp;y</n><k><l/></k><m>z</m></i><o>w</o>";
    text += "</r>";
    for (const std::size_t size : {text.size(), std::size_t{7}}) {
        CallbackCounter handler;
        const std::string_view all = text;
        for (std::size_t at = 0; at < all.size(); at += size)
            ASSERT_EQ(handler.ParsePiece(all.substr(at, size), at + size >= all.size()), 1);
        EXPECT_EQ(handler.lists(), 2 * kItems);
        EXPECT_EQ(handler.others(), 0);
    }
}

TEST(NodeList, IsNotRaisedForAnotherRoot)
{
    XmlRecorder handler({}, {{1, "/r/i/"}, {2, "/r/"}});
    EXPECT_EQ(handler.parse("<s><r><i/></r><i/></s>"), 1);
    EXPECT_EQ(handler.events(), "");
}

TEST(NodeList, ComesWithoutAnySelector)
{
    XmlRecorder handler({}, {{1, "/r/"}});
    EXPECT_EQ(handler.parse("<r>text</r>"), 1);
    EXPECT_EQ(handler.events(), "(1; 1); ");
}

TEST(NodeList, StartsWithoutAnEndWhereTheTextBreaksOff)
{
    XmlRecorder handler({"/r/i/n/"}, {{1, "/r/i/"}});
    EXPECT_EQ(handler.parse("<r><i><n>a</n></i><i><n>b</n>"), 0);
    EXPECT_EQ(handler.events(), "(1 ?; 1) a; (1 a; ");
    EXPECT_EQ(handler.texts(), "b");
}

TEST(NodeList, IsRaisedAHundredThousandTimes)
{
    struct Counter : CXMLHandler {
        void OnStartNodeListEvent(unsigned id) override { starts += id; }
        void OnEndNodeListEvent(unsigned id) override { ends += id; }
        unsigned starts = 0;
        unsigned ends = 0;
    } counter;
    counter.AddNodeListEventListener(1, "/r/i/"_w);
    std::string xml = "<r>";
    for (int i = 0; i < 100'000; ++i) xml += i % 2 == 0 ? "<i/>" : "<i>x</i>";
    EXPECT_EQ(counter.ParseXML(wide(xml + "</r>")), 1);
    EXPECT_EQ(counter.starts, 100'000U);
    EXPECT_EQ(counter.ends, 100'000U);
}

TEST(Handler, DoesNothingOfItsOwnInItsEvents)
{
    CXMLHandler handler;
    CStringT text;
    handler.AddTextSelecter("/r/i/"_w, &text);
    handler.AddNodeListEventListener(1, "/r/i/"_w);
    EXPECT_EQ(handler.ParseXML("<r><i>x</i></r>"_w), 1);
    handler.OnStartNodeEvent(1);
    handler.OnEndNodeEvent(1);
    handler.OnStartAttributeEvent(1);
    handler.OnEndAttributeEvent(1);
    EXPECT_EQ(text, "x"_w);
}

// Both compilers lay a table of virtual operations out alike: two entries of the destructor, then the rest as declared;
// and a pointer to a virtual member is one more than its entry's offset.
std::ptrdiff_t entryOf(void (CXMLHandler::*operation)(unsigned))
{
    const auto parts = std::bit_cast<std::array<std::ptrdiff_t, 2>>(operation);
    EXPECT_EQ(parts[0] % static_cast<std::ptrdiff_t>(sizeof(void*)), 1) << "not virtual";
    EXPECT_EQ(parts[1], 0);
    return parts[0] / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(Handler, KeepsTheOrderOfItsVirtualOperations)
{
    EXPECT_EQ(entryOf(&CXMLHandler::OnStartNodeListEvent), 2);
    EXPECT_EQ(entryOf(&CXMLHandler::OnEndNodeListEvent), 3);
    EXPECT_EQ(entryOf(&CXMLHandler::OnStartNodeEvent), 4);
    EXPECT_EQ(entryOf(&CXMLHandler::OnEndNodeEvent), 5);
    EXPECT_EQ(entryOf(&CXMLHandler::OnStartAttributeEvent), 6);
    EXPECT_EQ(entryOf(&CXMLHandler::OnEndAttributeEvent), 7);
}

TEST(Handler, IsDestroyedThroughItsBase)
{
    struct Noting : CXMLHandler {
        explicit Noting(bool& gone) : gone_(gone) {}
        ~Noting() override { gone_ = true; }
        bool& gone_;
    };
    bool gone = false;
    std::unique_ptr<CXMLHandler>(std::make_unique<Noting>(gone)).reset();
    EXPECT_TRUE(gone);
}

// Throws at one event, and counts those that come all the same.
class Thrower : public XmlRecorder {
public:
    using XmlRecorder::XmlRecorder;

    void OnStartNodeListEvent(unsigned id) override { step(id, true); }
    void OnEndNodeListEvent(unsigned id) override { step(id, false); }

    unsigned throwAt = 0;
    bool atStart = false;
    int events = 0;

private:
    void step(unsigned id, bool start)
    {
        ++events;
        if (id == throwAt && start == atStart) throw std::out_of_range("at " + std::to_string(id));
    }
};

class Exception : public testing::TestWithParam<std::tuple<bool, const char*, int>> {};

TEST_P(Exception, ComesOutAndLeavesTheHandlerUsable)
{
    const auto& [atStart, xml, eventsUntilThen] = GetParam();
    Thrower handler({"/r/i/"}, {{1, "/r/"}, {2, "/r/i/"}, {3, "/r/k/"}});
    handler.throwAt = 2;
    handler.atStart = atStart;
    EXPECT_THROW(handler.parse(xml), std::out_of_range);
    EXPECT_EQ(handler.events, eventsUntilThen);

    handler.throwAt = 0;
    handler.events = 0;
    EXPECT_EQ(handler.parse("<r><i>next</i></r>"), 1);
    EXPECT_EQ(handler.events, 4);
    EXPECT_EQ(handler.texts(), "next");
}

INSTANTIATE_TEST_SUITE_P(AtStart, Exception,
                         testing::Values(std::tuple(true, "<r><i>x</i><k/></r>", 2),
                                         std::tuple(true, "<r><i/><k/></r>", 2),
                                         std::tuple(true, "<r><k/><i><k/></i></r>", 4),
                                         std::tuple(true, "<r><i><", 2)));

INSTANTIATE_TEST_SUITE_P(AtEnd, Exception,
                         testing::Values(std::tuple(false, "<r><i>x</i><k/></r>", 3),
                                         std::tuple(false, "<r><i/><k/></r>", 3),
                                         std::tuple(false, "<r><i/><i/></r>", 3),
                                         std::tuple(false, "<r><i></i>&broken", 3)));

TEST(Exception, ComesOutOfAPieceAndTheNextPieceBeginsAfresh)
{
    Thrower handler({"/r/i/"}, {{2, "/r/i/"}});
    handler.throwAt = 2;
    EXPECT_EQ(handler.ParsePiece("<r><i>x", false), 1);
    EXPECT_THROW(handler.ParsePiece("</i><i>", false), std::out_of_range);
    handler.throwAt = 0;
    EXPECT_EQ(handler.ParsePiece("<r><i>y", false), 1);
    EXPECT_EQ(handler.ParsePiece("</i></r>", true), 1);
    EXPECT_EQ(handler.texts(), "y");
}

TEST(Exception, ComesOutAsItWasThrown)
{
    struct Odd {
        int number;
    };
    struct OddThrower : CXMLHandler {
        void OnStartNodeListEvent(unsigned id) override { throw Odd{static_cast<int>(id)}; }
    } handler;
    handler.AddNodeListEventListener(42, "/r/"_w);
    try {
        handler.ParseXML("<r/>"_w);
        FAIL() << "nothing came out";
    } catch (const Odd& odd) {
        EXPECT_EQ(odd.number, 42);
    }
}

}  // namespace
