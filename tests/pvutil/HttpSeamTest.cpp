// What the client decides above the transport, with a transport that says what no server here can say.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "pvutil/HttpClient.h"
#include "pvutil/HttpTransport.h"
#include "tests/support/Text.h"

namespace kzn::test {
namespace {

// The redirects of an imagined network, and who was asked.
std::map<std::string, std::string>& redirects()
{
    static std::map<std::string, std::string> each;
    return each;
}

std::vector<std::string>& asked()
{
    static std::vector<std::string> each;
    return each;
}

int get(const std::string& from, const std::map<std::string, std::string>& network)
{
    redirects() = network;
    asked().clear();
    pvutil::CZelHttpClient client;
    return client.Request(wide(from), pvutil::HTTP_METHOD::GET, CStringT(), {}, pvutil::HttpOption::kDownload);
}

using Asked = std::vector<std::string>;

TEST(HttpSeam, NeverFromHttpsToHttp)
{
    EXPECT_EQ(get("https://a/", {{"https://a/", "http://a/"}}), 302);
    EXPECT_EQ(asked(), Asked{"https://a/"});
    EXPECT_EQ(get("https://a/", {{"https://a/", "HTTP://b/x"}}), 302);
    EXPECT_EQ(asked(), Asked{"https://a/"});
}

TEST(HttpSeam, NeverFromHttpsToHttpOnTheWayEither)
{
    EXPECT_EQ(get("http://a/", {{"http://a/", "https://b/"}, {"https://b/", "/c"}, {"https://b/c", "http://b/d"}}),
              302);
    EXPECT_EQ(asked(), (Asked{"http://a/", "https://b/", "https://b/c"}));
}

TEST(HttpSeam, SchemeOfTheReplyIsKept)
{
    EXPECT_EQ(get("https://a/x", {{"https://a/x", "//b/y"}, {"https://b/y", "z?q"}}), 200);
    EXPECT_EQ(asked(), (Asked{"https://a/x", "https://b/y", "https://b/z?q"}));
}

TEST(HttpSeam, PortIsNamedWhereItIsNotTheUsualOne)
{
    EXPECT_EQ(get("https://A:443/", {}), 200);
    EXPECT_EQ(asked(), Asked{"https://A/"});
    EXPECT_EQ(get("http://a:443/", {}), 200);
    EXPECT_EQ(asked(), Asked{"http://a:443/"});
    EXPECT_EQ(get("http://[::1]:8420/x", {}), 200);
    EXPECT_EQ(asked(), Asked{"http://[::1]:8420/x"});
    EXPECT_EQ(get("http://a:/", {}), 200);
    EXPECT_EQ(asked(), Asked{"http://a/"});
}

}  // namespace
}  // namespace kzn::test

namespace kzn::pvutil {

// In the place of the system's own.
bool transport(HttpExchange& exchange)
{
    const std::string url = exchange.url.text();
    test::asked().push_back(url);
    const auto found = test::redirects().find(url);
    exchange.location = found == test::redirects().end() ? std::string() : found->second;
    return exchange.begin(exchange.location.empty() ? 200 : 302, 0);
}

void shutDownTransport() noexcept {}

}  // namespace kzn::pvutil
