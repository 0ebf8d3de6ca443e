#!/usr/bin/env python3
"""Writes the functions that print the layouts. Which types there are is read where they are declared: records from the
tables of their members, enumerations from the public headers, and all of C's from its header.

    interface.py SOURCE
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "capi"))

import sources  # noqa: E402
import words  # noqa: E402

C_HEADER = ROOT / "capi/pvwapi_c.h"
COMMENT = re.compile(r"//[^\n]*")
ENUMERATION = re.compile(r"^( *)enum (\w+) : int \{(.*?)\};", re.MULTILINE | re.DOTALL)
RECORD = re.compile(r"^( *)(?:struct|class) (\w+) \{", re.MULTILINE)
STRUCT = re.compile(r"^typedef struct (\w+) \{\n(.*?)^\} \1;", re.MULTILINE | re.DOTALL)
FIELD = re.compile(r"(\w+);$", re.MULTILINE)


def scope_of(indent):
    """What is indented stands in the class."""
    return "CWapiClient::" if indent else ""


def declarations():
    """The public headers without comments, and of the class what a host can name."""
    for header in [*sorted((ROOT / "records").glob("*.h")), sources.CLASS_HEADER]:
        if header.name != "MemberTable.h":
            text = COMMENT.sub("", header.read_text(encoding="utf-8"))
            yield text.split("\nprivate:")[0] if header == sources.CLASS_HEADER else text


def records(texts):
    """Those that have a table, which is every one, with every member in it."""
    tables = sources.read_tables()
    found = re.findall(r"kMembers<([\w:]+)>\{", tables)
    for indent, name in (match for text in texts for match in RECORD.findall(text)):
        if scope_of(indent) + name not in found:
            raise sources.Fault(f"{name} has no table of its members")
    for name in found:
        sources.expect_whole(name, sources.body_of(name, "".join(texts)), sources.table_rows(name, tables))
    return found


def enumerations(text):
    """(name, its constants) of each."""
    for indent, name, body in ENUMERATION.findall(text):
        scope = scope_of(indent)
        yield scope + name, [scope + constant for constant in re.findall(r"\b([A-Z]\w+)\b", body)]


def of_class(texts):
    lines = ['    type<CStringT>("CStringT");\n', '    type<CWapiClient>("CWapiClient");\n']
    lines += [f'    record<{record}>("{record}");\n' for record in records(texts)]
    for name, constants in (found for text in texts for found in enumerations(text)):
        lines.append(f'    type<{name}>("{name}");\n')
        lines += [f'    value("{constant}", {constant});\n' for constant in constants]
    return lines


def of_c(header):
    lines = ['    type<pvw_char>("pvw_char");\n', '    value("PVW_ABI_VERSION", PVW_ABI_VERSION);\n']
    for name, body in STRUCT.findall(re.sub(r" *//[^\n]*", "", header)):
        lines.append(f'    type<{name}>("{name}");\n')
        lines += [f'    member("{name}.{field}", offsetof({name}, {field}), sizeof({name}::{field}));\n'
                  for field in FIELD.findall(body)]
    return lines + [f'    value("{name}", {name});\n' for name, _, _ in words.constants(header)]


def written():
    headers = [*sources.TABLES, "capi/pvwapi_c.h", "pvtrace/pvtrace.h", "tests/abi/Layouts.h"]
    text = "".join(f'#include "{header}"\n' for header in headers)
    functions = {"printClass": of_class(list(declarations())),
                 "printC": of_c(C_HEADER.read_text(encoding="utf-8")),
                 "printTrace": ['    type<PvTraceUnit>("PvTraceUnit");\n']}
    for name, lines in functions.items():
        text += f"\nvoid abi::{name}()\n{{\n{''.join(lines)}}}\n"
    return text


if __name__ == "__main__":
    Path(sys.argv[1]).write_text(written(), encoding="utf-8")
