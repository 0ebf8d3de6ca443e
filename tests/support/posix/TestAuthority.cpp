#include "tests/support/TestAuthority.h"

#include <cstdlib>

namespace kzn::test {

TestAuthority::TestAuthority(const std::string& file) : isTrusted_(setenv("SSL_CERT_FILE", file.c_str(), 1) == 0) {}

TestAuthority::~TestAuthority()
{
    unsetenv("SSL_CERT_FILE");
}

}  // namespace kzn::test
