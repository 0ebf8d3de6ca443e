// The library's texts and records as JSON: members keep their names and their order.
#pragma once

#include <nlohmann/json.hpp>

#include "client/WapiClient.h"
#include "records/AccountTables.h"
#include "records/SpaceTables.h"

namespace host {

using Json = nlohmann::ordered_json;

}  // namespace host

// The library's text is a basic_string like many others, which JSON would take for a list of numbers.
template <>
struct nlohmann::adl_serializer<CStringT> {
    static void to_json(host::Json& json, const CStringT& text) { json = kzn::pvutil::stringex::ToUtf8(text); }
};

template <pvrecords::HasMembers Record>
void to_json(host::Json& json, const Record& record)
{
    json = host::Json::object();
    pvrecords::eachMember<Record>([&](const auto& member) { json[member.name] = member.get(record); });
}
