// A client of the C interface, and the server that it talks to.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "capi/pvwapi_c.h"
#include "tests/support/CaptureServer.h"

inline pvw_text textOf(std::u16string_view text)
{
    return {text.data(), text.size()};
}

/// The same of a text in the library's own unit.
inline pvw_text ownTextOf(const CStringT& text)
{
    return {reinterpret_cast<const pvw_char*>(text.data()), text.size()};
}

class CHost : public testing::Test {
protected:
    CHost() { EXPECT_EQ(pvw_client_new(ownTextOf(address), &client), 1); }
    ~CHost() override { EXPECT_EQ(pvw_client_free(client), client == nullptr ? 0 : 1); }

    static std::string replyText(const std::string& result, const std::string& rest)
    {
        return "<kznapi><response><result>" + result + "</result></response>" + rest + "</kznapi>";
    }

    void reply(const std::string& result, const std::string& rest)
    {
        server.reply(200, "text/xml; charset=utf-8", replyText(result, rest));
    }

    std::size_t requestCount() const { return server.requests().size(); }

    int errorKind() const
    {
        int kind = -1;
        EXPECT_EQ(pvw_get_network_error_kind(client, &kind), 1);
        return kind;
    }

    kzn::test::CaptureServer server;
    const CStringT address = server.url("/kznconnect/op.do");
    pvw_client* client = nullptr;
};
