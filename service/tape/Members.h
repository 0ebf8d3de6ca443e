#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace service::tape {

// A secret as it is spelled where it was found, what it stands for, and the name beside it.
struct Found {
    std::string name;
    std::string spelled;
    std::string value;
};

// What a quoted value may hold: references in a tag, escapes behind backslashes elsewhere.
enum class Quoting { text, tag };

// Adds the secrets that a text names: name=value, name="value", "name": "value", and the password in an address.
// Returns what stands between them.
std::vector<std::string_view> takeMembers(std::string_view text, Quoting quoting, std::vector<Found>& found);

// The value of an attribute of a tag, without the quotes; empty where there is none.
std::string_view attributeOf(std::string_view tag, std::string_view name);

// A text of JSON with its escapes resolved.
std::string withoutBackslashes(std::string_view text);

}  // namespace service::tape
