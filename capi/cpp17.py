"""The header for C++17: the class and its records once more, on top of the C interface. The tests' own headers of the
class, by which what was written for the class runs through it."""
import re

import functions
import records
import sources

OVERLAY = "tests/capi/overlay"
FREE_TYPES = re.compile(r"(?:^///[^\n]*\n)*^(?:enum (\w+)[^\n]*\};\n|(?:struct|class) (\w+)[^;{]*\{.*?^\};\n)",
                        re.MULTILINE | re.DOTALL)


def class_text():
    """The public part of the class, with the host's own types where the class has those of C++20."""
    text = re.search(r"\npublic:\n(.*?)\nprivate:\n", sources.CLASS_HEADER.read_text(encoding="utf-8"),
                     re.DOTALL).group(1)
    text = re.sub(r"std::span<const [\w:]+> ", "std::vector<std::string_view> ", text)
    return re.sub(r"^    const CStringT& (?=get)", "    CStringT ", text, flags=re.MULTILINE) + "\n"


def enumerations():
    """Those of the records' headers, which have no table."""
    for path in sorted((sources.ROOT / "records").glob("*.h")):
        for found in FREE_TYPES.finditer(path.read_text(encoding="utf-8")):
            if found.group(1):
                yield found.group(1), found.group(0)


def empty(member):
    if member.type == "int":
        return " = 0"
    if member.type == "bool":
        return " = false"
    return f" = {member.type}{{}}" if member.type.startswith("WAPI_") else ""


def accessors(member):
    """The functions of a member that nobody reaches otherwise."""
    note = f"    /// {member.comment}\n" if member.comment else ""
    text = ""
    if member.writer:
        value = "std::move(value)" if member.type == "CStringT" else "value"
        text += f"{note}    void {member.writer}({member.type} value) {{ {member.name}_ = {value}; }}\n"
    return text + f"    {member.type} {member.reader}() const {{ return {member.name}_; }}\n\n"


def place(member, name):
    below = f"  ///< {member.comment}" if member.comment and not member.reader else ""
    return f"    {member.type} {name}{empty(member)};{below}\n"


def record(name, above, members, comment):
    hidden = [member for member in members if member.reader]
    shown = "".join(place(member, member.name) for member in members if not member.reader)
    if not hidden:
        return f"{comment(above)}struct {name} {{\n{shown}}};\n\n"
    functions_text = "".join(accessors(member) for member in hidden)
    places = "".join(place(member, member.name + "_") for member in hidden)
    return (f"{comment(above)}class {name} {{\npublic:\n{functions_text}{shown}\nprivate:\n"
            f"    friend struct detail::Records;\n\n{places}}};\n\n")


def record_texts(members, comment):
    text = "".join(f"{declared}\n" for _, declared in enumerations())
    return text + "".join(record(name, above, of_it, comment) for name, (above, of_it) in members.items()
                          if "::" not in name)


def types(description):
    return "".join(f"template <>\nstruct InC<{name}> {{\n    using type = {in_c};\n}};\n\n"
                   for name, in_c in description.records.items())


def at(member):
    return member.name + "_" if member.reader else member.name


def given(member):
    if member.type == "CStringT":
        return f"given(from.{at(member)})"
    return f"from.{at(member)}" if member.type == "int" else f"static_cast<int>(from.{at(member)})"


def taken(member):
    if member.item:
        return f"listOf<{member.item}>(from.{member.name})"
    if member.type == "CStringT":
        return f"taken(from.{member.name})"
    if member.type == "bool":
        return f"from.{member.name} != 0"
    return f"from.{member.name}" if member.type == "int" else f"static_cast<{member.type}>(from.{member.name})"


def conversions(description, members):
    names, text = description.records, ""
    for name in records.handed_over(description, members):
        lines = "".join(f"        to.{member.name} = {given(member)};\n" for member in members[name][1])
        text += f"    static void toC(const {name}& from, {names[name]}& to)\n    {{\n{lines}    }}\n\n"
    for name in records.brought_back(description, members):
        lines = "".join(f"        to.{at(member)} = {taken(member)};\n" for member in members[name][1])
        text += f"    static void fromC(const {names[name]}& from, {name}& to)\n    {{\n{lines}    }}\n\n"
    return text.rstrip("\n") + "\n"


def flags(description, members):
    """Records of which a reply only ever sets flags."""
    text = ""
    for name in description.flags:
        lines = "".join(f"    if (found.{member.name} != 0) place.{member.name} = found.{member.name};\n"
                        for member in members[name][1])
        text += f"/// A flag is only ever set.\ninline void put({name}& place, {name}& found)\n{{\n{lines}}}\n\n"
    return text


# ---- Definitions -----------------------------------------------------------------------------------------------------


def returned(operation):
    """As a definition says it. There is no text that a reference could be to."""
    kind = operation.declaration.returns
    return {"const CStringT&": "CStringT", "NETWORK_ERROR": "CWapiClient::NETWORK_ERROR"}.get(kind, kind)


def parameters(operation):
    pairs = zip(operation.parameters, operation.declaration.parameters)
    return ", ".join(kind if parameter.kind == "unused" else f"{kind} {name}" for parameter, (kind, name) in pairs)


def handed(parameter):
    """The arguments that stand for a parameter in C."""
    name = parameter.name
    if parameter.kind == "list":
        yield f"{name}Given.data()"
        yield f"{name}Given.size()"
    elif parameter.kind == "record":
        yield f"&{name}Given"
    elif parameter.kind == "unsigned":
        yield f"static_cast<unsigned int>({name})"
    elif parameter.kind == "text":
        yield f"detail::given({name})"
    elif parameter.kind == "int":
        yield name


