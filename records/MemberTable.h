// What a record consists of, for code that treats all of them alike: kMembers<Record> names each member, in the order
// of the record's header. No host needs this; one that writes records as text may use it. The tables themselves stand
// in records/SpaceTables.h and records/AccountTables.h, those of the records within the class in
// client/FieldTables.h.
#pragma once

#include <tuple>
#include <type_traits>
#include <utility>

namespace pvrecords {

/// A member of a record: its name and its place.
template <typename Record, typename Value>
struct Member {
    constexpr const Value& get(const Record& record) const { return record.*place; }
    constexpr void set(Record& record, Value value) const { record.*place = std::move(value); }

    const char* name;
    Value Record::*place;
};

/// One that is read and written by the record's own functions.
template <typename Record, typename Value>
struct Property {
    Value get(const Record& record) const { return (record.*reader)(); }
    void set(Record& record, Value value) const { (record.*writer)(std::move(value)); }

    const char* name;
    Value (Record::*reader)() const;
    void (Record::*writer)(Value);
};

/// One that can only be asked for.
template <typename Record, typename Value>
struct Answer {
    Value get(const Record& record) const { return (record.*reader)(); }

    const char* name;
    Value (Record::*reader)() const;
};

template <typename Record, typename Value>
Member(const char*, Value Record::*) -> Member<Record, Value>;
template <typename Record, typename Value>
Property(const char*, Value (Record::*)() const, void (Record::*)(Value)) -> Property<Record, Value>;
template <typename Record, typename Value>
Answer(const char*, Value (Record::*)() const) -> Answer<Record, Value>;

/// The members of a record in their order; of no other type are there any.
template <typename Record>
inline constexpr std::tuple<> kMembers{};

template <typename Record>
concept HasMembers = std::tuple_size_v<std::remove_cv_t<decltype(kMembers<Record>)>>
!= 0;

/// Shows `visit` each member of the record, in their order.
template <HasMembers Record, typename Visit>
constexpr void eachMember(Visit visit)
{
    std::apply([&visit](const auto&... members) { (visit(members), ...); }, kMembers<Record>);
}

}  // namespace pvrecords
