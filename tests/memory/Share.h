// How much of all that could fail is made to fail: everything where the program is asked for it, else a share.
#pragma once

#include <cstddef>

/// How many allocations of a call fail, spread evenly; 0 is every one of them. `few` is what an ordinary day takes on
/// the faster system.
std::size_t shareOf(std::size_t few);

/// Every so many of a kind are taken.
std::size_t stepOfShare();
