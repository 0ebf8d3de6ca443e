// What a caller hears while bytes move, and how it ends an exchange.
#include <array>
#include <stdexcept>
#include <utility>
#include <vector>

#include "tests/pvutil/HttpFixture.h"

namespace kzn::test {
namespace {

using Steps = std::vector<std::pair<std::size_t, std::size_t>>;

class HttpProgress : public HttpFixture {
protected:
    HttpProgress()
    {
        client.OnProgress([this](std::size_t done, std::size_t whole) {
            steps.emplace_back(done, whole);
            return steps.size() < stopAt;
        });
    }

    void expectGrowing() const
    {
        for (std::size_t at = 1; at < steps.size(); ++at) EXPECT_GT(steps[at].first, steps[at - 1].first);
    }

    int upload(std::string_view large)
    {
        const std::array<std::string_view, 2> pieces = {"head", large};
        return client.Request(server.url("/"), HTTP_METHOD::POST, pieces, {}, HttpOption::kUpload);
    }

    int download() { return client.Request(server.url("/"), HTTP_METHOD::GET, CStringT(), {}, HttpOption::kDownload); }

    Steps steps;
    std::size_t stopAt = 1'000'000;
};

TEST_F(HttpProgress, UploadIsReportedToItsEnd)
{
    server.reply(200, "", std::string(500'000, 'r'));
    EXPECT_EQ(upload(std::string(2'000'000, 'x')), 200);
    ASSERT_GT(steps.size(), 2U);
    expectGrowing();
    for (const auto& step : steps) EXPECT_EQ(step.second, 2'000'004U);
    EXPECT_EQ(steps.back().first, 2'000'004U);
}

TEST_F(HttpProgress, FormIsReportedToItsEnd)
{
    server.reply(200, "", "ok");
    EXPECT_EQ(post("cmd=get"), 200);
    ASSERT_FALSE(steps.empty());
    EXPECT_EQ(steps.back(), std::pair(std::size_t{7}, std::size_t{7}));
    EXPECT_EQ(last().body, "cmd=get");
}

TEST_F(HttpProgress, DownloadIsReportedToItsEnd)
{
    server.reply(200, "image/png", std::string(1'000'000, 'r'));
    EXPECT_EQ(download(), 200);
    ASSERT_GT(steps.size(), 2U);
    expectGrowing();
    for (const auto& step : steps) EXPECT_EQ(step.second, 1'000'000U);
    EXPECT_EQ(steps.back().first, 1'000'000U);
}

TEST_F(HttpProgress, DownloadOfUnknownLength)
{
    server.script(Script().send("HTTP/1.1 200 OK\r\n\r\nabc").pause(30ms).send("def").close());
    EXPECT_EQ(download(), 200);
    ASSERT_FALSE(steps.empty());
    for (const auto& step : steps) EXPECT_EQ(step.second, 0U);
    EXPECT_EQ(steps.back().first, 6U);
}

TEST_F(HttpProgress, UploadEndsWhereTheCallerSaysSo)
{
    stopAt = 2;
    EXPECT_EQ(upload(std::string(20'000'000, 'x')), -1);
    expectNoReply();
    EXPECT_EQ(steps.size(), 2U);
    EXPECT_EQ(server.requests().size(), 0U);
}

TEST_F(HttpProgress, DownloadEndsWhereTheCallerSaysSo)
{
    stopAt = 2;
    server.reply(200, "image/png", std::string(20'000'000, 'r'));
    EXPECT_EQ(download(), -1);
    expectNoReply();
    EXPECT_EQ(steps.size(), 2U);
    stopAt = 1'000'000;
    server.reply(200, "image/png", "r");
    EXPECT_EQ(download(), 200);
}

TEST_F(HttpProgress, CallerThatThrowsEndsTheExchange)
{
    client.OnProgress([](std::size_t, std::size_t) -> bool { throw std::runtime_error("stop"); });
    server.reply(200, "", "never kept");
    EXPECT_EQ(download(), -1);
    expectNoReply();
    EXPECT_EQ(upload("x"), -1);
}

}  // namespace
}  // namespace kzn::test
