// The journal without a service around it: what it keeps has an end, and it holds nobody up.
#include <gmock/gmock.h>

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "log/Form.h"
#include "service/base/Json.h"
#include "service/base/Text.h"
#include "service/journal/Journal.h"
#include "service/journal/Reading.h"
#include "service/store/Database.h"

namespace service::test {

namespace {

class JournalAlone : public testing::Test {
protected:
    static void post(journal::Journal& journal, const std::string& body, const std::string& reply)
    {
        http::Response response;
        response.body = reply;
        journal.add(
            journal::heardOf({"POST", "/kznconnect/op.do", "application/x-www-form-urlencoded", body}, response));
    }

    static store::Exchange read(const std::string& body, const std::string& reply)
    {
        http::Response response;
        response.body = reply;
        return journal::exchangeOf(
            journal::heardOf({"POST", "/kznconnect/op.do", "application/x-www-form-urlencoded", body}, response));
    }

    // All that is kept of it.
    static std::string textOf(const store::Exchange& exchange)
    {
        return exchange.path + ' ' + exchange.operation + ' ' + exchange.user + ' ' + exchange.reason + ' ' +
               exchange.exceptionID + ' ' + exchange.fields + ' ' + exchange.reply;
    }

    static std::string failure(const std::string& reason)
    {
        return "<kznapi><response><result>FAILURE</result><reason>" + reason +
               "</reason><exceptionID>KZN:Any</exceptionID></response></kznapi>";
    }

    // Its turn to write never comes by itself.
    static void never(const std::function<void()>& /*write*/) {}

