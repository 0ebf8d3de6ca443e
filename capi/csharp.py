"""The source file for C#: what of it follows from the description."""
import re
import textwrap

import functions
import sources
import words

FILE = "bindings/csharp/PvWapi.cs"
IMPORT = "[DllImport(File, CallingConvention = CallingConvention.Cdecl)]"

# The functions of the frame, by what C# has them return and take.
FRAME = {
    "pvw_abi_version": ("uint", ""),
    "pvw_version": ("IntPtr", ""),
    "pvw_set_log": ("int", "int maximumLevel"),
    "pvw_xml_text": ("int", "TextInC text, out TextInC xml, out IntPtr result"),
    "pvw_result_free": ("int", "IntPtr result"),
    "pvw_message_loop_fd": ("int", ""),
    "pvw_dispatch_pending_messages": ("int", ""),
    "pvw_client_new": ("int", "TextInC baseURL, out IntPtr client"),
    "pvw_client_copy": ("int", "IntPtr client, out IntPtr copy"),
    "pvw_client_free": ("int", "IntPtr client"),
    "pvw_cancel": ("int", "IntPtr client"),
    "pvw_set_deadline": ("int", "IntPtr client, uint milliseconds"),
    "pvw_on_refresh": ("int", "IntPtr client, RefreshListener listener, IntPtr context"),
    "pvw_on_transfer_progress": ("int", "IntPtr client, TransferProgress progress, IntPtr context"),
    "pvw_on_exchange": ("int", "IntPtr client, ExchangeListener listener, IntPtr context"),
    "pvw_on_timer": ("int", "IntPtr client, uint timerID"),
}

KEYWORDS = {"event", "params", "ref", "out", "object", "string", "is", "in", "base"}


def name_of(name):
    return "@" + name if name in KEYWORDS else name


