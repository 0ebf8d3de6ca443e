#include "tests/memory/FirstCall.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "client/WapiClient.h"
#include "tests/memory/FailingHeap.h"
#include "tests/memory/Share.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Text.h"

namespace {

using kzn::test::CaptureServer;
using kzn::test::Failing;
using kzn::test::FailingHeap;

std::string theProgram;

enum Check : int { kGood, kWrongOutput, kOutputWritten, kNoReason, kSecondCall, kNextClient };

int cloneInto(CWapiClient& client, CStringT& cred)
{
    static const CStringT kNone;
    return client.cloneSession(kNone, kNone, cred);
}

// The client works, or it says that it could not be made.
bool isGoodOrSaysSo(CWapiClient& client)
{
    CStringT cred;
    if (cloneInto(client, cred) == 1) return narrow(cred) == "new";
    return narrow(client.GetLstMsg().reason) == "not enough memory for the client";
}

int checkAfter(CWapiClient& client, int result, const CStringT& cred)
{
    if (result == 1 && narrow(cred) != "new") return kWrongOutput;
    if (result == 0 && narrow(cred) != "before") return kOutputWritten;
    if (result == 0 && client.GetLstMsg().reason.empty()) return kNoReason;
    if (!isGoodOrSaysSo(client)) return kSecondCall;
    CWapiClient next(client.getOpURL());
    CStringT other;
    return cloneInto(next, other) == 1 ? kGood : kNextClient;
}

}  // namespace

void setProgram(std::string program)
{
    theProgram = std::move(program);
}

int firstCall(std::span<char*> words)
{
    CStringT url = wide(words[0]);
    CStringT cred = wide("before");
    std::optional<CWapiClient> client;
    int result = 0;
    std::size_t asked = 0;
    {
        const Failing failing = std::string_view(words[2]) == "once" ? Failing::once : Failing::fromThenOn;
        const FailingHeap heap(std::stoul(words[1]), failing);
        client.emplace(std::move(url));
        result = cloneInto(*client, cred);
        asked = FailingHeap::asked();
    }
    std::ofstream(words[3]) << asked;
    return checkAfter(*client, result, cred);
}

namespace {

class FirstCallTest : public testing::Test {
protected:
    FirstCallTest()
    {
        server_.otherwise(200, "text/xml",
                          "<kznapi><response><result>SUCCESS</result></response>"
                          "<securityContext><cred>new</cred></securityContext></kznapi>");
    }

    int start(std::size_t nth, const std::string& failing)
    {
        const std::string url = server_.address("/kznconnect/op.do");
        ChildProcess child(theProgram, {std::string(kFirstCall), url, std::to_string(nth), failing, kCountFile});
        return child.wait();
    }

    static std::size_t allocations()
    {
        std::size_t count = 0;
        std::ifstream(kCountFile) >> count;
        return count;
    }

private:
    static constexpr const char* kCountFile = "first-call-allocations.txt";

    CaptureServer server_;
};

}  // namespace

TEST_F(FirstCallTest, FailsWholeOrNotAtAll)
{
    constexpr std::size_t kFew = 15;
    ASSERT_EQ(start(0, "once"), kGood);
    const std::size_t all = allocations();
    ASSERT_GT(all, 20U);
    const std::size_t step = shareOf(kFew) == 0 ? 1 : all / shareOf(kFew);
    for (std::size_t nth = 1 + all % step; nth <= all; nth += step)
        for (const std::string failing : {"once", "rest"})
            EXPECT_EQ(start(nth, failing), kGood) << "allocation " << nth << " of " << all << ' ' << failing;
    RecordProperty("allocations", static_cast<int>(all));
}
