#!/usr/bin/env python3
"""Writes what follows from capi/operations.toml: the header, the conversions, the functions, the exported names.

    generate.py           writes the files
    generate.py --check   compares them, and fails where one is not as it would be written
"""
import re
import subprocess
import sys
import textwrap

import agreement
import cpp17
import csharp
import functions
import python
import records
import sources
from sources import ROOT, Fault


def comment(text, indent=""):
    lines = textwrap.wrap(text, 120 - len(indent) - 4, break_long_words=False, break_on_hyphens=False)
    return "".join(f"{indent}/// {line}\n" for line in lines)


def network_constants(class_header):
    """The kinds of network error, with their comments."""
    body = re.search(r"enum NETWORK_ERROR : int \{\n(.*?)\n    \};", class_header, re.DOTALL).group(1)
    body = re.sub(r"^    +", "    ", body, flags=re.MULTILINE)
    return in_words_of_c(body, []).replace("returned false", "returned 0")


def in_words_of_c(text, operations):
    """A comment of the class as a reader of the C interface understands it."""
    text = re.sub(r"(?<!PVW_)\b(NETWORK|METHOD)_(?=[A-Z])", r"PVW_\1_", text)
    text = text.replace("WAPI_INVITEAS_", "PVW_INVITEAS_")
    names = {operation.name: operation.c_name for operation in operations} | {"cancel()": "pvw_cancel"}
    for name, c_name in names.items():
        if re.search("[A-Z]", name) or "(" in name:
            text = re.sub(rf"(?<![\w=/]){re.escape(name)}(?:\(\))?(?!\w)", c_name, text)
    return text


def declarations(description):
    """The functions of the operations, under the headings of the class."""
    text, section = "", ""
    for operation in description.operations:
        declared = operation.declaration
        if declared.section != section:
            section = declared.section
            text += f"// ---- {section} " + "-" * (111 - len(section)) + "\n\n"
        text += comment(in_words_of_c(operation.doc or declared.comment, description.operations))
        text += f"PVW_API {functions.signature(operation, description.records)};\n\n"
    return text


def header(description, members):
    class_header = sources.CLASS_HEADER.read_text(encoding="utf-8")
    text = (ROOT / "capi/pvwapi_c.h.in").read_text(encoding="utf-8")
    structs = records.structs(description, members, comment)
    for name, value in (("abi", str(description.abi)), ("network", network_constants(class_header)),
                        ("records", structs), ("operations", declarations(description))):
        text = text.replace(f"@{name}@", value)
    return text


def exported(description):
    names = {name: entry["ordinal"] for name, entry in description.frame.items()}
    names |= {operation.c_name: operation.ordinal for operation in description.operations}
    return sorted(names.items(), key=lambda item: item[1])


def definition_file(description):
    lines = [f"    {name} @{ordinal}\n" for name, ordinal in exported(description)]
    return "LIBRARY pvwapi_c.dll\nEXPORTS\n" + "".join(lines)


def version_script(description):
    text, before = "# What libpvwapi_c.so exports. A function that comes later gets a version of its own.\n", ""
    since = sources.since(description)
    for version in sorted(set(since.values())):
        lines = "".join(f"        {name};\n" for name, _ in exported(description) if since[name] == version)
        others = "" if before else "    local:\n        *;\n"
        text += f"PVWAPI_C_{version} {{\n    global:\n{lines}{others}}}{before};\n"
        before = f" PVWAPI_C_{version}"
    return text


def formatted(name, text):
    if not name.endswith((".h", ".hpp", ".cpp")):
        return text
    done = subprocess.run(["clang-format", f"--assume-filename={ROOT / name}"], input=text, text=True, check=True,
                          stdout=subprocess.PIPE)
    return done.stdout


def written_files():
    """Each file that follows from the description, by its name."""
    description = sources.read_description()
    agreement.expect_none(agreement.faults(description, list(sources.read_class())))
    members = {record: (above, of_it) for record, above, of_it in sources.read_records(description.records)}
    files = {"capi/pvwapi_c.h": header(description, members),
             "capi/pvwapi_c.def": definition_file(description),
             "capi/pvwapi_c.map": version_script(description),
             "capi/Records.h": records.conversions_header(description, members),
             "capi/Records.cpp": records.conversions_source(description, members)}
    for name, sections in description.files.items():
        files[f"capi/{name}.cpp"] = functions.source(description, sections)
    files |= cpp17.files(description, members, comment)
    in_c = files["capi/pvwapi_c.h"]
    agreement.expect_none(agreement.header_faults(in_c))
    files |= python.files(description, members, in_c, sources.read_version(), in_words_of_c)
    directions = records.brought_back(description, members), records.handed_over(description, members)
    files |= csharp.files(description, members, in_c, in_words_of_c, directions)
    return {name: formatted(name, text) for name, text in files.items()}


def main(arguments):
    differing = []
    for name, text in written_files().items():
        path = ROOT / name
        if path.exists() and path.read_text(encoding="utf-8") == text:
            continue
        differing.append(name)
        if "--check" not in arguments:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
            print(f"{name}: written")
    if "--check" in arguments and differing:
        raise Fault("".join(f"{name} is not what capi/generate.py writes\n" for name in differing))


if __name__ == "__main__":
    try:
        main(sys.argv[1:])
    except Fault as fault:
        sys.exit(str(fault))
