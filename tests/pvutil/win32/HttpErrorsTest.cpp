// What the system's errors are told apart into. The numbers are written out: they are the system's, and fixed.
#include "pvutil/win32/HttpErrors.h"

#include <gtest/gtest.h>

#include <utility>

namespace kzn::pvutil {
namespace {

TEST(HttpErrors, EachHasItsCause)
{
    for (const auto& [error, fault] : {std::pair{12005UL, HttpFault::badAddress},
                                       {12006UL, HttpFault::badAddress},
                                       {12007UL, HttpFault::noSuchHost},
                                       {11001UL, HttpFault::noSuchHost},
                                       {12029UL, HttpFault::refused},
                                       {10061UL, HttpFault::refused},
                                       {10051UL, HttpFault::unreachable},
                                       {10065UL, HttpFault::unreachable},
                                       {12188UL, HttpFault::proxy},
                                       {12045UL, HttpFault::tlsUntrusted},
                                       {12169UL, HttpFault::tlsUntrusted},
                                       {12170UL, HttpFault::tlsUntrusted},
                                       {12038UL, HttpFault::tlsWrongName},
                                       {12037UL, HttpFault::tlsExpired},
                                       {12157UL, HttpFault::tlsFailed},
                                       {12175UL, HttpFault::tlsFailed},
                                       {12030UL, HttpFault::cutOff},
                                       {10054UL, HttpFault::cutOff},
                                       {122UL, HttpFault::cutOff},
                                       {12032UL, HttpFault::cutOff},
                                       {12152UL, HttpFault::notHttp},
                                       {12182UL, HttpFault::tooLarge},
                                       {12002UL, HttpFault::silence},
                                       {10060UL, HttpFault::silence},
                                       {14UL, HttpFault::local},
                                       {0UL, HttpFault::none},
                                       {12345UL, HttpFault::none}})
        EXPECT_EQ(faultOf(error), fault) << error;
}

TEST(HttpErrors, FlagsOfASecureFailure)
{
    EXPECT_EQ(faultOf(secureErrorOf(0x08)), HttpFault::tlsUntrusted);
    EXPECT_EQ(faultOf(secureErrorOf(0x10)), HttpFault::tlsWrongName);
    EXPECT_EQ(faultOf(secureErrorOf(0x20)), HttpFault::tlsExpired);
    EXPECT_EQ(faultOf(secureErrorOf(0x80000000)), HttpFault::tlsFailed);
    EXPECT_EQ(faultOf(secureErrorOf(0)), HttpFault::tlsFailed);
    EXPECT_EQ(faultOf(secureErrorOf(0x18)), HttpFault::tlsUntrusted);  // whose name does not count then
    EXPECT_EQ(faultOf(secureErrorOf(0x30)), HttpFault::tlsWrongName);
    // The certificate itself is "invalid" beside each more exact reason.
    EXPECT_EQ(faultOf(secureErrorOf(0x22)), HttpFault::tlsExpired);
}

TEST(HttpErrors, WordsAreOneLineWithoutAStop)
{
    const std::string words = wordsOf(10061);
    EXPECT_NE(words, "");
    EXPECT_EQ(words.find_first_of("\r\n"), std::string::npos);
    EXPECT_EQ(words.find_last_not_of(" ."), words.size() - 1);
    EXPECT_EQ(wordsOf(0), "");
    EXPECT_EQ(wordsOf(0x2FFFFFFF), "");  // a host's own number, which the system knows nothing of
}

}  // namespace
}  // namespace kzn::pvutil
