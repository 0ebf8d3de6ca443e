// What the tests of memory need to know of the system that they run on.
#pragma once

#include <cstddef>

/// How many descriptors, or handles on Windows, the process has open: what a leak of the system's own things shows in.
std::size_t openFiles();

/// By how much less is tried here on an ordinary day, because each call takes so much longer.
extern const std::size_t kSlowness;
