"""What the generator of the C interface reads: the class's header, the records with their tables, the description."""
import re
import tomllib
from dataclasses import dataclass, field
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
CLASS_HEADER = ROOT / "client/WapiClient.h"
TABLES = ["records/SpaceTables.h", "records/AccountTables.h", "client/FieldTables.h"]

SECTION = re.compile(r"^    // ---- (.*?) -+$")
DECLARATION = re.compile(r"^(?:static |virtual |explicit )*(.*?)(operator=|\w+)\((.*)\)( const)?( noexcept)?$")
MEMBER = re.compile(r"^ +((?:std::vector<\w+>|\w+)) (\w+)(?: = [^;]*)?; *(?:///< (.*))?$", re.MULTILINE)


class Fault(Exception):
    """What does not fit together."""


@dataclass
class Declaration:
    section: str
    comment: str
    returns: str
    name: str
    parameters: list  # (type, name)
    text: str


@dataclass
class Member:
    name: str
    type: str  # as in C++
    comment: str
    reader: str = ""  # of a member that only functions reach
    writer: str = ""

    @property
    def item(self):
        """The record that a list consists of."""
        found = re.match(r"std::vector<(\w+)>", self.type)
        return found.group(1) if found else ""


@dataclass
class Parameter:
    name: str
    kind: str  # text, int, unsigned, record, list, unused
    record: str = ""  # of a record or a list, also "text"; of a number the class's type for it
    comes_in: bool = True
    goes_out: bool = False


@dataclass
class Operation:
    name: str
    ordinal: int
    parameters: list
    doc: str
    always: bool = False
    answers: bool = False
    since: int = 1  # the version of the interface that brought it
    declaration: Declaration = None

    @property
    def c_name(self):
        return "pvw_" + snake(self.name)

    @property
    def outputs(self):
        return [parameter for parameter in self.parameters if parameter.goes_out]


@dataclass
class Description:
    abi: int
    files: dict
    frame: dict
    records: dict
    comments: dict
    flags: list
    grown: dict
    operations: list = field(default_factory=list)


def snake(name):
    name = re.sub(r"([A-Z]{2,})s(?![a-z])", lambda found: found.group(1).capitalize() + "s", name)
    name = name.replace("VoIP", "Voip")
    name = re.sub(r"([A-Z]+)([A-Z][a-z])", r"\1_\2", name)
    return re.sub(r"([a-z0-9])([A-Z])", r"\1_\2", name).lower()


def split_parameters(text):
    for piece in re.split(r",(?![^<]*>)", " ".join(text.split())):
        if piece.strip():
            kind, name = re.match(r"^(.*?)(\w+)$", piece.strip()).groups()
            yield kind.strip(), name


def declaration(section, comments, statement):
    text = " ".join(statement.split())
    if text.startswith(("using ", "virtual ~")):
        return None
    found = DECLARATION.match(text)
    if not found or "{" in text:
        raise Fault(f"nobody understands {text}")
    returns, name, parameters = found.group(1).strip(), found.group(2), found.group(3)
    return Declaration(section, " ".join(comments), returns, name, list(split_parameters(parameters)), text)


def public_lines(text):
    """Those of the class that a host sees. What stands above its life are types."""
    whole = re.search(r"^class \w+ CWapiClient \{\npublic:\n(.*?)^\};", text, re.MULTILINE | re.DOTALL).group(1)
    public, _, hidden = whole.partition("private:\n")
    if re.search("^(?:public|protected):", hidden, re.MULTILINE):
        raise Fault("the class has public members behind its private ones")
    types, heading, life = public.partition("    // ---- Life -")
    found = re.search(r"^    .*\(.*$", re.sub("//.*", "", types), re.MULTILINE)
    if found:
        raise Fault(f"above the class's life stands {found.group(0).strip()}")
    return (heading + life).split("\n")


def read_class(text=None):
    """The public member functions of the class, from its life onwards."""
    section, comments, statement = "", [], ""
    for line in public_lines(text or CLASS_HEADER.read_text(encoding="utf-8")):
        line = re.sub(r"(?<=;) *//(?!/).*$", "", line)
        if SECTION.match(line):
            section, comments = SECTION.match(line).group(1), []
        elif not line.strip():
            continue
        elif line.strip().startswith("///"):
            comments.append(line.strip()[3:].strip())
        else:
            statement += line.strip() + " "
            if line.rstrip().endswith((";", "}")):
                found = declaration(section, comments, statement.strip().rstrip(";"))
                statement = ""
                if found:
                    comments = []
                    yield found


def read_enumerations():
    """(name, number) of each constant that the class or a record has."""
    for path in [*sorted((ROOT / "records").glob("*.h")), CLASS_HEADER]:
        text = re.sub("//.*", "", path.read_text(encoding="utf-8"))
        for body in re.findall(r"\benum (?:class )?\w+ : int \{(.*?)\};", text, re.DOTALL):
            number = -1
            for name, value in re.findall(r"(\w+)(?: = (-?\d+))?,?", body):
                number = int(value) if value else number + 1
                yield name, number


def read_members(name, text):
    """Those of a struct, by their names."""
    body = re.search(r"^( *)(?:typedef )?struct %s \{\n(.*?)^\1\}" % name, text, re.MULTILINE | re.DOTALL).group(2)
    return re.findall(r"(\w+)(?: = \w+)?;", re.sub("//.*", "", body))


def body_of(record, headers):
    name = record.rpartition("::")[2]
    found = re.search(r"^( *)(?:struct|class) %s \{\n(.*?)^\1\};" % name, headers, re.MULTILINE | re.DOTALL)
    return found.group(2) if found else ""


