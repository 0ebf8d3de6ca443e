"""Holds the description of the C interface against the class: every public member is there, with its parameters."""
import collections

import sources
import words
from sources import Fault


def class_types(parameter):
    """The types that the class may have for a parameter."""
    if parameter.kind == "unused":
        return {"CStringT", "const CStringT&", "CStringT&"}
    if parameter.kind == "text":
        return {"CStringT&"} if parameter.goes_out else {"CStringT", "const CStringT&"}
    if parameter.kind == "int":
        return {parameter.record.removeprefix("CWapiClient::") or "int"}
    if parameter.kind == "unsigned":
        return {"unsigned int", "unsigned long"}
    if parameter.kind == "list":
        if parameter.record == "text":
            return {"std::vector<CStringT>"}
        return {f"std::vector<{parameter.record.removeprefix('CWapiClient::')}>&"}
    return {f"{parameter.record}&"}


def answered_types(parameter):
    """The types that an accessor may return for its one answer."""
    if parameter.kind == "text":
        return {"CStringT", "const CStringT&"}
    if parameter.kind == "int":
        return {"int", "NETWORK_ERROR"}
    return {"unsigned int"} if parameter.kind == "unsigned" else {parameter.record}


def parameter_faults(operation):
    declared = operation.declaration
    if operation.answers:
        if declared.parameters or declared.returns not in answered_types(operation.parameters[0]):
            yield f"{operation.name} answers with {declared.returns}"
        return
    if declared.returns not in ("int", "void"):
        yield f"{operation.name} returns {declared.returns}"
    if [name for _, name in declared.parameters] != [parameter.name for parameter in operation.parameters]:
        yield f"{operation.name} has the parameters {', '.join(name for _, name in declared.parameters)}"
        return
    for (kind, name), parameter in zip(declared.parameters, operation.parameters):
        if kind not in class_types(parameter):
            yield f"{operation.name} takes {name} as {kind}"


def version_faults(description):
    newest = max(sources.since(description).values())
    if newest > description.abi:
        yield f"a function is of version {newest} of the interface, and abi is {description.abi}"


def ordinal_faults(description):
    taken = {}
    names = [(name, entry["ordinal"]) for name, entry in description.frame.items()]
    names += [(operation.c_name, operation.ordinal) for operation in description.operations]
    for name, ordinal in names:
        if ordinal in taken:
            yield f"{name} and {taken[ordinal]} have the ordinal {ordinal}"
        taken[ordinal] = name


def overload_faults(declarations):
    """A function of C has one name; the two ways to make a client are functions of the frame."""
    counted = collections.Counter(declaration.name for declaration in declarations)
    for name, count in counted.items():
        if count > 1 and name != "CWapiClient":
            yield f"the class has {count} of {name}"


def header_faults(in_c):
    """What of the C header is written by hand, and goes by the class."""
    constants = {name: number for name, number, _ in words.constants(in_c)}
    for name, number in sources.read_enumerations():
        name_in_c = "PVW_" + name.removeprefix("WAPI_")
        if constants.get(name_in_c) != number:
            yield f"{name} is {number}, and {name_in_c} is {constants.get(name_in_c)}"
    members = sources.read_members("Exchange", sources.CLASS_HEADER.read_text(encoding="utf-8"))
    own = [name for name in sources.read_members("pvw_exchange", in_c) if name != "size" and not name.endswith("Count")]
    if own != members:
        yield f"an exchange has {', '.join(members)}, and that of C {', '.join(own)}"


def faults(description, declarations):
    """One line a fault. Gives each operation its declaration on the way."""
    by_name = {declaration.name: declaration for declaration in declarations}
    in_frame = {member for entry in description.frame.values() for member in entry.get("members", [])} | {"operator="}
    described = {operation.name for operation in description.operations}
    for name in sorted(by_name.keys() - described - in_frame - {""}):
        yield f"the class has {name}, and the description has not"
    for name in sorted((described | in_frame - {"operator="}) - by_name.keys()):
        yield f"the description has {name}, and the class has not"
    sections = {section for names in description.files.values() for section in names}
    for operation in description.operations:
        operation.declaration = by_name.get(operation.name)
        if operation.declaration is None:
            continue
        if operation.declaration.section not in sections:
            yield f"no file has the section {operation.declaration.section}"
        yield from parameter_faults(operation)
    yield from ordinal_faults(description)
    yield from version_faults(description)
    yield from overload_faults(declarations)


def expect_none(found):
    found = list(found)
    if found:
        raise Fault("\n".join(found))
