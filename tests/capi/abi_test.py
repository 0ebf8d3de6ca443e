"""What hosts have compiled in stays as it was: abi/first/ has each function with its ordinal and parameters, each
record and each constant of the first version."""
import re
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "capi"))

import sources  # noqa: E402
import words  # noqa: E402

FIRST = sources.ROOT / "abi/first/pvwapi_c.txt"
CAPI = sources.ROOT / "capi"


def functions(header, definitions):
    ordinals = dict(re.findall(r"^    (\w+) @(\d+)$", definitions, re.MULTILINE))
    for returned, name, parameters in re.findall(r"PVW_API ([^;]*?) PVW_CALL (\w+)\(([^;]*)\);", header):
        yield f"{name} @{ordinals[name]}: {returned}({' '.join(parameters.split())})"


def records(header):
    """(name, members in one line)."""
    for body, name in re.findall(r"typedef struct \w+ \{\n(.*?)\n\} (\w+);", re.sub(" *//.*", "", header), re.DOTALL):
        yield name, " ".join(body.split())


def listeners(header):
    return re.findall(r"typedef (\w+\(PVW_CALL\* \w+\)\([^;]*\));", header)


def described(header, definitions):
    lines = [*functions(header, definitions), *listeners(header)]
    lines += [f"{name} {{ {members} }}" for name, members in records(header)]
    return lines + [f"{name} = {number}" for name, number, _ in words.constants(header)]


def size_of(kind, word):
    if kind.endswith("*") or kind == "size_t":
        return word
    if kind in ("int", "unsigned int"):
        return 4
    return 2 * word  # a text, bytes or a list


def end_of(members, word):
    """Where the last member ends, and where the record does."""
    end, alignment = 0, 4
    for member in members:
        size = size_of(member.rpartition(" ")[0], word)
        aligned = min(size, word)
        end = -(-end // aligned) * aligned + size
        alignment = max(alignment, aligned)
    return end, -(-end // alignment) * alignment


def growth_faults(first, now, grown):
    """Of a record whose new members an earlier host's size does not tell, or that nobody takes from such a host."""
    for name, members in first.items():
        old, new = (re.findall(r"[^;]+?(?=;)", text.replace("; ", ";")) for text in (members, now[name]))
        if len(old) == len(new):
            continue
        for word in (4, 8):
            begin = end_of(new[:len(old) + 1], word)[0] - size_of(new[len(old)].rpartition(" ")[0], word)
            if begin < end_of(old, word)[1]:
                yield f"{new[len(old)]} begins within what {name} was"
        if name in grown and grown[name] != new[len(old)].rpartition(" ")[2]:
            yield f"{name} has grown by {new[len(old)]}"


class AbiTest(unittest.TestCase):
    def setUp(self):
        self.header = (CAPI / "pvwapi_c.h").read_text(encoding="utf-8")
        self.definitions = (CAPI / "pvwapi_c.def").read_text(encoding="utf-8")
        self.first = FIRST.read_text(encoding="utf-8").splitlines()
        self.records = dict(line[:-2].split(" { ") for line in self.first if line.endswith(" }"))

    def missing(self, header, definitions):
        """What was there at first and is no more; a record that has its size may have got members behind its own."""
        now = described(header, definitions)
        return [line for line in self.first
                if not any(found == line or (" { size_t size;" in line and found.startswith(line[:-2]))
                           for found in now)]

    def test_all_is_as_it_was(self):
        self.assertEqual(self.missing(self.header, self.definitions), [])
        self.assertGreater(len(self.first), 150)

    def test_what_is_no_more_as_it_was(self):
        for old, new in (("int role);", "int theRole);"), ("int position;", "size_t position;"),
                         ("pvw_text ID;\n    pvw_text name;", "pvw_text name;\n    pvw_text ID;"),
                         ("PVW_END_VOICE = 4", "PVW_END_VOICE = 5"), ("size_t length;", "size_t length; int more;"),
                         ("(void* context, int result)", "(int result)")):
            self.assertIn(old, self.header)
            self.assertTrue(self.missing(self.header.replace(old, new), self.definitions), old)
        self.assertEqual(len(self.missing(self.header, self.definitions.replace("@58\n", "@158\n"))), 1)

    def grown(self):
        """The names of C of the records that go in, with the first new member of each."""
        description = sources.read_description()
        taken = {parameter.record for operation in description.operations for parameter in operation.parameters
                 if parameter.comes_in and parameter.record in description.records}
        return {description.records[name]: description.grown.get(name, "") for name in taken}

    def test_a_record_grows_behind_what_it_was(self):
        self.assertEqual(list(growth_faults(self.records, dict(records(self.header)), self.grown())), [])

    def test_growth_that_nobody_could_tell(self):
        def faults(member, **grown):
            header = self.header.replace("int position;", f"int position; {member};")
            return list(growth_faults(self.records, dict(records(header)), self.grown() | grown))
        self.assertEqual(faults("int more", pvw_tab="more"), ["int more begins within what pvw_tab was"])
        self.assertEqual(faults("pvw_text more"), ["pvw_tab has grown by pvw_text more"])
        self.assertEqual(faults("pvw_text more", pvw_tab="more"), [])


if __name__ == "__main__":
    unittest.main()
