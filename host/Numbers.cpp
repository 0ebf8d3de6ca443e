#include "host/Numbers.h"

#include <charconv>
#include <system_error>

namespace host {

namespace {

constexpr int kMostSeconds = 4'000'000;

std::optional<double> secondsIn(const std::string& text)
{
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (error != std::errc() || stop != end) return std::nullopt;
    return seconds;
}

}  // namespace

std::optional<unsigned int> millisecondsIn(const std::string& text)
{
    const std::optional<double> seconds = secondsIn(text);
    if (!seconds || !(*seconds >= 0.001 && *seconds <= kMostSeconds)) return std::nullopt;
    return static_cast<unsigned int>(*seconds * 1000);
}

std::string secondsProblem(const std::string& text)
{
    if (millisecondsIn(text)) return {};
    const bool isMuch = secondsIn(text).value_or(0) > kMostSeconds;
    return "'" + text + "' is " +
           (isMuch ? "more than " + std::to_string(kMostSeconds) + " seconds" : "not a number of seconds above 0");
}

std::string numberProblem(const std::string& text)
{
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::string() : "'" + text + "' is not a whole number";
}

}  // namespace host
