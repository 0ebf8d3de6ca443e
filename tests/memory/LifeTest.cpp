// The life of a client, with allocations of each step failing.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "client/TraceLog.h"
#include "client/WapiClient.h"
#include "pvutil/HttpClient.h"
#include "pvutil/XmlParser.h"
#include "tests/client/ClientState.h"
#include "tests/memory/FailingHeap.h"
#include "tests/memory/HostSystem.h"
#include "tests/memory/Share.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/TestSystem.h"
#include "tests/support/Text.h"

namespace {

using kzn::test::CapturedRequest;
using kzn::test::CaptureServer;
using kzn::test::Failing;
using kzn::test::FailingHeap;
using kzn::test::NotedHeap;

const std::string kUnbuilt = "not enough memory for the client";

class LifeTest : public testing::Test {
protected:
    static constexpr const char* kReply =
        "<kznapi><response><result>SUCCESS</result></response><securityContext><cred>new</cred></securityContext>"
        "<return><sessionInfo><sessionDuration>50000000</sessionDuration></sessionInfo></return></kznapi>";

    LifeTest()
    {
        for (CaptureServer* each : {&server, &other}) each->otherwise(200, "text/xml", kReply);
    }

    /// Runs `step` once for each of its allocations, which fails alone and with all behind it; the step says what runs
    /// under the failing heap by handing it to the function that it is given.
    using Under = std::function<void(const std::function<void()>&)>;
    std::size_t eachAllocation(const std::function<void(const Under&)>& step)
    {
        std::size_t asked = 0;
        const auto with = [&](std::size_t nth, Failing failing) {
            step([&, nth, failing](const std::function<void()>& part) {
                const NotedHeap noted;
                const FailingHeap heap(nth, failing);
                part();
                asked = std::max(asked, FailingHeap::asked());
            });
        };
        with(0, Failing::once);
        closeAll();
        NotedHeap::forget();
        const std::size_t openBefore = openFiles();
        const std::size_t all = asked;
        for (std::size_t nth = 1; nth <= all; nth += stepOfShare()) {
            for (const Failing failing : {Failing::once, Failing::fromThenOn}) {
                SCOPED_TRACE("allocation " + std::to_string(nth) + (failing == Failing::once ? "" : " and all behind"));
                with(nth, failing);
            }
        }
        closeAll();
        for (const NotedHeap::Block& block : NotedHeap::held())
            ADD_FAILURE() << "a block that nobody gave back: " << block.bytes << " bytes, number " << block.number;
        EXPECT_LE(openFiles(), openBefore);
        return all;
    }

    void closeAll()
    {
        kzn::pvutil::CZelHttpClient::DropKept();
        EXPAT_EX::dropParsers();
        server.closeConnections();
        other.closeConnections();
    }

    static int cloneOf(CWapiClient& client, std::string& cred)
    {
        CStringT got = "before"_w;
        const int result = client.cloneSession("c"_w, {}, got);
        cred = narrow(got);
        return result;
    }

    /// Whether the client works; it says that it could not be made otherwise, and sends nothing.
    bool works(CWapiClient& client)
    {
        server.takeRequests();
        std::string cred;
        const int result = cloneOf(client, cred);
        EXPECT_EQ(cred, result == 1 ? "new" : "before");
        EXPECT_EQ(server.takeRequests().size(), result == 1 ? 1U : 0U);
        EXPECT_EQ(narrow(client.GetLstMsg().reason), result == 1 ? "" : kUnbuilt);
        return result == 1;
    }

    CStringT url() const { return server.url("/kznconnect/op.do"); }

    CaptureServer server;
    CaptureServer other;
};

}  // namespace

TEST_F(LifeTest, AClientIsMadeWholeOrSaysThatItIsNot)
{
    std::size_t whole = 0;
    std::size_t unbuilt = 0;
    eachAllocation([&](const Under& under) {
        CStringT address = url();
        std::optional<CWapiClient> client;
        under([&] { client.emplace(std::move(address)); });
        (works(*client) ? whole : unbuilt)++;
        if (client->getDmsURL().empty()) {
            EXPECT_FALSE(works(*client));
        }
        under([&] { client.reset(); });
    });
    EXPECT_GT(whole, 0U);
    EXPECT_GT(unbuilt, 0U);
}

