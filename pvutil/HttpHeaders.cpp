#include "pvutil/HttpHeaders.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <span>

#include "pvutil/Ascii.h"

namespace kzn::pvutil {

namespace {

constexpr std::array<std::string_view, 10> kFraming = {"Connection", "Content-Length",   "Expect", "Host",
                                                       "Keep-Alive", "Proxy-Connection", "TE",     "Trailer",
                                                       "Upgrade",    "Transfer-Encoding"};

std::string_view nameOf(std::string_view line) noexcept
{
    return line.substr(0, line.find(':'));
}

bool isNameUnit(char c) noexcept
{
    return ascii::isAlnum(c) || std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
}

bool isHeader(std::string_view line) noexcept
{
    const auto name = nameOf(line);
    if (name.empty() || name.size() == line.size() || !std::all_of(name.begin(), name.end(), isNameUnit)) return false;
    return std::none_of(line.begin(), line.end(), [](char c) { return ascii::isControl(c) && c != '\t'; });
}

bool isOneOf(std::string_view name, std::span<const std::string_view> names) noexcept
{
    return std::any_of(names.begin(), names.end(), [&](std::string_view each) { return ascii::same(each, name); });
}

std::string headerLine(std::string_view name, std::string_view value)
{
    constexpr std::string_view kParting = ": ";
    std::string line;
    line.reserve(name.size() + kParting.size() + value.size());
    line.append(name).append(kParting).append(value);
    return line;
}

}  // namespace

HeaderLines callerHeaders(std::string_view utf8)
{
    HeaderLines lines;
    while (!utf8.empty()) {
        auto line = utf8.substr(0, utf8.find('\n'));
        utf8.remove_prefix(std::min(line.size() + 1, utf8.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (!isHeader(line) || isOneOf(nameOf(line), kFraming)) continue;
        lines.push_back(headerLine(nameOf(line), ascii::trimmed(line.substr(nameOf(line).size() + 1))));
    }
    return lines;
}

bool hasHeader(const HeaderLines& lines, std::string_view name) noexcept
{
    return std::any_of(lines.begin(), lines.end(), [&](const auto& line) { return ascii::same(nameOf(line), name); });
}

void addHeader(HeaderLines& lines, std::string_view name, std::string_view value)
{
    if (!hasHeader(lines, name)) lines.push_back(headerLine(name, value));
}

bool readLength(std::string_view line, std::optional<std::uint64_t>& length) noexcept
{
    const std::string_view name = nameOf(line);
    if (name.size() == line.size() || !ascii::same(name, "Content-Length")) return true;
    const std::string_view value = line.substr(name.size() + 1);
    const std::string_view digits = ascii::trimmed(value.substr(0, value.find_last_not_of("\r\n") + 1));
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (end != digits.data() + digits.size() || error == std::errc::invalid_argument) return false;
    if (error == std::errc::result_out_of_range) number = std::numeric_limits<std::uint64_t>::max();
    const bool isOne = length.value_or(number) == number;
    length = number;
    return isOne;
}

void removeCredentials(HeaderLines& lines)
{
    constexpr std::array<std::string_view, 3> kCredentials = {"Authorization", "Cookie", "Proxy-Authorization"};
    std::erase_if(lines, [&](const std::string& line) { return isOneOf(nameOf(line), kCredentials); });
}

}  // namespace kzn::pvutil