def escaped(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


def constant(name):
    return "".join(word.capitalize() for word in name.split("_"))


def in_words(text):
    """A comment of the C interface as a reader of C# understands it."""
    text = words.in_results(text, "NotSentException", "false")
    text = re.sub(r"\bPVW_NETWORK_\.\.\.", "NetworkCause", text)
    for prefix, kind in (("NETWORK", "NetworkCause"), ("METHOD", "Method"), ("INVITEAS", "InviteAs")):
        text = re.sub(rf"\bPVW_{prefix}_([A-Z_]+)", lambda found, of=kind: f"{of}.{constant(found.group(1))}", text)
    return re.sub(r"\bpvw_(\w+)", lambda found: words.pascal(found.group(1)), text)


def summary(text, indent):
    if not text:
        return ""
    lines = textwrap.wrap(f"<summary>{escaped(in_words(text))}</summary>", 116 - len(indent), break_long_words=False,
                          break_on_hyphens=False)
    return "".join(f"{indent}/// {line}\n" for line in lines)


def enumeration(name, header):
    rows = ""
    for found, number, comment in words.enumeration(name, header):
        rows += summary(comment, "        ") + f"        {constant(found)} = {number},\n"
    return f"{summary(words.ENUMERATIONS[name][1], '    ')}    public enum {name}\n    {{\n{rows}    }}\n\n"


# ---- Records ---------------------------------------------------------------------------------------------------------


def member_type(member, names):
    if member.item:
        return f"List<{words.record_name(names[member.item])}>"
    return {"CStringT": "string", "bool": "bool"}.get(member.type, "int")


def empty(member, names):
    if member.item:
        return f" = new {member_type(member, names)}()"
    return ' = ""' if member.type == "CStringT" else ""


def record(name, above, members, names):
    rows = "".join(f"{summary(member.comment, '        ')}        public {member_type(member, names)} "
                   f"{words.pascal(member.name)}{empty(member, names)};\n" for member in members)
    head = f"{summary(above, '    ')}    public sealed class {words.record_name(names[name])}\n"
    return f"{head}    {{\n{rows}    }}\n\n"


def type_in_c(member):
    if member.item:
        return "ListInC"
    return "TextInC" if member.type == "CStringT" else "int"


def taken(member, names):
    value = f"from.{words.pascal(member.name)}"
    if member.item:
        return f"{value}.Read({words.record_name(names[member.item])}InC.Read)"
    if member.type == "CStringT":
        return f"{value}.Read()"
    return f"{value} != 0" if member.type == "bool" else value


def given(member):
    value = f"from.{words.pascal(member.name)}"
    return f"call.Text({value})" if member.type == "CStringT" else value


def reading(name, members, names):
    shown = words.record_name(names[name])
    rows = "".join(f"                {words.pascal(member.name)} = {taken(member, names)},\n" for member in members)
    return (f"\n        public static {shown} Read(IntPtr place)\n        {{\n"
            f"            var from = Native.Whole<{shown}InC>(place);\n"
            f"            return new {shown}\n            {{\n{rows}            }};\n        }}\n")


def writing(name, members, names):
    shown = words.record_name(names[name])
    rows = "".join(f"                {words.pascal(member.name)} = {given(member)},\n" for member in members)
    return (f"\n        public static {shown}InC Of(Call call, {shown} from)\n        {{\n"
            f"            return new {shown}InC\n            {{\n"
            f"                Size = (UIntPtr)Marshal.SizeOf(typeof({shown}InC)),\n{rows}            }};\n        }}\n")


def structure(name, members, names, directions):
    rows = "".join(f"        public {type_in_c(member)} {words.pascal(member.name)};\n" for member in members)
    text = (f"    [StructLayout(LayoutKind.Sequential)]\n    struct {words.record_name(names[name])}InC\n    {{\n"
            f"        public UIntPtr Size;\n{rows}")
    text += reading(name, members, names) if name in directions[0] else ""
    text += writing(name, members, names) if name in directions[1] else ""
    return text + "    }\n\n"


# ---- Functions -------------------------------------------------------------------------------------------------------


def native_pieces(operation):
    yield "IntPtr client"
    for parameter in operation.parameters:
        name = name_of(parameter.name)
        if parameter.comes_in and parameter.kind != "unused":
            if parameter.kind == "list":
                yield f"IntPtr {name}"
                yield f"UIntPtr {functions.count_of(parameter.name)}"
            else:
                kind = {"text": "TextInC", "int": "int", "unsigned": "uint", "record": "IntPtr"}[parameter.kind]
                yield f"{kind} {name}"
        if parameter.goes_out:
            kind = {"text": "TextInC", "int": "int", "unsigned": "uint", "record": "IntPtr", "list": "ListInC"}
            yield f"out {kind[parameter.kind]} {name_of(functions.back(parameter))}"
    if words.needs_result(operation):
        yield "out IntPtr result"


def wrapped(head, pieces, tail, indent):
    line = f"{indent}{head}({pieces}){tail}\n"
    if len(line) <= 121:
        return line
    lines = words.broken(re.split("(?<=,) ", line.strip()), 116 - len(indent))
    return "".join(f"{indent}{'    ' if at else ''}{piece}\n" for at, piece in enumerate(lines))


def imported(name, kind, pieces):
    return f"        {IMPORT}\n" + wrapped(f"public static extern {kind} {name}", pieces, ";", "        ") + "\n"


def native_functions(description):
    text = "".join(imported(name, *FRAME[name]) for name in description.frame if name in FRAME)
    for operation in description.operations:
        text += imported(operation.c_name, "int", ", ".join(native_pieces(operation)))
    return text.rstrip("\n") + "\n"


def type_back(parameter, names):
    if parameter.kind == "list":
        return f"List<{words.record_name(names[parameter.record])}>"
    if parameter.kind == "record":
        return words.record_name(names[parameter.record])
    return {"text": "string", "int": "int", "unsigned": "uint"}[parameter.kind]


def value_back(parameter, names):
    place = functions.back(parameter) + "InC"
    if parameter.kind == "list":
        return f"{place}.Read({words.record_name(names[parameter.record])}InC.Read)"
    if parameter.kind == "record":
        return f"{words.record_name(names[parameter.record])}InC.Read({place})"
    return f"{place}.Read()" if parameter.kind == "text" else place


def returned(operation, names):
    """(type, expression) of what an operation returns."""
    kinds = [(type_back(parameter, names), words.pascal(parameter.name)) for parameter in operation.outputs]
    values = [value_back(parameter, names) for parameter in operation.outputs]
    if operation.always:
        kinds.insert(0, ("bool", "Succeeded"))
        values.insert(0, "outcome != 0")
    if not kinds:
        return "void", "0"
    if len(kinds) == 1:
        return kinds[0][0], values[0]
    return f"({', '.join(f'{kind} {name}' for kind, name in kinds)})", f"({', '.join(values)})"


def taken_in(parameter, names):
    if parameter.kind == "list":
        item = "string" if parameter.record == "text" else words.record_name(names[parameter.record])
        return f"ICollection<{item}> {name_of(parameter.name)}"
    if parameter.kind == "record":
        return f"{words.record_name(names[parameter.record])} {name_of(parameter.name)}"
    return f"{ {'text': 'string', 'int': 'int', 'unsigned': 'uint'}[parameter.kind]} {name_of(parameter.name)}"


def handed(parameter, operation, names):
    name = name_of(parameter.name)
    if parameter.comes_in and parameter.kind != "unused":
        if parameter.name == "cred" and words.takes_cred(operation):
            yield "call.Text(Cred(cred))"
        elif parameter.kind == "text":
            yield f"call.Text({name})"
        elif parameter.kind == "record":
            yield f"call.Record({words.record_name(names[parameter.record])}InC.Of(call, {name}))"
        elif parameter.kind == "list":
            convert = "call.Text" if parameter.record == "text" else \
                f"item => {words.record_name(names[parameter.record])}InC.Of(call, item)"
            yield f"call.Items({name}, {convert})"
            yield f"(UIntPtr){name}.Count"
        else:
            yield name
    if parameter.goes_out:
        yield f"out {functions.back(parameter)}InC"


def call_of(operation, names):
    pieces = ["client"]
    for parameter in operation.parameters:
        pieces += handed(parameter, operation, names)
    if words.needs_result(operation):
        pieces.append("out call.Result")
    return f"Native.{operation.c_name}({', '.join(pieces)})"


def place_of(parameter):
    kind = {"text": "TextInC", "int": "int", "unsigned": "uint", "record": "IntPtr", "list": "ListInC"}
    return f"            var {functions.back(parameter)}InC = default({kind[parameter.kind]});\n"


def frame_of(operation, name):
    if operation.always:
        return "OperateAlways", "", "outcome"
    if operation.answers or operation.declaration.returns == "void":
        return "Ask", "", "()"
    return "Operate", f'"{name}", ', "()"


def method(operation, names, note):
    name = words.pascal(operation.c_name.removeprefix("pvw_"))
    kind, value = returned(operation, names)
    pieces = [taken_in(parameter, names) for parameter in words.inputs(operation)]
    if operation.name == "setRootCred":
        pieces.append("string cred")
    if words.takes_cred(operation):
        pieces.append("string cred = null")
    frame, first, read = frame_of(operation, name)
    places = "".join(place_of(parameter) for parameter in operation.outputs)
    result = "" if kind == "void" else "return "
    call = wrapped(f"{result}{frame}", f"{first}call => {call_of(operation, names)}, {read} => {value}", ";",
                   "            ")
    return (summary(note, "        ") + wrapped(f"public {kind} {name}", ", ".join(pieces), "", "        ")
            + f"        {{\n{places}{call}        }}\n\n")


def file_text(description, members, header, in_words_of_c, directions):
    names = description.records
    text = (sources.ROOT / f"{FILE}.in").read_text(encoding="utf-8")
    records = "".join(record(name, description.comments.get(name, members[name][0]), members[name][1], names)
                      for name in words.in_order(description, members))
    structures = "".join(structure(name, members[name][1], names, directions) for name in names)
    operations = "".join(method(operation, names, words.doc(operation, in_words_of_c, description, str))
                         for operation in description.operations)
    enumerations = "".join(enumeration(name, header) for name in words.ENUMERATIONS)
    for place, value in (("abi", str(description.abi)), ("enumerations", enumerations.rstrip("\n") + "\n"),
                         ("records", records), ("structures", structures),
                         ("operations", operations.rstrip("\n") + "\n"), ("functions", native_functions(description))):
        text = text.replace(f"@{place}@", value)
    return text


def files(description, members, header, in_words_of_c, directions):
    template = (sources.ROOT / f"{FILE}.in").read_text(encoding="utf-8")
    words.expect_frame(description, {FILE: template})
    return {FILE: file_text(description, members, header, in_words_of_c, directions)}
