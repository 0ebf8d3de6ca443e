"""The records of the C interface, and their conversion from the class's records and back."""


def lists_wanted(description, members):
    """The records that come in lists."""
    found = {parameter.record for operation in description.operations for parameter in operation.parameters
             if parameter.kind == "list" and parameter.goes_out}
    found |= {member.item for _, of_it in members.values() for member in of_it if member.item}
    return found


def closure(names, members):
    """The records themselves and those within them."""
    found = set()
    for name in names:
        found |= {name} | closure([member.item for member in members[name][1] if member.item], members)
    return found


def of_direction(description, members, wanted):
    names = {parameter.record for operation in description.operations for parameter in operation.parameters
             if parameter.record in description.records and wanted(parameter)}
    found = closure(names, members)
    return [record for record in description.records if record in found]


def brought_back(description, members):
    return of_direction(description, members, lambda parameter: parameter.goes_out)


def handed_over(description, members):
    return of_direction(description, members, lambda parameter: parameter.comes_in)


def c_type(member, names):
    if member.item:
        return names[member.item] + "_list"
    return "pvw_text" if member.type == "CStringT" else "int"


def structs(description, members, comment):
    names, lists, text = description.records, lists_wanted(description, members), ""
    for record, (above, of_it) in members.items():
        name = names[record]
        text += comment(description.comments.get(record, above)) + f"typedef struct {name} {{\n    size_t size;\n"
        for member in of_it:
            below = f"  ///< {member.comment}" if member.comment else ""
            text += f"    {c_type(member, names)} {member.name};{below}\n"
        text += f"}} {name};\n\n"
        if record in lists:
            text += (f"typedef struct {name}_list {{\n    const {name}* const* items;\n    size_t count;\n}} "
                     f"{name}_list;\n\n")
    return text


def value_in_c(member):
    value = f"from.{member.reader}()" if member.reader else f"from.{member.name}"
    if member.type == "bool":
        return f"{value} ? 1 : 0"
    return value if member.type == "int" or member.type.startswith("WAPI_") else f"memory.of({value})"


def to_c(record, of_it, names):
    lines = [f"    to.{member.name} = {value_in_c(member)};\n" for member in of_it]
    memory = "memory" if any("memory." in line for line in lines) else ""
    return (f"{names[record]} toC(Memory& {memory}, const {record}& from)\n{{\n    {names[record]} to{{}};\n"
            f"    to.size = sizeof to;\n{''.join(lines)}    return to;\n}}\n\n")


def value_in_class(member):
    value = f"from.{member.name}"
    if member.type == "bool":
        return f"{value} != 0"
    if member.type == "CStringT":
        return f"textOf({value})"
    return value if member.type == "int" else f"static_cast<{member.type}>({value})"


def from_c_line(member):
    if member.item:
        return f"    fromC(from.{member.name}, to.{member.name});\n"
    if member.writer:
        return f"    to.{member.writer}({value_in_class(member)});\n"
    if member.reader:
        return f"    to.Set{member.reader[3:]}(numberText(from.{member.name}));\n"
    return f"    to.{member.name} = {value_in_class(member)};\n"


def from_c(record, of_it, names):
    lines = "".join(from_c_line(member) for member in of_it)
    return f"void fromC(const {names[record]}& from, {record}& to)\n{{\n{lines}}}\n\n"


def types(record, names, lists, grown, taken):
    """What stands for a record, and the least size of one that goes in: as it was at first."""
    least = f"offsetof({names[record]}, {grown[record]})" if record in grown else f"sizeof({names[record]})"
    more = f"    static constexpr std::size_t kLeast = {least};\n" if record in taken else ""
    more += f"    using List = {names[record]}_list;\n" if record in lists else ""
    return f"template <>\nstruct CTypes<{record}> {{\n    using Record = {names[record]};\n{more}}};\n"


def conversions_header(description, members):
    names, lists = description.records, lists_wanted(description, members)
    out, into = brought_back(description, members), handed_over(description, members)
    text = ("// The records of the class and those of the C interface, into each other. Written by capi/generate.py.\n"
            '#pragma once\n\n#include <cstddef>\n\n#include "capi/pvwapi_c.h"\n#include "client/WapiClient.h"\n\n'
            "namespace capi {\n\n"
            "class Memory;\n\n/// What stands for a record of the class in C.\ntemplate <typename Record>\n"
            "struct CTypes;\n\n")
    text += "".join(types(record, names, lists, description.grown, into) for record in names)
    text += ("\ntemplate <typename Record>\nusing CRecord = typename CTypes<Record>::Record;\n\n"
             "template <typename Record>\nusing CList = typename CTypes<Record>::List;\n\n"
             "template <typename Record>\nconcept IsRecord = requires { typename CTypes<Record>::Record; };\n\n")
    text += "".join(f"{names[record]} toC(Memory& memory, const {record}& from);\n" for record in out) + "\n"
    text += "".join(f"void fromC(const {names[record]}& from, {record}& to);\n" for record in into)
    return text + "\n}  // namespace capi\n"


def conversions_source(description, members):
    text = ('// Written by capi/generate.py.\n#include "capi/Records.h"\n\n#include "capi/Arguments.h"\n'
            '#include "capi/Memory.h"\n\nnamespace capi {\n\n')
    text += "".join(to_c(record, members[record][1], description.records)
                    for record in brought_back(description, members))
    text += "".join(from_c(record, members[record][1], description.records)
                    for record in handed_over(description, members))
    return text + "}  // namespace capi\n"
