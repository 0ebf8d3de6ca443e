// The records of the public header in tests: how one is filled with a marker and how it shows, member by member.
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "client/WapiClient.h"
#include "records/AccountTables.h"
#include "records/SpaceTables.h"
#include "tests/support/Text.h"
#include "tests/support/WireFile.h"

template <typename Value>
concept IsNumber = std::is_integral_v<Value> || std::is_enum_v<Value>;

template <typename Value>
inline constexpr bool kIsList = false;
template <typename Item>
inline constexpr bool kIsList<std::vector<Item>> = true;

/// What an output holds before the call, so that whoever leaves it alone, adds to it or replaces it can be told apart.
inline void mark(CStringT& text)
{
    text = "before"_w;
}

/// A number stays.
void mark(IsNumber auto&) {}

template <pvrecords::HasMembers Record>
void mark(Record& record);

template <typename Record>
void mark(std::vector<Record>& records)
{
    records.assign(1, Record());
    mark(records.front());
}

template <pvrecords::HasMembers Record>
void mark(Record& record)
{
    pvrecords::eachMember<Record>([&record](const auto& member) {
        auto value = member.get(record);
        mark(value);
        if constexpr (requires { member.set(record, value); }) member.set(record, value);
    });
}

inline void show(WireLines& lines, const std::string& name, const CStringT& text)
{
    lines.push_back(text.empty() ? name + " =" : name + " = " + narrow(text));
}

template <typename Record>
void show(WireLines& lines, const std::string& name, const std::vector<Record>& records);

template <typename Value>
void showUnlessEmpty(WireLines& lines, const std::string& name, const Value& value)
{
    if constexpr (IsNumber<Value>) {
        if (value != 0) lines.push_back(name + " = " + std::to_string(static_cast<int>(value)));
    } else {
        if (!value.empty()) show(lines, name, value);
    }
}

/// The lists of a record come behind all else, so that what follows an item's name is its own.
template <pvrecords::HasMembers Record>
void show(WireLines& lines, const std::string& name, const Record& record)
{
    lines.push_back(name);
    for (const bool lists : {false, true}) {
        pvrecords::eachMember<Record>([&](const auto& member) {
            const auto value = member.get(record);
            if (kIsList<std::remove_cv_t<decltype(value)>> == lists) showUnlessEmpty(lines, member.name, value);
        });
    }
}

template <typename Record>
void show(WireLines& lines, const std::string& name, const std::vector<Record>& records)
{
    if (records.empty()) lines.push_back(name + ": none");
    for (const Record& record : records) show(lines, name, record);
}
