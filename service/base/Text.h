#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace service {

// True for the characters that XML 1.0 can carry at all.
bool isXmlCharacter(std::uint32_t character);

// The length in bytes of the well-formed UTF-8 sequence at the start of `text`; 0 where there is none.
std::size_t sequenceLength(std::string_view text, std::uint32_t& character);

// What `text` holds that XML cannot carry, as words behind "it holds"; empty where it is UTF-8 of XML characters alone.
std::string faultOf(std::string_view text);

void appendUtf8(std::string& out, std::uint32_t character);

// How many characters a well-formed text has.
std::size_t characterCount(std::string_view text);

// A whole decimal number between the limits; nothing for any other text.
std::optional<long long> wholeNumber(std::string_view text, long long least, long long most);

// The pieces between the separators; always at least one.
std::vector<std::string_view> split(std::string_view text, char separator);

// `text` in quotes and cut to a readable length, for a reason that quotes what was sent.
std::string inQuotes(std::string_view text);

// Compares all of both, wherever they first differ: how long it takes tells nothing of a secret.
bool sameText(std::string_view a, std::string_view b);

std::string_view trimmed(std::string_view text);

inline const char* truthText(bool value)
{
    return value ? "true" : "false";
}

}  // namespace service
