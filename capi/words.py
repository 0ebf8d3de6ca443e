"""What the bindings for other languages have in common: their constants and names, and what a caller hands over."""
import re

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
