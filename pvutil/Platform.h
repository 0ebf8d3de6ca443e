// What differs in the types that cross the library's boundary: the unit of a wide string, and how a name is exported.
#pragma once

// The library's version; the build reads it from here.
#define PVWAPI_VERSION "1.0.0"
#define PVWAPI_VERSION_NUMBER 10000

// Strings, vectors and whole records of the standard library cross the boundary, so that a host needs the library's own
// compiler and run time. One line here is easier to read than what the linker would say, or a crash.
#ifdef _MSC_VER
#error "pvWapi cannot be used with Visual C++: on Windows its class needs MinGW-w64 GCC with POSIX threads"
#endif
#if __cplusplus < 202002L
#error "pvWapi needs C++20: compile with -std=c++20 or later"
#endif
#include <cstddef>
#if defined(_WIN32) && !defined(_GLIBCXX_HAS_GTHREADS)
#error "pvWapi needs the compiler with POSIX threads: ...-w64-mingw32-g++-posix and not ...-win32"
#endif
#if defined(_LIBCPP_VERSION) || !defined(__GLIBCXX__)
#error "pvWapi cannot be used with this standard library: its class needs GCC's libstdc++, and not libc++"
#elif !_GLIBCXX_USE_CXX11_ABI
#error "pvWapi needs the strings of C++11: compile with -D_GLIBCXX_USE_CXX11_ABI=1, the default"
#endif

#ifdef _WIN32
#if defined(PVWAPI_BUILDING)
#define PVWAPI_API __declspec(dllexport)
#elif defined(PVWAPI_STATIC)
#define PVWAPI_API
#else
#define PVWAPI_API __declspec(dllimport)
#endif
#else
#define PVWAPI_API __attribute__((visibility("default")))
#endif

namespace kzn::pvutil::stringex {

#ifdef _WIN32
using CharT = wchar_t;
#else
using CharT = char16_t;
#endif

static_assert(sizeof(CharT) == 2, "text is UTF-16 on every target");

}  // namespace kzn::pvutil::stringex
