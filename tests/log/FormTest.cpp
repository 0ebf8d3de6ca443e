// The fields of a request.
#include "log/Form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace logreader;

std::string shown(std::string_view form)
{
    std::string text;
    for (const Field& field : fieldsOf(form)) text += "[" + field.name + "|" + field.value + "]";
    return text;
}

TEST(Form, FieldsAreDecoded)
{
    EXPECT_EQ(shown("cmd=get&id=a%26b%C3%A9+c&%6eote=1%2"), "[cmd|get][id|a&b\xC3\xA9 c][note|1%2]");
    EXPECT_EQ(shown("a=b=c&d&&=e&f="), "[a|b=c][d|][|e][f|]");
    EXPECT_EQ(shown("100%&%zz=%41%4"), "[100%|][%zz|A%4]");
    EXPECT_EQ(shown(""), "");
}

TEST(Form, CredentialThatStandsAsItIsEndsAtTheNextName)
{
    EXPECT_EQ(shown("cred=c&1 ]]>&x=y&cmd=create&type=wtng"), "[cred|c&1 ]]>&x=y][cmd|create][type|wtng]");
    EXPECT_EQ(shown("cmd=get&cred=a&b"), "[cmd|get][cred|a&b]");
}

TEST(Form, SecretsAreKnownByTheEndOfTheirName)
{
    for (const char* const name : {"password", "token", "cred", "Password", "QueltAVToken", "rootCred", "TOKEN", "pwd",
                                   "clientSecret", "credentials"}) {
        EXPECT_TRUE(isSecretName(name)) << name;
    }
    for (const char* const name : {"", "cre", "credit", "changePasswordURL", "tokens", "username", "tabName"}) {
        EXPECT_FALSE(isSecretName(name)) << name;
    }
}

TEST(Form, RequestIsKnownByItsForm)
{
    for (const char* const text : {"cmd=get", "cred=c&cmd=create", "&cred=", "a=1&cmd=get", "x%20y=1&cred=2 3",
                                   "cmd=", "free&cmd=get&x= ", "free text&cred=a%20b", "<xml/>&cred="}) {
        EXPECT_TRUE(looksLikeForm(text)) << text;
    }
    for (const char* const text : {"", "It works!", "<kznapi/>", "a=b", "<a cmd=1>&cmd=get", "{\"a\":1}", "=&x",
                                   "free text&cmd=get", "<a>&cred=c</a>"}) {
        EXPECT_FALSE(looksLikeForm(text)) << text;
    }
}

}  // namespace
