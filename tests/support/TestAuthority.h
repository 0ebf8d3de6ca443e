// A certificate authority of the tests' own, which this process trusts while one of these lives.
#pragma once

#include <string>

namespace kzn::test {

class TestAuthority {
public:
    /// `file` is its certificate.
    explicit TestAuthority(const std::string& file);
    TestAuthority(const TestAuthority&) = delete;
    TestAuthority& operator=(const TestAuthority&) = delete;
    ~TestAuthority();

    /// Whether the system has taken it in.
    bool isTrusted() const { return isTrusted_; }

private:
    bool isTrusted_ = false;
    const void* kept_ = nullptr;
};

}  // namespace kzn::test
