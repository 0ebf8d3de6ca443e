#include "service/tape/Headers.h"

#include <algorithm>

namespace service::tape {

std::string lower(std::string_view text)
{
    std::string out(text);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

bool isSameName(std::string_view a, std::string_view b)
{
    return lower(a) == lower(b);
}

std::string headerOf(const http::HeaderLines& headers, std::string_view name)
{
    const auto found = std::ranges::find_if(headers, [name](const auto& line) { return isSameName(line.first, name); });
    return found == headers.end() ? std::string() : found->second;
}

}  // namespace service::tape
