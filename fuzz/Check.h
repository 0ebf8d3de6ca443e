// How a fuzzer reports what must not be.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "pvutil/StringEx.h"

/// What every fuzzer of this folder defines; a corpus file is one input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

inline void check(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "fuzz: does not hold: %s\n", what);
    std::abort();
}

inline std::string_view bytes(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// FNV-1a: the same on every target.
inline std::uint64_t hash(std::string_view text)
{
    std::uint64_t value = 0xCBF29CE484222325U;
    for (const char c : text) value = (value ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    return value;
}

/// Where what came of an input is kept, while somebody wants to compare it; null otherwise.
inline std::string* outcome = nullptr;

inline void note(std::string_view text)
{
    if (outcome != nullptr) outcome->append(text).append("\n");
}

inline void note(const CStringT& text)
{
    if (outcome != nullptr) note(kzn::pvutil::stringex::ToUtf8(text));
}

/// Cuts the first byte off an input, for a fuzzer that needs a number beside its text; 0 of an empty one.
inline unsigned takeByte(std::string_view& input)
{
    if (input.empty()) return 0;
    const auto byte = static_cast<unsigned char>(input.front());
    input.remove_prefix(1);
    return byte;
}

/// The input as 16-bit units, low byte first; an odd byte at the end is left out.
inline CStringT unitsOf(std::string_view input)
{
    CStringT text;
    for (std::size_t at = 0; at + 1 < input.size(); at += 2) {
        const auto low = static_cast<unsigned char>(input[at]);
        const auto high = static_cast<unsigned char>(input[at + 1]);
        text += static_cast<kzn::pvutil::stringex::CharT>(low + high * 256);
    }
    return text;
}

}  // namespace fuzz
