// The four endpoints that a client derives from its base URL, and what else a new client holds.
#include <gtest/gtest.h>

#include <array>

#include "client/WapiClient.h"
#include "tests/support/Text.h"

namespace {

struct Endpoints {
    const char* base;
    const char* nullSession;
    const char* upload;
    const char* dms;
};

constexpr std::array kDerived = {
    Endpoints{"http://host/kznconnect/op.do", "http://host/kznconnect/nullsession.do?",
              "http://host/kznconnect/upload.do?", "http://host/kzndms"},
    // the search starts before the last character
    Endpoints{"http://host/kznconnect/op.do/", "http://host/kznconnect/nullsession.do?",
              "http://host/kznconnect/upload.do?", "http://host/kzndms"},
    // with two slashes at the end the first of them is found
    Endpoints{"http://host/a//", "http://host/a/nullsession.do?", "http://host/a/upload.do?", "http://host/a///kzndms"},
    // without the operation path the whole address stays
    Endpoints{"https://host:8443/a/b", "https://host:8443/a/nullsession.do?", "https://host:8443/a/upload.do?",
              "https://host:8443/a/b/kzndms"},
    Endpoints{"http://host", "http://nullsession.do?", "http://upload.do?", "http://host/kzndms"},
    // the last occurrence counts, wherever it stands
    Endpoints{"http://h/kznconnect/op.do/x/kznconnect/op.do", "http://h/kznconnect/op.do/x/kznconnect/nullsession.do?",
              "http://h/kznconnect/op.do/x/kznconnect/upload.do?", "http://h/kznconnect/op.do/x/kzndms"},
    Endpoints{"http://h/kznconnect/op.do?next=/y", "http://h/kznconnect/op.do?next=/nullsession.do?",
              "http://h/kznconnect/op.do?next=/upload.do?", "http://h/kzndms"},
    Endpoints{"/kznconnect/op.do", "/kznconnect/nullsession.do?", "/kznconnect/upload.do?", "/kzndms"},
    // no slash at all
    Endpoints{"host", "host/nullsession.do?", "host/upload.do?", "host/kzndms"},
    Endpoints{"x", "x/nullsession.do?", "x/upload.do?", "x/kzndms"},
    Endpoints{"/", "//nullsession.do?", "//upload.do?", "//kzndms"},
    Endpoints{"/x", "/nullsession.do?", "/upload.do?", "/x/kzndms"},
    Endpoints{"http://höst/😀/op.do", "http://höst/😀/nullsession.do?", "http://höst/😀/upload.do?",
              "http://höst/😀/op.do/kzndms"},
};

}  // namespace

TEST(Endpoints, FollowFromTheBase)
{
    for (const Endpoints& wanted : kDerived) {
        const CWapiClient client(wide(wanted.base));
        EXPECT_EQ(narrow(client.getOpURL()), wanted.base);
        EXPECT_EQ(narrow(client.getNullSessionURL()), wanted.nullSession) << wanted.base;
        EXPECT_EQ(narrow(client.getUploadURL()), wanted.upload) << wanted.base;
        EXPECT_EQ(narrow(client.getDmsURL()), wanted.dms) << wanted.base;
    }
}

TEST(Endpoints, TakeTheDefaultsForAnEmptyBase)
{
    const CWapiClient client(CStringT{});
    EXPECT_EQ(narrow(client.getOpURL()), "http://127.0.0.1:8420/kznconnect/op.do");
    EXPECT_EQ(narrow(client.getNullSessionURL()), "http://127.0.0.1:8420/kznconnect/nullsession.do");
    EXPECT_EQ(narrow(client.getUploadURL()), "http://127.0.0.1:8420/kznconnect/upload.do");
    EXPECT_EQ(narrow(client.getDmsURL()), "http://127.0.0.1:8420/kzndms");
}

TEST(NewClient, HoldsNothingAndOneHour)
{
    CWapiClient client("http://host/kznconnect/op.do"_w);
    EXPECT_EQ(client.getUserID(), CStringT());
    EXPECT_EQ(client.getNamespaceID(), CStringT());
    EXPECT_EQ(client.getRootCred(), CStringT());
    EXPECT_EQ(client.getNetworkError(), 0);
    EXPECT_EQ(client.getRefreshInterval(), 3'600'000U);

    const WAPIMESSAGE last = client.GetLstMsg();
    EXPECT_EQ(last.code, 0);
    EXPECT_EQ(last.reason, CStringT());
    EXPECT_EQ(last.exceptionID, CStringT());
    EXPECT_EQ(last.response, CStringT());
}

TEST(NewClient, GivesBackTheCredentialItWasGiven)
{
    CWapiClient client("http://host/kznconnect/op.do"_w);
    client.setRootCred("c&1 ]]> é𝄞"_w);
    EXPECT_EQ(narrow(client.getRootCred()), "c&1 ]]> é𝄞");
    client.setRootCred(client.getRootCred());
    EXPECT_EQ(narrow(client.getRootCred()), "c&1 ]]> é𝄞");
}

TEST(NewClient, GivesOutCopiesOfItsLastMessage)
{
    CWapiClient client("http://host/kznconnect/op.do"_w);
    std::vector<CWapiClient::WKSP_Field_Value> none;
    CStringT id;
    ASSERT_EQ(client.createSpace({}, {}, none, id, 0, 0), 0);

    WAPIMESSAGE copy = client.GetLstMsg();
    copy.reason.clear();
    EXPECT_EQ(narrow(client.GetLstMsg().reason), "workspace name can't be empty.");
}