def comment_of(record, headers):
    """What stands above a record, in one line."""
    found = re.search(r"((?:^ *///.*\n)+) *(?:struct|class) %s \{" % record.rpartition("::")[2], headers,
                      re.MULTILINE)
    return " ".join(line.strip()[3:].strip() for line in found.group(1).strip().split("\n")) if found else ""


def statements(body):
    """(what may see it, the statement) of each at the class's own level, without what stands in braces."""
    text, count, access = re.sub("//.*", "", body), 1, "public"
    while count:
        text, count = re.subn(r"\{[^{}]*\}", ";", text)
    for piece in re.split(r";|\b(public|protected|private):", text):
        if piece in ("public", "protected", "private"):
            access = piece
        elif piece and piece.strip():
            yield access, " ".join(piece.split())


def data_members(statement):
    """The names that a statement declares, if it declares data of a record."""
    if re.match(r"(?:using|friend|static|struct|class|enum|typedef|template)\b|.*\boperator\b", statement):
        return
    text, count = re.sub(r"\[\[.*?\]\]|\balignas\(.*?\)", "", statement), 1
    while count:
        text, count = re.subn(r"<[^<>]*>", "", text)
    if "(" not in text.split("=")[0]:
        for piece in re.sub(r"\([^()]*\)", "", text).split(","):
            yield re.search(r"(\w+)(?: ?\[.*\])*(?: ?:(?!:)[^:]*)?$", piece.split("=")[0].strip()).group(1)


def expect_whole(record, body, rows):
    """Each member of a record is in its table: by itself, or one that is private by the function that reads it."""
    held = {place.split("::")[-1] for _, at in rows for place in at.split(", ")}
    found = list(statements(body))
    members = [name for access, statement in found if access == "public" for name in data_members(statement)]
    if any(list(data_members(statement)) for access, statement in found if access != "public"):
        members += [name for access, statement in found if access == "public"
                    for name in re.findall(r"\b(Get\w+)\(\) const", statement)]
    more = [name for name in members if name not in held]
    if more:
        raise Fault(f"{record} has {', '.join(more)}, and its table has not")


def table_rows(record, tables):
    found = re.search(r"kMembers<%s>\{\n(.*?)^\};" % record, tables, re.MULTILINE | re.DOTALL)
    if not found:
        raise Fault(f"{record} has no table of its members")
    return re.findall(r'\{"(\w+)", ([^}]*)\}', found.group(1))


def member_of(record, name, places, body):
    """One row of a table, with what the record's header says of it."""
    for type_name, member, comment in MEMBER.findall(body):
        if places == [f"&{record}::{member}"] and member == name:
            return Member(name, type_name, comment)
    reader = places[0].split("::")[-1]
    found = re.search(r"(\w+) %s\(\) const" % reader, body)
    if not found:
        raise Fault(f"{record} has no {name}")
    comment = re.search(r"/// (.*)\n *void Set%s\(" % reader[3:], body)
    writer = places[1].split("::")[-1] if len(places) > 1 else ""
    return Member(name, found.group(1), comment.group(1) if comment and writer else "", reader, writer)


def record_headers():
    places = [*sorted((ROOT / "records").glob("*.h")), CLASS_HEADER]
    return "".join(path.read_text(encoding="utf-8") for path in places)


def read_tables():
    return "".join((ROOT / path).read_text(encoding="utf-8") for path in TABLES)


def read_records(names, headers=None):
    """(record, comment, members in the order of its table)."""
    headers, tables = headers or record_headers(), read_tables()
    for record in names:
        body, rows = body_of(record, headers), table_rows(record, tables)
        expect_whole(record, body, rows)
        yield record, comment_of(record, headers), [
            member_of(record, name, at.split(", "), body) for name, at in rows]


def read_version():
    header = (ROOT / "pvutil/Platform.h").read_text(encoding="utf-8")
    return re.search(r'^#define PVWAPI_VERSION "([\d.]+)"', header, re.MULTILINE).group(1)


def parameter(text):
    name, _, kind = text.partition(": ")
    comes_in = not kind.startswith("out ")
    goes_out = kind.startswith(("out ", "in and out "))
    rest = re.sub(r"^(?:in and out|in|out) ", "", kind)
    if rest.startswith("list "):
        return Parameter(name, "list", rest[5:], comes_in, goes_out)
    if rest.startswith("int as "):
        return Parameter(name, "int", rest[7:], comes_in, goes_out)
    if rest in ("text", "int", "unsigned", "unused"):
        return Parameter(name, rest, "", comes_in, goes_out)
    return Parameter(name, "record", rest, comes_in, goes_out)


def operation(name, entry):
    if "answers" in entry:
        name_of_answer, _, kind = entry["answers"].partition(": ")
        parameters = [parameter(f"{name_of_answer}: out {kind}")]
    else:
        parameters = [parameter(text) for text in entry.get("parameters", [])]
    return Operation(name, entry["ordinal"], parameters, entry.get("doc", ""), entry.get("always", False),
                     "answers" in entry, entry.get("since", 1))


def since(description):
    """The version of the interface that brought each function."""
    found = {name: entry.get("since", 1) for name, entry in description.frame.items()}
    return found | {operation.c_name: operation.since for operation in description.operations}


def read_description(path=ROOT / "capi/operations.toml"):
    with open(path, "rb") as file:
        whole = tomllib.load(file)
    description = Description(whole["abi"], whole["files"], whole["frame"], whole["records"],
                              whole["comments"], whole["flags"], whole["grown"])
    description.operations = [operation(name, entry) for name, entry in whole["operations"].items()]
    return description
