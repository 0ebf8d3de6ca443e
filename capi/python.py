"""The package for Python: what of it follows from the description."""
import keyword
import re
import textwrap

import sources
import words

FOLDER = "bindings/python/pvwapi"
HAND = ["_library.py", "_conversion.py", "_client.py", "_asynchronous.py", "__init__.py"]
ANSWERED = ["NetworkCause", "Method"]  # what the package makes of the library's numbers
FIELDS = {"CStringT": "Text"}
TYPES = {"text": "str", "int": "int", "unsigned": "int"}
IN_C = {"text": "Text", "int": "c_int", "unsigned": "c_uint"}


def name_of(name):
    found = sources.snake(name)
    return found + "_" if keyword.iskeyword(found) else found


def in_words(text):
    """A comment of the C interface as a reader of Python understands it."""
    text = words.in_results(text, "NotSent", "False")
    text = re.sub(r"\bPVW_INVITEAS_(?=[A-Z])", "InviteAs.", text)
    text = re.sub(r"\bPVW_NETWORK_\.\.\.", "NetworkCause", text)
    text = re.sub(r"\bPVW_(NETWORK|METHOD)_(?=[A-Z])",
                  lambda found: {"NETWORK": "NetworkCause.", "METHOD": "Method."}[found.group(1)], text)
    text = re.sub(r"\bpvw_(\w+)", r"\1", text)
    return re.sub(r"`(\w+)`", lambda found: f"`{name_of(found.group(1))}`", text).replace("\\", "\\\\")


def docstring(text, indent):
    """A comment as a docstring, in lines of its own where one is not enough."""
    width = 120 - len(indent)
    if len(text) <= width - 6:
        return f'{indent}"""{text}"""\n'
    lines = textwrap.wrap(text, width - 3, break_long_words=False, break_on_hyphens=False)
    return f'{indent}"""' + f"\n{indent}".join(lines) + (f'\n{indent}"""\n' if len(lines[-1]) > width - 6 else '"""\n')


# ---- Records ---------------------------------------------------------------------------------------------------------


def python_type(member, names):
    if member.item:
        return f"list[{words.record_name(names[member.item])}]"
    return {"CStringT": "str", "bool": "bool"}.get(member.type, "int")


def default(member):
    if member.item:
        return "field(default_factory=list)"
    return {"CStringT": '""', "bool": "False"}.get(member.type, "0")


def c_field(member, names):
    if member.item:
        return words.record_name(names[member.item]) + "ListInC"
    return FIELDS.get(member.type, "c_int")


def dataclass(name, above, members, names):
    python = words.record_name(names[name])
    text = f"@dataclass\nclass {python}:\n"
    text += docstring(in_words(above), "    ") + "\n" if above else ""
    for member in members:
        note = f"  # {member.comment}" if member.comment else ""
        text += f"    {name_of(member.name)}: {python_type(member, names)} = {default(member)}{note}\n"
    return text + "\n\n"


def structure(name, members, names, has_list):
    python = words.record_name(names[name])
    rows = "".join(f'        ("{member.name}", {c_field(member, names)}),\n' for member in members)
    text = (f"class {python}InC(Structure):\n    record = {python}\n    _fields_ = [\n"
            f'        ("size", c_size_t),\n{rows}    ]\n\n\n')
    if has_list:
        text += (f"class {python}ListInC(Structure):\n    item = {python}InC\n    _fields_ = [\n"
                 f'        ("items", POINTER(POINTER({python}InC))),\n        ("count", c_size_t),\n    ]\n\n\n')
    return text


def enumeration(name, header):
    base = "Answered" if name in ANSWERED else "IntEnum"
    text = f"class {name}({base}):\n" + docstring(words.ENUMERATIONS[name][1], "    ") + "\n"
    for constant, number, comment in words.enumeration(name, header):
        note = f"  # {in_words(comment)}" if comment else ""
        text += f"    {constant} = {number}{note}\n"
    return text + "\n\n"


def records_module(description, members, header, version):
    text = ('"""The records and constants. Written by capi/generate.py."""\n'
            "from __future__ import annotations\n\n"
            "from ctypes import POINTER, Structure, c_int, c_size_t\n"
            "from dataclasses import dataclass, field\nfrom enum import IntEnum\n\n"
            "from ._library import Answered, Text\n\n"
            f'VERSION = "{version}"\nABI_VERSION = {description.abi}\n\n\n')
    text += "".join(enumeration(name, header) for name in words.ENUMERATIONS)
    names, lists = description.records, words.lists(description, members)
    for name in words.in_order(description, members):
        above, of_it = members[name]
        text += dataclass(name, description.comments.get(name, above), of_it, names)
        text += structure(name, of_it, names, name in lists)
    pairs = "".join(f"    {words.record_name(in_c)}: {words.record_name(in_c)}InC,\n"
                    for in_c in description.records.values())
    shown = "".join(f'    "{name}",\n' for name in sorted(
        [*words.ENUMERATIONS, *map(words.record_name, names.values())]))
    return text + f"IN_C = {{\n{pairs}}}\n\n__all__ = [\n{shown}]\n"


# ---- Operations ------------------------------------------------------------------------------------------------------


def hint(parameter, names):
    if parameter.kind == "list":
        item = "str" if parameter.record == "text" else words.record_name(names[parameter.record])
        return f"Sequence[{item}]"
    if parameter.kind == "record":
        return words.record_name(names[parameter.record])
    return TYPES[parameter.kind]


