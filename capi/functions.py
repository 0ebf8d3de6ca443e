"""The functions of the C interface: how each is declared, and how it calls the class."""


def count_of(name):
    return name.removesuffix("s") + "Count"


def back(parameter):
    """The name of an output: a list that goes in as well comes back beside it."""
    return parameter.name + "Back" if parameter.comes_in else parameter.name


def local(parameter):
    return "the" + parameter.name[0].upper() + parameter.name[1:]


def taken(parameter, names):
    """What of the signature hands a parameter over."""
    if parameter.kind == "text":
        yield f"pvw_text {parameter.name}"
    elif parameter.kind == "record":
        yield f"const {names[parameter.record]}* {parameter.name}"
    elif parameter.kind == "list":
        kind = names.get(parameter.record, "pvw_text")
        yield f"const {kind}* {parameter.name}"
        yield f"size_t {count_of(parameter.name)}"
    elif parameter.kind != "unused":
        yield f"{'unsigned ' if parameter.kind == 'unsigned' else ''}int {parameter.name}"


def output(parameter, names):
    """What of the signature brings a parameter back."""
    kinds = {"text": "pvw_text*", "int": "int*", "unsigned": "unsigned int*"}
    if parameter.kind == "record":
        return f"const {names[parameter.record]}** {back(parameter)}"
    if parameter.kind == "list":
        return f"{names[parameter.record]}_list* {back(parameter)}"
    return f"{kinds[parameter.kind]} {back(parameter)}"


def needs_result(operation):
    return any(parameter.kind in ("text", "record", "list") for parameter in operation.outputs)


def signature(operation, names):
    pieces = ["pvw_client* client"]
    for parameter in operation.parameters:
        if parameter.comes_in:
            pieces += taken(parameter, names)
        if parameter.goes_out:
            pieces.append(output(parameter, names))
    if needs_result(operation):
        pieces.append("pvw_result** result")
    return f"int PVW_CALL {operation.c_name}({', '.join(pieces)})"


def readied(parameter, declared):
    """The local that a call takes or fills, if it needs one."""
    kind, name = parameter.kind, parameter.name
    if kind == "unused":
        is_output = declared.endswith("&") and not declared.startswith("const")
        return f"CStringT {local(parameter)};" if is_output else ""
    if not parameter.comes_in:
        of_kind = {"text": "CStringT", "list": f"std::vector<{parameter.record}>", "record": parameter.record}[kind]
        return f"{of_kind} {local(parameter)};"
    if kind == "list" and parameter.record != "text":
        return f"auto {local(parameter)} = recordsOf<{parameter.record}>({name}, {count_of(name)});"
    return f"auto {local(parameter)} = recordOf<{parameter.record}>({name});" if kind == "record" else ""


def argument(parameter, declared):
    if readied(parameter, declared):
        return local(parameter)
    if parameter.kind == "unused":
        return "{}"
    if parameter.kind == "text":
        return f"textOf({parameter.name})"
    if parameter.kind == "list":
        return f"textsOf({parameter.name}, {count_of(parameter.name)})"
    return f"static_cast<{parameter.record}>({parameter.name})" if parameter.record else parameter.name


def call_of(operation):
    pairs = zip(operation.parameters, operation.declaration.parameters)
    arguments = ", ".join(argument(parameter, declared) for parameter, (declared, _) in pairs)
    return f"live.{operation.name}({arguments})"


def given(operation):
    pieces = [f"into({back(parameter)}, memory.of({local(parameter)}))" for parameter in operation.outputs]
    return f"memory.give({', '.join(pieces)})"


def places(operation):
    return f"expectPlaces({', '.join(back(parameter) for parameter in operation.outputs)});"


def body_with_outputs(operation):
    lines = [places(operation)]
    pairs = zip(operation.parameters, operation.declaration.parameters)
    lines += [line for line in (readied(parameter, declared) for parameter, (declared, _) in pairs) if line]
    if operation.always:
        lines += [f"const int outcome = {call_of(operation)};", f"{given(operation)};", "return outcome;"]
    else:
        lines += [f"if ({call_of(operation)} == 0) return 0;", f"return {given(operation)};"]
    return lines


def body_of_answer(operation):
    answer = operation.parameters[0]
    value = f"live.{operation.name}()"
    if needs_result(operation):
        return [places(operation), f"return memory.give(into({answer.name}, memory.of({value})));"]
    return [places(operation), f"*{answer.name} = {value};", "return 1;"]


def body_without_outputs(operation):
    pairs = zip(operation.parameters, operation.declaration.parameters)
    lines = [line for line in (readied(parameter, declared) for parameter, (declared, _) in pairs) if line]
    if operation.declaration.returns == "void":
        return lines + [f"{call_of(operation)};", "return 1;"]
    return lines + [f"return {call_of(operation)};"]


def body(operation):
    if operation.answers:
        return body_of_answer(operation)
    return body_with_outputs(operation) if operation.outputs else body_without_outputs(operation)


def definition(operation, names):
    frame = "answered(client, result, [&](CWapiClient& live, Memory& memory)" if needs_result(operation) \
        else "asked(client, [&](CWapiClient& live)"
    lines = "".join(f"        {line}\n" for line in body(operation))
    return f"{signature(operation, names)}\n{{\n    return {frame} {{\n{lines}    }});\n}}\n\n"


def source(description, sections):
    operations = [operation for operation in description.operations if operation.declaration.section in sections]
    text = f"// {'; '.join(sections)}. Written by capi/generate.py.\n"
    text += '#include "capi/Call.h"\n\nusing namespace capi;\n\n'
    return text + "".join(definition(operation, description.records) for operation in operations).rstrip("\n") + "\n"
