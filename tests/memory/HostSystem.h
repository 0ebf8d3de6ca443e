// What the tests of memory need to know of the system that they run on.
#pragma once

#include <cstddef>

/// How many descriptors, or handles on Windows, the process has open: what a leak of the system's own things shows in.
std::size_t openFiles();

/// By how much less is tried here on an ordinary day, because each call takes so much longer.
extern const std::size_t kSlowness;

/// How many of a call's allocations the long run makes fail; 0 is every one of them.
extern const std::size_t kLongShare;
