// A host whose look-up takes a second, "slow.invalid", where a program can have the system look it up so.
#pragma once

namespace kzn::test {

extern const bool kHasSlowLookUp;

/// How often it was looked up.
int slowLookUps() noexcept;

}  // namespace kzn::test
