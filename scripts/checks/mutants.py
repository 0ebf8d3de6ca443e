"""Small faults that a script can put into a source: a condition, a bound, a literal, a selector, an order, an omission.

Each is a Mutant: where it is, what stands there and what stands there instead. Comments are left alone.
"""
import dataclasses
import re

from house_rules import code_only

SWAPPED = [
    ("condition", r"(?<![=!<>])==(?!=)", "!="),
    ("condition", r"!=", "=="),
    ("condition", r"&&", "||"),
    ("condition", r"\|\|", "&&"),
    ("condition", r"(?<=[(\s])!(?=[A-Za-z_(])", ""),
    ("condition", r"\btrue\b", "false"),
    ("condition", r"\bfalse\b", "true"),
    ("bound", r" < (?=[^<])", " <= "),
    ("bound", r" <= ", " < "),
    ("bound", r" > (?=[^>])", " >= "),
    ("bound", r" >= ", " > "),
    ("bound", r" \+ (?=\w)", " - "),
    ("bound", r" - (?=\w)", " + "),
]
NUMBER = re.compile(r"(?<![\w.'])(\d{1,6})(?![\w.'])")
TEXT = re.compile(r'"((?:\\.|[^"\\\n])+)"')
STATEMENT = re.compile(
    r"^ +(?!return\b|using\b|case\b|static_assert|break\b|const\b|auto\b|std::\w+ \w+|throw\b)[\w*(].*;$")
# Two such lines in the other order are another request; most others are the same program either way.
ORDERED = re.compile(r"^ +(?:body|xml|head|part)\.")
# What no program sees: attributes and preprocessor lines, and what only the compiler checks.
UNSEEN = re.compile(r"^\s*(?:#|static_assert|template|using |namespace |friend |\[\[)")


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    line: int
    kind: str
    begin: int  # in the text of the file
    end: int
    instead: str
    was: str

    def name(self):
        return f"{self.file}: {self.kind}: {self.was.strip()!r} -> {self.instead.strip()!r}"


def other_text(text):
    """The text with one unit in its middle changed, escapes left whole."""
    letters = [m.start() for m in re.finditer(r"(?<![\\%])[A-Za-z0-9/<>&=]", text)]
    if not letters:
        return None
    at = letters[len(letters) // 2]
    return text[:at] + ("z" if text[at] != "z" else "y") + text[at + 1:]


def indentation(line):
    return len(line) - len(line.lstrip())


def at_pattern(file, text, code):
    for kind, pattern, instead in SWAPPED:
        for found in re.finditer(pattern, code):
            yield kind, found.start(), found.end(), instead
    for found in NUMBER.finditer(code):
        # What is told as a truth has two values.
        is_truth = found[1] == "1" and code[:found.start()].endswith("return ") and code[found.end()] == ";"
        yield "bound", found.start(), found.end(), "0" if is_truth else str(int(found[1]) + 1)


def in_literals(file, text, code):
    for found in TEXT.finditer(text):
        # Inside of a literal the code is blank; a comment's quotation marks are gone from it altogether.
        if code[found.start()] == '"' or code[found.start():found.end()].strip():
            continue
        line = text[text.rfind("\n", 0, found.start()) + 1:found.start()]
        if UNSEEN.match(line) or "//" in line:
            continue
        other = other_text(found[1])
        if other is not None:
            yield ("selector" if found[1].endswith("/") else "literal"), found.start() + 1, found.end() - 1, other


def in_lines(file, text, code):
    lines = code.split("\n")
    at = 0
    for number, line in enumerate(lines):
        end = at + len(line)
        if STATEMENT.match(line):
            yield "omission", at, end, ""
            following = lines[number + 1] if number + 1 < len(lines) else ""
            ordered = STATEMENT.match(following) and ORDERED.search(line) and ORDERED.search(following)
            if ordered and indentation(line) == indentation(following):
                both = text[at:end + 1 + len(following)]
                first, second = both.split("\n")
                yield "order", at, end + 1 + len(following), second + "\n" + first
        at = end + 1


def mutants_of(file, text):
    """Every mutant of a source."""
    code = code_only(text)
    for source in (at_pattern, in_literals, in_lines):
        for kind, begin, end, instead in source(file, text, code):
            line_begin = text.rfind("\n", 0, begin) + 1
            line_end = text.find("\n", end)
            whole = text[line_begin:line_end]
            if UNSEEN.match(whole):
                continue
            changed = text[line_begin:begin] + instead + text[end:line_end]
            yield Mutant(file, text.count("\n", 0, begin) + 1, kind, begin, end, changed, whole)


def applied(mutant, text):
    line_begin = text.rfind("\n", 0, mutant.begin) + 1
    line_end = text.find("\n", mutant.end)
    return text[:line_begin] + mutant.instead + text[line_end:]
