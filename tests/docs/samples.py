"""The samples of the documents: finds each block of code, and what the comment before it says of it.

A comment that no reader sees stands before each block, in the line above or with an empty line between:

    <!-- sample: KIND name=value name="a value" -->

KIND       what becomes of the block
fragment   C++ inside a function; `context` names what is declared before it (see CONTEXTS in run_samples.py, separated
           by commas), `check` is an expression that has to hold behind it
program    a whole program in C++; `expect` is what it has to print
source     what has to stand in the file `file` of the library, word for word
cmake      the lines by which a project takes up the package; the document's first C++ is built by them
shell      commands; all of a document run in one shell. `expect` is what they have to print, `only` picks those of a
           chain that begin so, and FILE and PREFIX stand for paths of the test's own
usage      how a program is called: each option named has to stand in the help of `program`, a program's name with
           the command's behind it
none       neither: `why` says why not
"""
import re
import shlex
from dataclasses import dataclass, field

KINDS = {
    "fragment": {"check"},
    "program": {"expect"},
    "source": {"file"},
    "cmake": set(),
    "shell": {"expect"},
    "usage": {"program"},
    "none": {"why"},
}
LANGUAGES = {"fragment": {"cpp"}, "program": {"cpp"}, "source": {"cpp", "c", "python", "csharp", "text"}}

COMMENT = re.compile(r"^\s*<!-- sample: (.*?) -->$")
FENCE = re.compile(r"^(\s*)```(\w*)$")


@dataclass
class Sample:
    document: str
    line: int  # of the block's first line
    language: str  # of the fence; empty for an indented block
    text: str
    kind: str = ""
    values: dict = field(default_factory=dict)

    @property
    def place(self):
        return f"{self.document}:{self.line}"


def dedented(lines, indent):
    return "".join(line[indent:] + "\n" if line.strip() else "\n" for line in lines)


def fenced_end(lines, start):
    for number in range(start + 1, len(lines)):
        if lines[number].strip() == "```":
            return number
    return len(lines)


def indented_end(lines, start):
    end = start
    for number in range(start, len(lines)):
        if lines[number].startswith("    "):
            end = number + 1
        elif lines[number].strip():
            break
    return end


def blocks(lines):
    """(first line of the block's text, language, text, line that opens it), numbered from 0."""
    number = 0
    while number < len(lines):
        fence = FENCE.match(lines[number])
        follows_blank = number == 0 or not lines[number - 1].strip()
        if fence:
            end = fenced_end(lines, number)
            yield number + 1, fence.group(2), dedented(lines[number + 1:end], len(fence.group(1))), number
            number = end + 1
        elif lines[number].startswith("    ") and follows_blank:
            end = indented_end(lines, number)
            yield number, "", dedented(lines[number:end], 4), number
            number = end
        else:
            number += 1


def comment_before(lines, opening):
    """The words of the comment that belongs to the block opened there; none where there is no comment."""
    number = opening - 1
    if number >= 0 and not lines[number].strip():
        number -= 1
    found = COMMENT.match(lines[number]) if number >= 0 else None
    return shlex.split(found.group(1)) if found else []


def read_samples(document, text):
    """Every block of a document, with what its comment says; without a comment the kind is empty."""
    lines = text.split("\n")
    for start, language, block, opening in blocks(lines):
        sample = Sample(document, start + 1, language, block)
        words = comment_before(lines, opening)
        if words:
            sample.kind = words[0]
            sample.values = dict(word.split("=", 1) for word in words[1:])
        yield sample


def faults(sample, only_cpp):
    """What is wrong with the sample's comment. In some documents only C++ has to have one."""
    if not sample.kind:
        if sample.language == "cpp" or not only_cpp:
            yield f"{sample.place}: no comment says what becomes of this block"
        return
    if sample.kind not in KINDS:
        yield f"{sample.place}: unknown kind {sample.kind}"
        return
    for name in sorted(KINDS[sample.kind] - sample.values.keys()):
        yield f"{sample.place}: a {sample.kind} needs {name}="
    languages = LANGUAGES.get(sample.kind, set())
    if sample.language not in languages and (languages or sample.language in ("cpp", "c")):
        yield f"{sample.place}: a block of {sample.language or 'no language'} is no {sample.kind}"
