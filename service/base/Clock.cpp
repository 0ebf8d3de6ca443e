#include "service/base/Clock.h"

#include <algorithm>
#include <chrono>

namespace service {

namespace {

constexpr std::string_view kShape = "0000-00-00T00:00:00Z";

long long machineTime()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

// The number that stands at a place of the text; nothing where it is none.
std::optional<int> digitsAt(std::string_view text, std::size_t at, std::size_t length)
{
    int value = 0;
    for (const char c : text.substr(at, length)) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + (c - '0');
    }
    return value;
}

// With so many places, those of the sign included.
void appendNumber(std::string& text, int number, std::size_t places)
{
    if (number < 0) {
        text += '-';
        number = -number;
        --places;
    }
    const std::string digits = std::to_string(number);
    text.append(places - std::min(places, digits.size()), '0').append(digits);
}

}  // namespace

long long Clock::now() const
{
    return machineTime() + offset_;
}

void Clock::set(long long moment)
{
    offset_ = moment - machineTime();
}

std::string timeText(long long ms)
{
    using namespace std::chrono;
    const sys_seconds moment(floor<seconds>(milliseconds(ms)));
    const sys_days midnight = floor<days>(moment);
    const year_month_day day(midnight);
    const hh_mm_ss time(moment - midnight);
    std::string text;
    text.reserve(kShape.size());
    appendNumber(text, static_cast<int>(day.year()), 4);
    appendNumber(text += '-', static_cast<int>(static_cast<unsigned>(day.month())), 2);
    appendNumber(text += '-', static_cast<int>(static_cast<unsigned>(day.day())), 2);
    appendNumber(text += 'T', static_cast<int>(time.hours().count()), 2);
    appendNumber(text += ':', static_cast<int>(time.minutes().count()), 2);
    appendNumber(text += ':', static_cast<int>(time.seconds().count()), 2);
    return text += 'Z';
}

std::optional<long long> momentOf(std::string_view text)
{
    if (text.size() != kShape.size()) return std::nullopt;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (kShape[i] != '0' && text[i] != kShape[i]) return std::nullopt;
    }
    const auto year = digitsAt(text, 0, 4);
    const auto month = digitsAt(text, 5, 2);
    const auto day = digitsAt(text, 8, 2);
    const auto hour = digitsAt(text, 11, 2);
    const auto minute = digitsAt(text, 14, 2);
    const auto second = digitsAt(text, 17, 2);
    if (!year || !month || !day || !hour || !minute || !second) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok() || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
    const auto moment = std::chrono::sys_days(date) + std::chrono::hours(*hour) + std::chrono::minutes(*minute) +
                        std::chrono::seconds(*second);
    return std::chrono::duration_cast<std::chrono::milliseconds>(moment.time_since_epoch()).count();
}

}  // namespace service
