// The names that addresses give to files: whatever an address holds, a plain file right in its folder.
#include "spaces/IconName.h"

#include <gtest/gtest.h>

#include "tests/support/Text.h"

namespace {

struct NameCase {
    const char* address;
    const char* name;
};

class IconName : public testing::TestWithParam<NameCase> {};

}  // namespace

TEST_P(IconName, IsHarmless)
{
    EXPECT_EQ(narrow(wapi::iconFileName(wide(GetParam().address))), GetParam().name) << GetParam().address;
}

INSTANTIATE_TEST_SUITE_P(
    Addresses, IconName,
    testing::Values(NameCase{"http://h/kzndms/icon/a.png", "a.png"}, NameCase{"http://h/a.png?x=/../b", "a.png"},
                    NameCase{"http://h/a.png#b/c", "a.png"},
                    NameCase{"http://h/\xc3\xa9 \xf0\x9d\x84\x9e.png", "\xc3\xa9 \xf0\x9d\x84\x9e.png"},
                    NameCase{"a.png", "a.png"}, NameCase{"", "temp"}, NameCase{"http://h", "temp"},
                    NameCase{"http://h/", "temp"}, NameCase{"http://h/icons/", "temp"},
                    NameCase{"http://h/?a=b", "temp"}, NameCase{"http://h/..", "temp"}, NameCase{"http://h/.", "temp"},
                    NameCase{"../../etc/passwd", "passwd"}, NameCase{"http://h/..\\..\\evil.exe", "______evil.exe"},
                    NameCase{"http://h/a..b", "a__b"}, NameCase{"http://h/...", "___"},
                    NameCase{"http://h/%2e%2e%2fa", "%2e%2e%2fa"}, NameCase{"http://h/c:evil", "c_evil"},
                    NameCase{"http://h/a.png::$DATA", "a.png__$DATA"}, NameCase{"http://h/a*b|c<d>e\"f", "a_b_c_d_e_f"},
                    NameCase{"http://h/a\tb\nc\x7f", "a_b_c_"}, NameCase{"http://h/CON", "_CON"},
                    NameCase{"http://h/nul.png", "_nul.png"}, NameCase{"http://h/Com1.txt", "_Com1.txt"},
                    NameCase{"http://h/LPT\xc2\xb9", "_LPT\xc2\xb9"}, NameCase{"http://h/com0", "_com0"},
                    NameCase{"http://h/conin$", "_conin$"}, NameCase{"http://h/con .png", "_con .png"},
                    NameCase{"http://h/console.png", "console.png"}, NameCase{"http://h/com10", "com10"},
                    NameCase{"http://h/a.", "a_"}, NameCase{"http://h/a ", "a_"}));

TEST(IconNames, KeepNoZero)
{
    EXPECT_EQ(narrow(wapi::iconFileName("http://h/a"_w + CStringT(1, 0) + "b"_w)), "a_b");
}
