#include "service/base/Json.h"

#include <algorithm>

#include "service/base/Text.h"

namespace service {

namespace {

std::string placeText(std::string_view text, std::size_t at)
{
    const std::string_view before = text.substr(0, std::min(at, text.size()));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t start = before.rfind('\n');
    const std::size_t column = start == std::string_view::npos ? before.size() : before.size() - start - 1;
    return "line " + std::to_string(line) + ", column " + std::to_string(std::max<std::size_t>(column, 1));
}

}  // namespace

Json parseJson(std::string_view text)
{
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        throw JsonError("this is not JSON: " + placeText(text, error.byte));
    }
}

JsonObject::JsonObject(const Json& value, std::string what) : value_(value), what_(std::move(what))
{
    if (!value_.is_object()) throw JsonError(what_ + " has to be an object");
}

const Json* JsonObject::find(const char* name)
{
    known_.insert(name);
    const auto found = value_.find(name);
    return found == value_.end() ? nullptr : &*found;
}

void JsonObject::wrong(const char* name, const std::string& why) const
{
    throw JsonError(what_ + ": \"" + name + "\" " + why);
}

bool JsonObject::has(const char* name)
{
    return find(name) != nullptr;
}

std::string JsonObject::text(const char* name)
{
    if (!has(name)) wrong(name, "is missing");
    std::string found = text(name, {});
    if (found.empty()) wrong(name, "may not be empty");
    return found;
}

std::string JsonObject::text(const char* name, std::string otherwise)
{
    const Json* const value = find(name);
    if (value == nullptr) return otherwise;
    if (!value->is_string()) wrong(name, "has to be a text");
    auto found = value->get<std::string>();
    if (const std::string fault = faultOf(found); !fault.empty()) wrong(name, "holds " + fault);
    return found;
}

bool JsonObject::truth(const char* name, bool otherwise)
{
    const Json* const value = find(name);
    if (value == nullptr) return otherwise;
    if (!value->is_boolean()) wrong(name, "has to be true or false");
    return value->get<bool>();
}

long long JsonObject::number(const char* name, long long least, long long most)
{
    if (!has(name)) wrong(name, "is missing");
    return number(name, least, least, most);
}

long long JsonObject::number(const char* name, long long otherwise, long long least, long long most)
{
    const Json* const value = find(name);
    if (value == nullptr) return otherwise;
    const bool fits =
        value->is_number_integer() && !(value->is_number_unsigned() && value->get<std::uint64_t>() >> 63U);
    const long long found = fits ? value->get<long long>() : 0;
    if (!fits || found < least || found > most) {
        wrong(name, "has to be a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return found;
}

double JsonObject::share(const char* name, double otherwise)
{
    const Json* const value = find(name);
    if (value == nullptr) return otherwise;
    if (!value->is_number() || value->get<double>() < 0 || value->get<double>() > 1) {
        wrong(name, "has to be a number from 0 to 1");
    }
    return value->get<double>();
}

const Json& JsonObject::list(const char* name)
{
    static const Json kNone = Json::array();
    const Json* const value = find(name);
    if (value == nullptr) return kNone;
    if (!value->is_array()) wrong(name, "has to be a list");
    return *value;
}

const Json& JsonObject::object(const char* name)
{
    static const Json kNone = Json::object();
    const Json* const value = find(name);
    if (value == nullptr) return kNone;
    if (!value->is_object()) wrong(name, "has to be an object");
    return *value;
}

void JsonObject::end() const
{
    for (const auto& [name, value] : value_.items()) {
        if (!known_.contains(name)) throw JsonError(what_ + ": nothing is called " + service::inQuotes(name));
    }
}

}  // namespace service
