"""What the bindings for other languages have in common: their constants and names, and what a caller hands over."""
import re
import textwrap

import functions
import records
import sources

# The enumerations by their names in a binding: which of C's constants they hold.
ENUMERATIONS = {
    "NetworkCause": ("PVW_NETWORK_", "Why the last request got no whole reply."),
    "Method": ("PVW_METHOD_", "How a command goes out."),
    "InviteAs": ("PVW_INVITEAS_", "What a member of a workspace is, and what an invitee is to become."),
    "Event": ("PVW_", "What happens in a workspace."),
}
EVENTS = ("START", "END")

# What C's comments say of a result, and how a language says it whose failures are exceptions.
RESULTS = {
    "Does nothing and returns 1.": "Does nothing.",
    "Always 1, whatever comes of it;": "Succeeds whatever comes of it;",
    "1 where the reply's result is SUCCESS.": "Fails unless the reply's result is SUCCESS.",
    "With `send` 0 nothing is sent and 0 returned.": "With `send` 0 nothing is sent, which fails as {not_sent}.",
    "`error` becomes 1 when": "1 when",
    "else the result is 0.": "else the result is {false}.",
    "also where the result is 0,": "also where the result is {false},",
    "by a listener that returned 0": "by a listener that returned {false}",
}


def in_results(text, not_sent, false):
    for of_c, own in RESULTS.items():
        text = text.replace(of_c, own.format(not_sent=not_sent, false=false))
    return text


def constants(header):
    """(name, number, comment) of every constant of the C interface, in its order."""
    found = re.findall(r"\b(PVW_[A-Z_]+) = (\d+),?(?: *///< ([^\n]*))?", header)
    return [(name, int(number), comment) for name, number, comment in found]


def enumeration(name, header):
    prefix, _ = ENUMERATIONS[name]
    for constant, number, comment in constants(header):
        rest = constant.removeprefix(prefix)
        is_event = rest.split("_")[0] in EVENTS and not rest.startswith("NETWORK")
        if constant.startswith(prefix) and (name != "Event" or is_event):
            yield rest, number, comment


def record_name(in_c):
    """pvw_listed_space is ListedSpace."""
    return "".join(word.capitalize() for word in in_c.removeprefix("pvw_").split("_"))


def pascal(name):
    return "".join(word[0].upper() + word[1:] for word in name.split("_"))


def broken(pieces, width):
    """Pieces that end with commas, in lines that are broken between them alone."""
    lines = textwrap.wrap(" ".join(piece.replace(" ", "\0") for piece in pieces), width, break_long_words=False,
                          break_on_hyphens=False)
    return [line.replace("\0", " ") for line in lines]


def in_order(description, members):
    """The records, each behind those within it."""
    done = []
    for name in description.records:
        done += [found for found in [*[member.item for member in members[name][1] if member.item], name]
                 if found not in done]
    return done


def lists(description, members):
    return records.lists_wanted(description, members)


def inputs(operation):
    """What a caller hands over, but for the credential, which each binding takes in its own way."""
    return [parameter for parameter in operation.parameters
            if parameter.comes_in and parameter.kind != "unused" and not operation.answers and parameter.name != "cred"]


def takes_cred(operation):
    """Whether the credential of the session is what an operation takes when it is not told another."""
    return not operation.answers and operation.name != "setRootCred" and any(
        parameter.name == "cred" for parameter in operation.parameters)


def needs_result(operation):
    return functions.needs_result(operation)


def doc(operation, in_words_of_c, description, translate):
    return translate(in_words_of_c(operation.doc or operation.declaration.comment, description.operations))


def expect_frame(description, texts):
    """Every function of the frame is used by each binding, so that none is forgotten there."""
    for binding, text in texts.items():
        for name in description.frame:
            if not re.search(rf"\b{name}\b", text):
                raise sources.Fault(f"{binding} has nothing of {name}")
