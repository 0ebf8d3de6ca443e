// A client, the server that it talks to, and the replies that most tests serve.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "client/WapiClient.h"
#include "pvutil/MessageLoop.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/Text.h"

constexpr const char* kOperationPath = "/kznconnect/op.do";

inline std::string resultReply(const std::string& result, const std::string& rest = "")
{
    return "<kznapi><response><result>" + result + "</result></response>" + rest + "</kznapi>";
}

inline std::string credReply(const std::string& cred)
{
    return resultReply("SUCCESS", "<securityContext><cred>" + cred + "</cred></securityContext>");
}

inline std::string sessionReply(int duration)
{
    return resultReply("SUCCESS", "<return><sessionInfo><sessionDuration>" + std::to_string(duration) +
                                      "</sessionDuration></sessionInfo></return>");
}

class ClientFixture : public testing::Test {
protected:
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;

    void reply(const std::string& body) { server.reply(200, "text/xml; charset=utf-8", body); }
    void otherwise(const std::string& body) { server.otherwise(200, "text/xml; charset=utf-8", body); }

    std::size_t requestCount() const { return server.requests().size(); }
    std::string lastBody() const { return server.requests().back().body; }

    /// Has the service name a duration that makes ticks come after `interval`; arms nothing.
    void shortenInterval(CWapiClient& of, Milliseconds interval)
    {
        otherwise(sessionReply(static_cast<int>(interval.count()) * 2));
        ASSERT_EQ(of.getSessionInfo(wide("")), 1);
        ASSERT_EQ(of.getRefreshInterval(), interval.count());
    }

    /// Delivers ticks until `reached()` or until `limit` is over; whether it was reached.
    template <typename Reached>
    static bool pumpUntil(Reached reached, Milliseconds limit = std::chrono::seconds(20))
    {
        const auto end = Clock::now() + limit;
        while (!reached()) {
            if (Clock::now() > end) return false;
            kzn::pvutil::DispatchPendingMessages();
            std::this_thread::sleep_for(Milliseconds(2));
        }
        return true;
    }

    /// Whether no request at all comes while ticks are delivered.
    bool staysQuiet(Milliseconds time = Milliseconds(400)) const
    {
        const std::size_t before = requestCount();
        return !pumpUntil([&] { return requestCount() != before; }, time);
    }

    bool nextTickComes() const
    {
        const std::size_t before = requestCount();
        return pumpUntil([&] { return requestCount() != before; });
    }

    kzn::test::CaptureServer server;
    CWapiClient client{server.url(kOperationPath)};
};