def hint_back(parameter, names):
    if parameter.kind == "list":
        return f"list[{words.record_name(names[parameter.record])}]"
    if parameter.kind == "record":
        return words.record_name(names[parameter.record])
    return TYPES[parameter.kind]


def returned(operation, names):
    hints = [hint_back(parameter, names) for parameter in operation.outputs]
    if operation.always:
        hints.insert(0, "bool")
    if not hints:
        return "None"
    return hints[0] if len(hints) == 1 else f"tuple[{', '.join(hints)}]"


def signature(operation, names):
    pieces = ["self"]
    pieces += [f"{name_of(parameter.name)}: {hint(parameter, names)}" for parameter in words.inputs(operation)]
    if operation.name == "setRootCred":
        pieces.append("cred: str")
    if words.takes_cred(operation):
        pieces.append("*, cred: str | None = None")
    return pieces


def handed(parameter, operation, names):
    """What stands for a parameter in the call, in C's order."""
    name = name_of(parameter.name)
    if parameter.comes_in and parameter.kind != "unused":
        if parameter.name == "cred":
            yield f"One(Text, {'self._cred(cred)' if words.takes_cred(operation) else 'cred'})"
        elif parameter.kind == "list":
            item = "str" if parameter.record == "text" else words.record_name(names[parameter.record])
            yield f"Items({item}, {name})"
        elif parameter.kind == "record":
            yield f"One({words.record_name(names[parameter.record])}, {name})"
        else:
            yield f"One({IN_C[parameter.kind]}, {name})"
    if parameter.goes_out:
        kind = IN_C.get(parameter.kind)
        if parameter.kind in ("list", "record"):
            record = words.record_name(names[parameter.record])
            kind = f"records.{record}{'ListInC' if parameter.kind == 'list' else 'InC'}"
        yield f"Out({kind})"


def arguments(operation, names):
    pieces = [f'"{operation.c_name}"']
    for parameter in operation.parameters:
        pieces += handed(parameter, operation, names)
    return pieces


def wrapped(head, pieces, tail, indent):
    """A call or definition in one line, or with what it takes in lines of its own."""
    line = f"{indent}{head}({', '.join(pieces)}){tail}\n"
    if len(line) <= 121:
        return line
    lines = words.broken([*(f"{piece}," for piece in pieces[:-1]), pieces[-1]], 115 - len(indent))
    return f"{indent}{head}(\n" + "".join(f"{indent}    {piece}\n" for piece in lines) + f"{indent}){tail}\n"


def frame_of(operation):
    if operation.always:
        return "self._operate_always"
    if operation.answers or operation.declaration.returns == "void":
        return "self._ask"
    return "self._operate"


def method(operation, names, text):
    name = name_of(operation.name)
    result = "" if returned(operation, names) == "None" else "return "
    body = wrapped(result + frame_of(operation), arguments(operation, names), "", "        ")
    head = wrapped(f"def {name}", signature(operation, names), f" -> {returned(operation, names)}:", "    ")
    return head + docstring(text, "        ") + body + "\n"


def passed(operation):
    pieces = [name_of(parameter.name) for parameter in words.inputs(operation)]
    if operation.name == "setRootCred":
        pieces.append("cred")
    if words.takes_cred(operation):
        pieces.append("cred=cred")
    return pieces


def awaited(operation, names, text):
    name = name_of(operation.name)
    result = "" if returned(operation, names) == "None" else "return "
    pieces = [f"Operations.{name}", *passed(operation)]
    head = wrapped(f"async def {name}", signature(operation, names), f" -> {returned(operation, names)}:", "    ")
    return head + docstring(text, "        ") + wrapped(f"{result}await self._run", pieces, "", "        ") + "\n"


def operations_module(description, in_words_of_c):
    names = description.records
    text = ('"""The operations, one after the other and awaited. Written by capi/generate.py."""\n'
            "from __future__ import annotations\n\nfrom collections.abc import Sequence\n"
            "from ctypes import c_int, c_uint\n\nfrom . import _records as records\n"
            "from ._conversion import Items, One, Out\nfrom ._library import Text\nfrom ._records import (\n")
    text += "".join(f"    {words.record_name(in_c)},\n" for in_c in sorted(names.values())) + ")\n\n\n"
    bodies = {"Operations": "", "AwaitedOperations": ""}
    for operation in description.operations:
        note = words.doc(operation, in_words_of_c, description, in_words)
        bodies["Operations"] += method(operation, names, note or operation.name)
        bodies["AwaitedOperations"] += awaited(operation, names, note or operation.name)
    notes = {"Operations": "What a client does; each blocks until the reply is read.",
             "AwaitedOperations": "The same, awaited: each runs on the client's own thread."}
    for name, body in bodies.items():
        text += f'class {name}:\n    """{notes[name]}"""\n\n{body}\n'
    return text.rstrip("\n") + "\n"


def files(description, members, header, version, in_words_of_c):
    hand = "".join((sources.ROOT / FOLDER / name).read_text(encoding="utf-8") for name in HAND)
    words.expect_frame(description, {FOLDER: hand})
    return {f"{FOLDER}/_records.py": records_module(description, members, header, version),
            f"{FOLDER}/_operations.py": operations_module(description, in_words_of_c)}