    store::Database database_{store::kInMemory};
};

TEST_F(JournalAlone, TheOldestGoFirst)
{
    journal::Journal journal(database_, never, {3, 1'000'000});
    for (int i = 1; i <= 5; ++i) post(journal, "cmd=logout", "<kznapi/>");
    journal.settle();
    EXPECT_EQ(journal.totals().count, 3);
    EXPECT_FALSE(store::findExchange(database_, 2));
    EXPECT_TRUE(store::findExchange(database_, 3));
    EXPECT_EQ(store::exchangeTotals(database_).count, 3);
}

TEST_F(JournalAlone, SoManyBytesAreKept)
{
    journal::Journal journal(database_, never, {1000, 100'000});
    for (int i = 1; i <= 30; ++i) post(journal, "cmd=logout", std::string(20'000, 'x'));
    journal.settle();
    EXPECT_LE(store::exchangeTotals(database_).bytes, 100'000);
    EXPECT_EQ(journal.totals().count, 4);
    EXPECT_EQ(journal.totals().last, 30);
}

TEST_F(JournalAlone, ALongTextIsCutAndNoSecretIsParted)
{
    journal::Journal journal(database_, never);
    const std::string secret(40, 's');
    post(journal, "cmd=get&cred=" + secret, std::string(journal::kLongestText - 20, 'x') + secret);
    journal.settle();
    const auto exchange = store::findExchange(database_, 1);
    ASSERT_TRUE(exchange);
    EXPECT_EQ(exchange->reply.find_first_not_of('x'), std::string::npos);
    EXPECT_EQ(exchange->bytesIn, journal::kLongestText + 20);
}

// Nothing is written on the way of an answer.
TEST_F(JournalAlone, WritesWhenItsTurnComes)
{
    std::vector<std::function<void()>> turns;
    std::mutex mutex;
    journal::Journal journal(database_, [&](std::function<void()> write) {
        const std::lock_guard lock(mutex);
        turns.push_back(std::move(write));
    });
    for (int i = 0; i < 100; ++i) post(journal, "cmd=fly", "<kznapi/>");
    const auto turn = [&] {
        const std::lock_guard lock(mutex);
        return turns.empty() ? nullptr : std::exchange(turns.front(), nullptr);
    };
    EXPECT_EQ(store::exchangeTotals(database_).count, 0);
    std::function<void()> write;
    while (!write) write = turn();
    write();
    EXPECT_GT(store::exchangeTotals(database_).count, 0);
}

TEST_F(JournalAlone, IsTakenByManyThreadsAndKeepsAllAtItsEnd)
{
    std::vector<std::thread> threads;
    {
        journal::Journal journal(database_, never);
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&journal] {
                for (int k = 0; k < 250; ++k) post(journal, "cmd=fly", "<kznapi/>");
            });
        }
        for (std::thread& each : threads) each.join();
    }
    const store::ExchangeTotals totals = store::exchangeTotals(database_);
    EXPECT_EQ(totals.count, 1000);
    EXPECT_EQ(totals.last, 1000);
}

// More than it lets wait.
TEST_F(JournalAlone, MuchAtOnceIsRead)
{
    journal::Journal journal(database_, never);
    const std::string form = "cmd=fly&xml=" + std::string(4'000'000, 'x');
    for (int i = 0; i < 20; ++i) post(journal, form, "<kznapi/>");
    journal.settle();
    EXPECT_EQ(journal.totals().count, 20);
    EXPECT_EQ(store::findExchange(database_, 20)->bytesOut, form.size());
}

// Who writes is not there, and nobody waits for it.
TEST_F(JournalAlone, OfMoreThanCanWaitTheHeadsAreKept)
{
    journal::Journal journal(database_, never);
    std::string form = "cmd=fly";
    for (int i = 0; i < 60; ++i) form += "&f" + std::to_string(i) + "=" + std::string(100'000, 'x');
    const std::string reply = "<kznapi><response><result>FAILURE</result><reason>no</reason></response></kznapi>";
    for (int i = 0; i < 20; ++i) post(journal, form, reply);
    journal.settle();
    EXPECT_EQ(journal.totals().count, 20);
    EXPECT_LT(journal.totals().bytes, 33LL * 1024 * 1024);
    EXPECT_GT(store::findExchange(database_, 1)->fields.size(), 6'000'000U);
    const auto last = store::findExchange(database_, 20);
    EXPECT_EQ(last->fields, "[[\"\",\"" + std::to_string(form.size()) + " bytes that are left out\"]]");
    EXPECT_EQ(last->reply, std::to_string(reply.size()) + " bytes that are left out");
    EXPECT_EQ(last->result, "FAILURE");
    EXPECT_EQ(last->bytesOut, form.size());
    post(journal, "cmd=fly", reply);
    journal.settle();
    EXPECT_EQ(store::findExchange(database_, 21)->reply, reply);
}

// Others, who wait for the data file, come in between.
TEST_F(JournalAlone, WritesAFewMegabytesATurn)
{
    std::vector<std::function<void()>> turns;
    std::mutex mutex;
    journal::Journal journal(database_, [&](std::function<void()> write) {
        const std::lock_guard lock(mutex);
        turns.push_back(std::move(write));
    });
    for (int i = 0; i < 40; ++i) post(journal, "cmd=fly", std::string(250'000, 'x'));
    bool isSettled = false;
    journal.whenSettled([&isSettled] { isSettled = true; });
    int count = 0;
    for (long long bytes = 0; !isSettled;) {
        std::unique_lock lock(mutex);
        if (turns.empty()) continue;
        const std::function<void()> write = std::exchange(turns, {}).front();
        lock.unlock();
        write();
        EXPECT_LE(journal.totals().bytes - bytes, 4LL * 1024 * 1024);
        bytes = journal.totals().bytes;
        ++count;
    }
    EXPECT_GE(count, 3);
    EXPECT_EQ(journal.totals().count, 40);
    journal.whenSettled([&count] { count = 0; });
    EXPECT_EQ(count, 0);
}

TEST_F(JournalAlone, ASecretThatIsEncodedTooOftenIsLeftOut)
{
    for (const char* const value :
         {"%253Cuser%253E%253Cpassword%253ES3CRET", "login%26username=anna%26password%3DS3CRET",
          "login%2526username%253Danna%2526password%253DS3CRET"}) {
        const std::string once = logreader::percentDecoded(value);
        const store::Exchange exchange =
            read(std::string("cmd=") + value + "&type=user", failure("no \"" + once + '"'));
        EXPECT_EQ(textOf(exchange).find("S3CRET"), std::string::npos) << textOf(exchange);
        EXPECT_EQ(exchange.result, "FAILURE");
        EXPECT_EQ(exchange.exceptionID, "KZN:Any");
        EXPECT_NE(exchange.fields.find("[\"type\",\"user\"]"), std::string::npos) << exchange.fields;
    }
    const store::Exchange plain = read("cmd=fly&where=100%25+of%2520it", failure("100% of%20it"));
    EXPECT_NE(plain.fields.find("100% of%20it"), std::string::npos) << plain.fields;
    EXPECT_EQ(plain.reason, "100% of%20it");
}

TEST_F(JournalAlone, WhatIsNoNameIsASecret)
{
    const std::string longName = "password:S3CRET" + std::string(100, 'x');
    for (const std::string& name : {std::string("password:S3CRET"), longName}) {
        const std::string quoted = inQuotes(name);
        const store::Exchange exchange = read("cmd=set&" + name + "=1", failure("unknown form field " + quoted));
        EXPECT_EQ(textOf(exchange).find("S3CRET"), std::string::npos) << textOf(exchange);
        EXPECT_NE(exchange.reason.find("unknown form field \"***"), std::string::npos) << exchange.reason;
    }
}

TEST_F(JournalAlone, ASecretThatAReasonCutsIsMasked)
{
    const std::string secret = "S3CRET" + std::string(300'000, 's');
    const store::Exchange exchange =
        read("cmd=" + secret + "&token=" + secret + "&type=x", failure("unknown command " + inQuotes(secret)));
    EXPECT_EQ(textOf(exchange).find("S3CRET"), std::string::npos) << textOf(exchange).substr(0, 1000);
}

// Each of many secrets is looked for in each of many texts.
TEST_F(JournalAlone, WhereALookForSecretsWouldTakeLongTextsAreLeftOut)
{
    const std::string text(journal::kLongestText, 'a');
    std::string form = "cmd=fly";
    for (int i = 100; i < 131; ++i) form += "&token=aaaa" + std::to_string(i);
    form += "&type=user";
    for (int i = 100; i < 131; ++i) form += "&f" + std::to_string(i) + "=" + text;
    const store::Exchange exchange = read(form, failure("aaaa100"));
    EXPECT_EQ(exchange.reason, "***");
    const Json fields = Json::parse(exchange.fields);
    EXPECT_EQ(fields.at(33), Json::array({"f100", text}));
    EXPECT_EQ(fields.at(63), Json::array({"f130", std::to_string(text.size()) + " bytes that are left out"}));
}

TEST_F(JournalAlone, ALongReplyIsHeardAsFarAsItIsKept)
{
    http::Response response;
    response.body.assign(4 * journal::kLongestText, 'x');
    const journal::Heard heard = journal::heardOf({"POST", "/kznconnect/op.do", "", "cmd=fly"}, response);
    EXPECT_LE(journal::sizeOf(heard), journal::kLongestText + 1000);
    EXPECT_EQ(heard.bytesIn, 4 * journal::kLongestText);
    EXPECT_EQ(journal::exchangeOf(heard).reply, std::string(journal::kLongestText, 'x'));
}

// Whatever a field holds, the list of fields is JSON.
TEST_F(JournalAlone, FieldsAreReadAsTheyWere)
{
    const std::string odd = "\"quoted\\ \x01\n\x7F \xC3\xA4 \xE2\x82\xAC";
    http::Request request{"POST", "/kznconnect/op.do", "", "cmd=fly&where=" + odd + "&id=plain&page="};
    const Json fields = Json::parse(journal::exchangeOf(journal::heardOf(std::move(request), {})).fields);
    const Json expected = Json::array({Json::array({"cmd", "fly"}), Json::array({"where", odd}),
                                       Json::array({"id", "plain"}), Json::array({"page", ""})});
    EXPECT_EQ(fields, expected);
}

TEST_F(JournalAlone, ADataFileThatCannotTakeItStopsNobody)
{
    journal::Journal journal(database_, never);
    database_.script("ALTER TABLE exchange RENAME TO elsewhere");
    post(journal, "cmd=fly", "<kznapi/>");
    journal.settle();
    EXPECT_EQ(journal.totals().count, 0);
    database_.script("ALTER TABLE elsewhere RENAME TO exchange");
    post(journal, "cmd=fly", "<kznapi/>");
    journal.settle();
    EXPECT_EQ(journal.totals().count, 1);
    EXPECT_TRUE(store::findExchange(database_, 2));
}

}  // namespace

}  // namespace service::test
