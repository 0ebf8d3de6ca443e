// What pvwapi.hpp does by itself: listeners and what holds them, copies, records of an older library, texts. That its
// operations are the class's is what the golden wire examples show.
#include "capi/pvwapi.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "pvutil/StringEx.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/Text.h"

namespace {

using pvwapi::CWapiClient;

class Cpp17Test : public testing::Test {
protected:
    void reply(const std::string& result, const std::string& rest = "")
    {
        server.reply(200, "text/xml; charset=utf-8",
                     "<kznapi><response><result>" + result + "</result></response>" + rest + "</kznapi>");
    }

    kzn::test::CaptureServer server;
    std::optional<CWapiClient> client{server.url("/kznconnect/op.do")};
};

/// Counts those of it that are alive, as a listener holds it.
struct Alive {
    explicit Alive(int& counted) : count(&counted) { ++*count; }
    Alive(const Alive& other) : count(other.count) { ++*count; }
    Alive& operator=(const Alive&) = delete;
    ~Alive() { --*count; }

    int* count;
};

TEST_F(Cpp17Test, ExchangesAreTold)
{
    std::vector<int> statuses;
    std::string seen;
    client->onExchange([&](const CWapiClient::Exchange& exchange) {
        statuses.push_back(exchange.status);
        EXPECT_EQ(exchange.method, CWapiClient::METHOD_POST);
        seen = std::string(exchange.url) + " " + std::string(exchange.headers.at(0));
        for (const std::string_view piece : exchange.body) seen += " " + std::string(piece);
        if (exchange.status != 0) seen += " " + std::string(exchange.reply.substr(0, 8));
        return true;
    });
    reply("SUCCESS");
    EXPECT_EQ(client->callWapi("cred"_w, "cmd=x"_w), 1);
    EXPECT_EQ(statuses, (std::vector<int>{0, 200}));
    EXPECT_THAT(seen, testing::MatchesRegex("http://.*/kznconnect/op.do .*: .* cmd=x&cred=cred.* <kznapi>"));
}

TEST_F(Cpp17Test, AnExchangeIsPreventedAndACallStopped)
{
    client->onExchange([](const CWapiClient::Exchange&) { return false; });
    EXPECT_EQ(client->callWapi("cred"_w, "cmd=x"_w), 0);
    EXPECT_EQ(client->getNetworkErrorKind(), CWapiClient::NETWORK_CANCELLED);
    client->onExchange([this](const CWapiClient::Exchange&) {
        client->cancel();
        return true;
    });
    EXPECT_EQ(client->callWapi("cred"_w, "cmd=x"_w), 0);
    EXPECT_EQ(client->getNetworkErrorKind(), CWapiClient::NETWORK_CANCELLED);
    EXPECT_EQ(server.requests().size(), 0U);
}

TEST_F(Cpp17Test, AListenerLivesAsLongAsAClientHasIt)
{
    int alive = 0;
    client->onRefresh([held = Alive(alive)](int) {});
    client->onExchange([held = Alive(alive)](const CWapiClient::Exchange&) { return true; });
    client->onTransferProgress([held = Alive(alive)](std::size_t, std::size_t) { return true; });
    EXPECT_EQ(alive, 3);
    std::optional<CWapiClient> copy(*client);
    client.reset();
    EXPECT_EQ(alive, 3);
    copy->onExchange({});
    EXPECT_EQ(alive, 2);
    copy.reset();
    EXPECT_EQ(alive, 0);
}

TEST_F(Cpp17Test, AListenerEndsItsOwnClient)
{
    int alive = 0;
    int told = 0;
    client->onRefresh([this, &told, held = Alive(alive)](int result) {
        told += result;
        client.reset();
        ++told;  // what it holds is still there
    });
    reply("SUCCESS");
    client->OnTimer(1);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(alive, 0);
}

TEST_F(Cpp17Test, TransfersAreTold)
{
    const std::string path = testing::TempDir() + "cpp17-icon.png";
    std::ofstream(path, std::ios::binary) << std::string(5000, 'x');
    std::size_t most = 0;
    client->onTransferProgress([&most](std::size_t done, std::size_t) {
        most = done;
        return true;
    });
    reply("SUCCESS");
    CStringT url;
    EXPECT_EQ(client->SetSpaceIcon("c"_w, "W"_w, wide(path), url), 1);
    EXPECT_GE(most, 5000U);
}

TEST_F(Cpp17Test, AKindStaysWhereTheReplyHasNone)
{
    const auto kindAfter = [this](const std::string& workspace) {
        reply("SUCCESS", "<return><step><workspace>" + workspace + "</workspace></step></return>");
        pvwapi::space_t space;
        space.kind = 3;
        std::vector<pvwapi::CZelSpaceInvite> invitations;
        pvwapi::SPACE_ACCESS access;
        CStringT out;
        EXPECT_EQ(client->getSpaceBatch("c"_w, "W"_w, space, invitations, access, out), 1);
        return space.kind;
    };
    EXPECT_EQ(kindAfter("<type>0</type><isTemplate>false</isTemplate>"), 0);
    EXPECT_EQ(kindAfter("<type>0</type><isTemplate>true</isTemplate>"), 16);
    EXPECT_EQ(kindAfter("<type>7</type><isTemplate>false</isTemplate>"), 3);
    EXPECT_EQ(kindAfter("<type>0</type>"), 3);
    EXPECT_EQ(kindAfter(""), 3);
}

TEST_F(Cpp17Test, ACopyAndWhatIsAssigned)
{
    client->setRootCred("shared"_w);
    CWapiClient copy(*client);
    EXPECT_EQ(copy.getRootCred(), "shared"_w);
    copy.setRootCred("own"_w);
    EXPECT_EQ(client->getRootCred(), "shared"_w);
    copy = *client;
    EXPECT_EQ(copy.getRootCred(), "shared"_w);
    EXPECT_EQ(copy.getOpURL(), server.url("/kznconnect/op.do"));
}

TEST_F(Cpp17Test, TheClassHasAShortName)
{
    pvwapi::Client& same = *client;
    EXPECT_EQ(same.getOpURL(), server.url("/kznconnect/op.do"));
}

/// The last member is not there, whatever stands behind the record.
TEST(Cpp17RecordTest, OfAnOlderLibrary)
{
    pvw_tab tab{};
    tab.size = offsetof(pvw_tab, type);
    tab.ID = {reinterpret_cast<const pvw_char*>(u"T1"), 2};
    tab.type = {reinterpret_cast<const pvw_char*>(u"garbage"), 7};
    tab.position = 7;
    const auto read = pvwapi::detail::recordOf<pvwapi::CZelTab>(&tab);
    EXPECT_EQ(read.GetID(), "T1"_w);
    EXPECT_EQ(read.GetType(), CStringT());
    EXPECT_EQ(read.GetTabPos(), 0);
}

TEST(Cpp17TextTest, IsThatOfTheLibrary)
{
    namespace library = kzn::pvutil::stringex;
    for (const char* const utf8 : {"", "plain", "Gr\xC3\xBC\xC3\x9F", "\xE6\x9D\xB1\xE4\xBA\xAC", "\xF0\x9F\x98\x80!",
                                   "\xED\x9F\xBF\xEE\x80\x80", "\xF4\x8F\xBF\xBF", "\x7F\xC2\x80\xDF\xBF"}) {
        EXPECT_EQ(pvwapi::FromUtf8(utf8), library::FromUtf8(utf8)) << utf8;
        EXPECT_EQ(pvwapi::ToUtf8(library::FromUtf8(utf8)), utf8);
    }
    const CStringT lone{CStringT::value_type(0xD800), 'a', CStringT::value_type(0xDC00)};
    EXPECT_EQ(pvwapi::ToUtf8(lone), library::ToUtf8(lone));
    EXPECT_EQ(pvwapi::XmlText("a<b>&c"_w), library::XmlText("a<b>&c"_w));
}

/// Overlong, out of range, a surrogate, cut off, out of place.
TEST(Cpp17TextTest, WhatIsNoUtf8)
{
    for (const char* const utf8 : {"\x80", "\xC1\xBF", "\xC3", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
                                   "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xE6\x9D"}) {
        const std::string_view bytes = utf8;
        EXPECT_EQ(pvwapi::FromUtf8("a" + std::string(bytes) + "b"),
                  "a"_w + CStringT(bytes.size(), CStringT::value_type(0xFFFD)) + "b"_w);
    }
}

TEST(Cpp17AloneTest, AsksTheLibrary)
{
    EXPECT_STREQ(CWapiClient::version(), PVWAPI_VERSION);
    EXPECT_EQ(pvwapi::AbiVersion(), static_cast<unsigned int>(PVW_ABI_VERSION));
    EXPECT_GE(pvwapi::DispatchPendingMessages(), 0);
    EXPECT_EQ(pvwapi::MessageLoopFd(), pvw_message_loop_fd());
    CWapiClient::setLog(4);
}

}  // namespace
