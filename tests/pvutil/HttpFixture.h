// What the tests of the HTTP client share: a server, a client, and limits that end with the test.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>

#include "pvutil/HttpClient.h"
#include "tests/support/CaptureServer.h"
#include "tests/support/Text.h"

namespace kzn::test {

using namespace std::chrono_literals;
using pvutil::CZelHttpClient;
using pvutil::HTTP_METHOD;
using pvutil::HttpLimits;
namespace HttpOption = pvutil::HttpOption;

class HttpFixture : public testing::Test {
protected:
    ~HttpFixture() override { CZelHttpClient::SetLimits({}); }

    int post(std::string_view body, std::string_view path = "/op.do")
    {
        return client.Request(server.url(path), HTTP_METHOD::POST, wide(body), {}, HttpOption::kForm);
    }

    int get(const CStringT& url, std::string_view headers = "")
    {
        return client.Request(url, HTTP_METHOD::GET, CStringT(), wide(headers), HttpOption::kProxy);
    }

    int getPath(std::string_view path) { return get(server.url(path)); }

    int postWithHeaders(std::string_view headers)
    {
        return client.Request(server.url("/op.do"), HTTP_METHOD::POST, "a=b"_w, wide(headers), HttpOption::kProxy);
    }

    CapturedRequest last() const { return server.requests().back(); }
    std::string text() const { return narrow(client.ResponseContent()); }

    // Nothing of an exchange that came to nothing can be taken for a reply.
    void expectNoReply() const
    {
        EXPECT_EQ(client.GetResponse(), "");
        EXPECT_EQ(text(), "");
    }

    CaptureServer server;
    CZelHttpClient client;
};

}  // namespace kzn::test