def arguments(operation):
    pieces = ["client_"]
    for parameter in operation.parameters:
        if parameter.comes_in:
            pieces += handed(parameter)
        if parameter.goes_out:
            pieces.append(f"&{parameter.name}Back")
    if functions.needs_result(operation):
        pieces.append("result.place()")
    return ", ".join(pieces)


def place_in_c(parameter, names):
    """The variable that receives an output in C."""
    kind = {"text": "pvw_text", "int": "int", "unsigned": "unsigned int"}.get(parameter.kind)
    if parameter.kind == "list":
        kind = names[parameter.record] + "_list"
    if parameter.kind == "record":
        return f"const {names[parameter.record]}* {parameter.name}Back = nullptr;"
    return f"{kind} {parameter.name}Back{{}};"


def value_of(parameter):
    back = parameter.name + "Back"
    if parameter.kind == "text":
        return f"detail::taken({back})"
    return f"detail::{'list' if parameter.kind == 'list' else 'record'}Of<{parameter.record}>({back})"


def readied(operation, names):
    if functions.needs_result(operation):
        yield "detail::Result result;"
    for parameter in operation.parameters:
        if parameter.comes_in and parameter.kind in ("list", "record"):
            yield f"const auto {parameter.name}Given = detail::given({parameter.name});"
    for parameter in operation.outputs:
        yield place_in_c(parameter, names)


def body_of_answer(operation, call):
    answer = operation.parameters[0]
    if answer.kind in ("int", "unsigned"):
        value = f"static_cast<{returned(operation)}>({answer.name}Back)" if answer.kind == "int" else \
            f"{answer.name}Back"
        return [f"{call};", f"return {value};"]
    return [f"detail::expect({call});", f"return {value_of(answer)};"]


def body_of_operation(operation, call):
    if operation.declaration.returns == "void":
        return [f"{call};"]
    if not operation.outputs:
        return [f"return {call};"]
    lines = [f"const int outcome = {call};", "if (!result.isThere()) return outcome;"] if operation.always else \
        [f"if ({call} == 0) return 0;"]
    lines += [f"auto {parameter.name}Taken = {value_of(parameter)};" for parameter in operation.outputs]
    lines += [f"detail::put({parameter.name}, {parameter.name}Taken);" for parameter in operation.outputs]
    return lines + [f"return {'outcome' if operation.always else '1'};"]


def definition(operation, names):
    call = f"{operation.c_name}({arguments(operation)})"
    lines = list(readied(operation, names))
    lines += body_of_answer(operation, call) if operation.answers else body_of_operation(operation, call)
    body = "".join(f"    {line}\n" for line in lines)
    if len(lines) > 1 and not operation.answers:
        body = "    return detail::contained([&] {\n" + body + "    });\n"
    const = " const" if operation.declaration.text.endswith("const") else ""
    head = f"inline {returned(operation)} CWapiClient::{operation.name}({parameters(operation)}){const}"
    return f"{head}\n{{\n{body}}}\n\n"


def definitions(description):
    text, section = "", ""
    for operation in description.operations:
        if operation.declaration.section != section:
            section = operation.declaration.section
            text += f"// ---- {section} " + "-" * (111 - len(section)) + "\n\n"
        text += definition(operation, description.records)
    return text


def header(description, members, comment):
    text = (sources.ROOT / "capi/pvwapi.hpp.in").read_text(encoding="utf-8")
    for name, value in (("records", record_texts(members, comment)), ("class", class_text()),
                        ("types", types(description)), ("conversions", conversions(description, members)),
                        ("flags", flags(description, members)), ("definitions", definitions(description))):
        text = text.replace(f"@{name}@", value)
    return text


# ---- The tests' headers of the class ---------------------------------------------------------------------------------


def overlay_of(path, known):
    """A header of records that has those of pvwapi.hpp; what is not there stands as it is."""
    names, rest = [], ""
    for found in FREE_TYPES.finditer(path.read_text(encoding="utf-8")):
        name = found.group(1) or found.group(2)
        if name in known:
            names.append(name)
        else:
            rest += "\n" + found.group(0)
    lines = "".join(f"using pvwapi::{name};\n" for name in names)
    return ("// Written by capi/generate.py.\n#pragma once\n\n#include \"capi/pvwapi.hpp\"\n"
            f"#include \"pvutil/StringEx.h\"\n\n{lines}{rest}")


def overlay(description):
    known = set(description.records) | {name for name, _ in enumerations()}
    headers = sorted(path for path in (sources.ROOT / "records").glob("*.h") if FREE_TYPES.search(
        path.read_text(encoding="utf-8")) and path.name != "MemberTable.h")
    files = {f"{OVERLAY}/records/{path.name}": overlay_of(path, known) for path in headers}
    includes = "".join(f'#include "records/{path.name}"\n' for path in headers)
    files[f"{OVERLAY}/client/WapiClient.h"] = (
        "// The class as pvwapi.hpp has it, for what was written for the class itself. Written by capi/generate.py.\n"
        f"#pragma once\n\n#include \"capi/pvwapi.hpp\"\n{includes}\nusing pvwapi::CWapiClient;\n")
    return files


def all_functions(description):
    names = [operation.c_name for operation in description.operations]
    rows = "".join(f'    std::pair{{"{name}", &{name}}},\n' for name in names)
    return ("// Every operation of the C interface, by name. Written by capi/generate.py.\n#pragma once\n\n"
            '#include <tuple>\n#include <utility>\n\n#include "capi/pvwapi_c.h"\n\n'
            f"inline const std::tuple kAllFunctions{{\n{rows}}};\n")


def files(description, members, comment):
    return {"capi/pvwapi.hpp": header(description, members, comment),
            "tests/capi/AllFunctions.h": all_functions(description), **overlay(description)}
