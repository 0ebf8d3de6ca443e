// How the system's notation of proxies is read.
#include "pvutil/win32/HttpProxy.h"

#include <gtest/gtest.h>

namespace kzn::pvutil {
namespace {

std::string proxy(std::string_view url, std::string_view proxies, std::string_view bypass = "")
{
    return proxyFor(parseUrl(url).value(), proxies, bypass);
}

TEST(HttpProxy, NoneIsSet)
{
    EXPECT_EQ(proxy("http://a.example/", ""), "");
    EXPECT_EQ(proxy("http://a.example/", " ; "), "");
}

TEST(HttpProxy, OneForEverything)
{
    EXPECT_EQ(proxy("http://a.example/", "proxy:3128"), "proxy:3128");
    EXPECT_EQ(proxy("https://a.example/", "proxy:3128"), "proxy:3128");
    EXPECT_EQ(proxy("http://a.example/", "proxy"), "proxy:80");
    EXPECT_EQ(proxy("http://a.example/", "http://proxy:3128/"), "proxy:3128");
    EXPECT_EQ(proxy("http://a.example/", "[::1]"), "[::1]:80");
    EXPECT_EQ(proxy("http://a.example/", "[::1]:3128"), "[::1]:3128");
}

TEST(HttpProxy, OneForEachScheme)
{
    constexpr std::string_view kBoth = "ftp=f:21 http=p:1;HTTPS=https://s:2";
    EXPECT_EQ(proxy("http://a.example/", kBoth), "p:1");
    EXPECT_EQ(proxy("https://a.example/", kBoth), "s:2");
    EXPECT_EQ(proxy("https://a.example/", "http=p:1"), "");
}

TEST(HttpProxy, HostsThatNeedNone)
{
    constexpr std::string_view kBypass = "*.inside.example; 127.0.0.1 <local>";
    EXPECT_EQ(proxy("http://a.example/", "p:1", kBypass), "p:1");
    EXPECT_EQ(proxy("http://A.Inside.Example/", "p:1", kBypass), "");
    EXPECT_EQ(proxy("http://inside.example/", "p:1", kBypass), "p:1");
    EXPECT_EQ(proxy("http://127.0.0.1:8420/", "p:1", kBypass), "");
    EXPECT_EQ(proxy("http://localhost/", "p:1", kBypass), "");
    EXPECT_EQ(proxy("http://localhost/", "p:1", "*.example"), "p:1");
    EXPECT_EQ(proxy("http://127.5.6.7/", "p:1", "127.*"), "");
    EXPECT_EQ(proxy("http://a.example/", "p:1", "a.*ample;b"), "");
    EXPECT_EQ(proxy("http://a.example/", "p:1", "a.ex"), "p:1");
    EXPECT_EQ(proxy("http://a.example/", "p:1", "*"), "");
}

}  // namespace
}  // namespace kzn::pvutil