TEST_F(LifeTest, WantOfMemoryIsToldWithoutAny)
{
    CWapiClient client(url());
    const CStringT cred = "c"_w;
    CStringT got = "before"_w;
    int result = 1;
    {
        const FailingHeap heap(1, Failing::fromThenOn);
        result = client.cloneSession(cred, {}, got);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(got, "before"_w);
    EXPECT_EQ(client.GetLstMsg().reason, "memory"_w);
    EXPECT_TRUE(works(client));
}

TEST_F(LifeTest, AClientThatCouldNotBeMadeRefusesEveryKindOfCall)
{
    CStringT address = url();
    std::optional<CWapiClient> client;
    {
        const FailingHeap heap(1, Failing::fromThenOn);
        client.emplace(std::move(address));
    }
    const auto expectRefused = [&](int result) {
        EXPECT_EQ(result, 0);
        EXPECT_EQ(narrow(client->GetLstMsg().reason), kUnbuilt);
    };
    CStringT out = "before"_w;
    expectRefused(client->login("u"_w, {}, {}, "p"_w, 0, 1));
    expectRefused(client->callWapi("c"_w, "cmd=x"_w));
    expectRefused(client->GetSpaceIcon("c"_w, url(), out));
    expectRefused(client->SetSpaceIcon("c"_w, "w"_w, "nothing"_w, out));
    EXPECT_EQ(client->logout("c"_w), 1);
    client->OnTimer(1);
    client->cancel();
    EXPECT_EQ(narrow(out), "before");
    EXPECT_EQ(server.takeRequests().size(), 0U);

    const CWapiClient whole(url());
    CWapiClient copy(*client);
    EXPECT_FALSE(works(copy));
    *client = whole;
    EXPECT_TRUE(works(*client));
}

TEST_F(LifeTest, ACopyIsMadeWholeOrSaysThatItIsNot)
{
    CWapiClient original(url());
    original.setRootCred("a credential that is longer than a short text"_w);
    const ClientState state = stateOf(original);
    std::size_t whole = 0;
    std::size_t unbuilt = 0;
    eachAllocation([&](const Under& under) {
        std::optional<CWapiClient> copy;
        under([&] { copy.emplace(original); });
        if (copy->getOpURL().empty()) {
            EXPECT_FALSE(works(*copy));
            ++unbuilt;
        } else {
            EXPECT_EQ(stateOf(*copy), state);
            EXPECT_EQ(copy->getDmsURL(), original.getDmsURL());
            EXPECT_TRUE(works(*copy));
            ++whole;
        }
        under([&] { copy.reset(); });
    });
    EXPECT_GT(whole, 0U);
    EXPECT_GT(unbuilt, 0U);
}

TEST_F(LifeTest, AnAssignmentIsMadeWholeOrNotAtAll)
{
    CWapiClient source(server.url("/the/source/of/the/assignment/kznconnect/op.do"));
    source.setRootCred("the credential of the source, a long one"_w);
    std::size_t done = 0;
    std::size_t left = 0;
    eachAllocation([&](const Under& under) {
        std::optional<CWapiClient> target;
        const CStringT before = other.url("/the/target's/own/kznconnect/op.do");
        CStringT address = before;
        target.emplace(std::move(address));
        target->setRootCred("the credential of the target, a long one"_w);
        under([&] { *target = source; });
        const bool isSource = target->getOpURL() == source.getOpURL();
        (isSource ? done : left)++;
        EXPECT_EQ(target->getOpURL(), isSource ? source.getOpURL() : before);
        EXPECT_EQ(narrow(target->getRootCred()),
                  isSource ? "the credential of the source, a long one" : "the credential of the target, a long one");
        EXPECT_EQ(target->getDmsURL() == source.getDmsURL(), isSource);
        EXPECT_EQ(target->GetLstMsg().reason.empty(), isSource);
        std::string cred;
        EXPECT_EQ(cloneOf(*target, cred), 1);
        EXPECT_EQ(cred, "new");
        EXPECT_EQ(server.takeRequests().size(), isSource ? 1U : 0U);
        EXPECT_EQ(other.takeRequests().size(), isSource ? 0U : 1U);
        under([&] { target.reset(); });
    });
    EXPECT_GT(done, 0U);
    EXPECT_GT(left, 0U);
}

TEST_F(LifeTest, ACredentialIsKeptOrTheMessageSaysNo)
{
    eachAllocation([&](const Under& under) {
        CWapiClient client(url());
        client.setRootCred("old"_w);
        const CStringT cred = "a new credential that needs memory for itself"_w;
        under([&] { client.setRootCred(cred); });
        const bool isKept = client.getRootCred() == cred;
        EXPECT_EQ(narrow(client.getRootCred()), isKept ? narrow(cred) : "old");
        EXPECT_EQ(client.GetLstMsg().reason.empty(), isKept);
        EXPECT_TRUE(works(client));
    });
}

TEST_F(LifeTest, ATickTellsItsListenerWhatBecameOfIt)
{
    std::size_t failed = 0;
    const std::size_t all = eachAllocation([&](const Under& under) {
        CWapiClient client(url());
        int told = -1;
        client.onRefresh([&told](int result) { told = result; });
        ASSERT_EQ(client.getSessionInfo({}), 1);
        under([&] { client.OnTimer(1); });
        EXPECT_TRUE(told == 0 || told == 1);
        EXPECT_EQ(client.GetLstMsg().reason.empty(), told == 1);
        EXPECT_EQ(client.getRefreshInterval(), 25'000'000U);
        EXPECT_TRUE(works(client));
        if (told == 0) ++failed;
    });
    EXPECT_GT(all, 5U);
    EXPECT_GT(failed, 0U);
}

TEST_F(LifeTest, ANetworkErrorHasItsCauseAndNoneWithoutIt)
{
    eachAllocation([&](const Under& under) {
        CWapiClient client(url());
        server.script(kzn::test::Script().send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\ncut").close());
        const CStringT cred = "c"_w;
        const CStringT command = "cmd=x"_w;
        EXPECT_EQ(client.callWapi(cred, command), 0);
        EXPECT_EQ(client.getNetworkError(), 1);
        under([&] { client.callWapi(cred, command); });
        EXPECT_EQ(client.getNetworkError() == 0, client.getNetworkErrorKind() == CWapiClient::NETWORK_NONE);
        EXPECT_TRUE(works(client));
    });
}

TEST_F(LifeTest, TheLogIsOpenedOrNotAndOpensAgain)
{
    eachAllocation([&](const Under& under) {
        under([&] { wapi::traceLog().openInDataFolder(); });
        under([&] { wapi::traceLog().close(); });
        EXPECT_FALSE(isOpenHere(logFile()));
        wapi::traceLog().openInDataFolder();
        EXPECT_TRUE(isOpenHere(logFile()));
        wapi::traceLog().close();
    });
    wapi::traceLog().openInDataFolder();
}
