// What the compiler makes of the types that hosts have compiled in, a line each: sizes, and where members begin.
#pragma once

#include <cstddef>
#include <cstring>
#include <iostream>
#include <string>
#include <type_traits>

#include "pvutil/StringEx.h"
#include "records/MemberTable.h"

namespace abi {

// Written by interface.py, a function a library.
void printClass();
void printC();
void printTrace();

template <typename Type>
void type(const std::string& name)
{
    std::cout << "type " << name << " size " << sizeof(Type) << ", align " << alignof(Type)
              << (std::has_virtual_destructor_v<Type> ? ", virtual\n" : "\n");
}

inline void member(const std::string& name, std::ptrdiff_t place, std::size_t size)
{
    std::cout << "member " << name << " at " << place << ", size " << size << "\n";
}

inline void value(const std::string& name, int number)
{
    std::cout << "value " << name << ' ' << number << "\n";
}

constexpr std::ptrdiff_t kNowhere = -1;

inline const char* bytesOf(const void* object)
{
    return static_cast<const char*>(object);
}

/// Where an object has the units of a short text, which a string keeps within itself.
template <typename Object>
std::ptrdiff_t placeOfUnits(const Object& object, const CStringT& text)
{
    const std::string_view bytes(bytesOf(&object), sizeof object);
    const std::size_t found = bytes.find({bytesOf(text.data()), text.size() * sizeof text[0]});
    return found == std::string_view::npos ? kNowhere : static_cast<std::ptrdiff_t>(found);
}

/// The place of a number that a function of the record reads: where that number changes when the bytes do. What stands
/// before the first member of a class that has a table of functions is left alone.
template <typename Record, typename Read>
std::ptrdiff_t placeOfNumber(Record& record, Read read)
{
    constexpr int kMark = 0x5A17C0DE;
    auto* const bytes = reinterpret_cast<char*>(&record);
    for (std::size_t at = std::is_polymorphic_v<Record> ? sizeof(void*) : 0; at < sizeof record; at += sizeof kMark) {
        int kept = 0;
        std::memcpy(&kept, bytes + at, sizeof kept);
        std::memcpy(bytes + at, &kMark, sizeof kMark);
        const bool found = read() == kMark;
        std::memcpy(bytes + at, &kept, sizeof kept);
        if (found) return static_cast<std::ptrdiff_t>(at);
    }
    return kNowhere;
}

template <typename Record, typename Row>
std::ptrdiff_t placeOf(const Row& row)
{
    Record record;
    if constexpr (requires { row.place; }) {
        return bytesOf(&(record.*row.place)) - bytesOf(&record);
    } else if constexpr (std::is_same_v<decltype(row.get(record)), CStringT>) {
        const CStringT mark{'#', '@', '#'};
        row.set(record, mark);
        const std::ptrdiff_t place = placeOfUnits(record, mark);
        return place == kNowhere ? kNowhere : place - placeOfUnits(mark, mark);
    } else {
        return placeOfNumber(record, [&] { return row.get(record); });
    }
}

/// A record with the members of its table.
template <typename Record>
void record(const std::string& name)
{
    type<Record>(name);
    pvrecords::eachMember<Record>([&name](const auto& row) {
        using Value = std::remove_cvref_t<decltype(row.get(std::declval<const Record&>()))>;
        member(name + "." + row.name, placeOf<Record>(row), sizeof(Value));
    });
}

}  // namespace abi
