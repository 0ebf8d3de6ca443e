// What differs in the types that cross the library's boundary: the unit of a wide string, and how a name is exported.
#pragma once

#define PVWAPI_VERSION "1.0.0"
#define PVWAPI_VERSION_NUMBER 10000

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
