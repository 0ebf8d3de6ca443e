#include "service/base/Clock.h"

#include "service/control/Handlers.h"
#include "service/store/ServiceSettings.h"

namespace service::control {

namespace {

constexpr long long kEarliest = 0;
constexpr long long kLatest = 253'402'300'799'000;  // the last second of the year 9999

// A clock beyond what a time can be written as would make replies that nobody can read.
Json keep(Desk& desk)
{
    const long long now = desk.settings.clock.now();
    if (now < kEarliest || now > kLatest) throw ControlError(400, "the clock goes from the year 1970 to the year 9999");
    store::setClockOffset(desk.database, desk.settings.clock.offset());
    return Json{{"time", timeText(now)}, {"now", now}, {"offset", desk.settings.clock.offset()}};
}

}  // namespace

Json showClock(Desk& desk, const Call& /*call*/)
{
    const Clock& clock = desk.settings.clock;
    return Json{{"time", timeText(clock.now())}, {"now", clock.now()}, {"offset", clock.offset()}};
}

Json setClock(Desk& desk, const Call& call)
{
    JsonObject body(call.body, "the request");
    const std::string text = body.text("time", {});
    const long long now = body.number("now", -1, kEarliest, kLatest);
    body.end();
    if (text.empty() == (now < 0)) throw ControlError(400, R"(either "time" or "now" has to be there)");
    const std::optional<long long> moment = text.empty() ? now : momentOf(text);
    if (!moment) throw ControlError(400, R"("time" has to look like "2026-02-01T09:30:00Z")");
    desk.settings.clock.set(*moment);
    return keep(desk);
}

Json advanceClock(Desk& desk, const Call& call)
{
    JsonObject body(call.body, "the request");
    const long long seconds = body.number("seconds", -kLatest / 1000, kLatest / 1000);
    body.end();
    desk.settings.clock.advance(seconds * 1000);
    return keep(desk);
}

Json machineClock(Desk& desk, const Call& /*call*/)
{
    desk.settings.clock.setOffset(0);
    return keep(desk);
}

}  // namespace service::control
