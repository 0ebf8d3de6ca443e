#include "service/faults/Fault.h"

#include <algorithm>
#include <array>
#include <limits>

#include "service/base/Json.h"
#include "service/base/Refusal.h"

namespace service::faults {

namespace {

constexpr long long kMost = std::numeric_limits<long long>::max();
constexpr long long kMostLines = 200'000;
constexpr long long kMostBytes = 1LL << 40;
constexpr long long kLongestDelay = 60LL * 60 * 1000;

void readNothing(JsonObject& /*object*/, Fault& /*fault*/) {}

void readByte(JsonObject& object, Fault& fault)
{
    fault.byte = object.number("byte", 0, 0, kMostBytes);
}

void readRate(JsonObject& object, Fault& fault)
{
    fault.bytesPerSecond = object.number("bytesPerSecond", 1, 1, kMostBytes);
}

void readBy(JsonObject& object, Fault& fault)
{
    fault.by = object.number("by", -kMostBytes, kMostBytes);
}

void readCount(JsonObject& object, Fault& fault)
{
    fault.count = object.number("count", 1000, 1, kMostLines);
}

void readRedirect(JsonObject& object, Fault& fault)
{
    constexpr std::array kStatuses{301U, 302U, 303U, 307U, 308U};
    fault.url = object.text("url");
    if (std::ranges::any_of(fault.url, [](char c) { return c <= ' ' || c > '~'; })) {
        throw JsonError(object.name() + ": \"url\" cannot stand in a header");
    }
    fault.status = static_cast<unsigned>(object.number("status", 302, 301, 308));
    if (std::ranges::find(kStatuses, fault.status) == kStatuses.end()) {
        throw JsonError(object.name() + ": \"status\" is none of a redirection");
    }
}

void readCharset(JsonObject& object, Fault& fault)
{
    fault.charset = object.text("charset");
    const auto isPlain = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '_';
    };
    if (!std::ranges::all_of(fault.charset, isPlain)) throw JsonError(object.name() + ": \"charset\" cannot be a name");
}

void readFailure(JsonObject& object, Fault& fault)
{
    fault.reason = object.text("reason", "this call was to fail");
    fault.exceptionID = object.text("exceptionID", exceptionid::kInternal);
}

void readDelay(JsonObject& object, Fault& fault)
{
    fault.ms = object.number("ms", 0, kLongestDelay);
}

struct Description {
    Kind kind;
    std::string_view name;
    bool instead;
    void (*read)(JsonObject& object, Fault& fault);
};

constexpr std::array kDescriptions{
    Description{Kind::refuse, "refuse", true, readNothing},
    Description{Kind::close, "close", false, readNothing},
    Description{Kind::reset, "reset", false, readByte},
    Description{Kind::stall, "stall", false, readByte},
    Description{Kind::rate, "rate", false, readRate},
    Description{Kind::endless, "endless", false, readNothing},
    Description{Kind::length, "length", false, readBy},
    Description{Kind::chunks, "chunks", false, readNothing},
    Description{Kind::headers, "headers", false, readCount},
    Description{Kind::interim, "interim", false, readCount},
    Description{Kind::redirect, "redirect", true, readRedirect},
    Description{Kind::charset, "charset", false, readCharset},
    Description{Kind::failure, "failure", true, readFailure},
    Description{Kind::delay, "delay", false, readDelay},
};

const Description& descriptionOf(Kind kind)
{
    return *std::ranges::find(kDescriptions, kind, &Description::kind);
}

void readWhen(JsonObject& object, Fault& fault)
{
    fault.operation = object.text("operation", {});
    fault.call = object.number("call", 0, 1, kMost);
    fault.probability = object.share("probability", 1);
    fault.seed = object.number("seed", 0, 0, kMost);
    fault.times = object.number("times", 0, 1, kMost);
}

}  // namespace

Fault faultOf(const Json& description)
{
    JsonObject object(description, "the fault");
    const std::string name = object.text("fault");
    const auto* const found = std::ranges::find(kDescriptions, name, &Description::name);
    if (found == kDescriptions.end()) {
        std::string names;
        for (const Description& each : kDescriptions) names += (names.empty() ? "" : ", ") + std::string(each.name);
        throw JsonError("\"fault\" is one of " + names);
    }
    object.setName("the fault \"" + name + '"');
    Fault fault;
    fault.kind = found->kind;
    found->read(object, fault);
    readWhen(object, fault);
    object.end();
    return fault;
}

std::string_view kindName(Kind kind)
{
    return descriptionOf(kind).name;
}

bool isInstead(Kind kind)
{
    return descriptionOf(kind).instead;
}

}  // namespace service::faults
