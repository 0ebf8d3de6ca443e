"""What goes into a call and comes out of it, as C has it."""
from __future__ import annotations

import ctypes
import dataclasses
import operator
from ctypes import Structure, c_size_t, c_void_p

from . import _library
from ._library import Text
from ._records import IN_C


@dataclasses.dataclass
class One:
    """A text, a number or a record that goes in, and the kind that C takes there: anything else would be read as it."""
    kind: type
    value: object


@dataclasses.dataclass
class Items:
    """A list that goes in; its kind is known even where it is empty."""
    kind: type
    items: object


class Out:
    """A place for what comes back."""

    def __init__(self, kind: type):
        self.by_pointer = issubclass(kind, Structure) and hasattr(kind, "record")
        self.place = ctypes.POINTER(kind)() if self.by_pointer else kind()

    def value(self):
        return taken_record(self.place) if self.by_pointer else taken(self.place)


def expect(kind: type, value) -> None:
    if not isinstance(value, kind):
        raise TypeError(f"{kind.__name__} is wanted, and not {type(value).__name__}")


def number(kind: type, value):
    """In C's type, if it has room for it."""
    place = kind(operator.index(value))
    if place.value != value:
        raise OverflowError(f"{value} is beyond what the library takes")
    return place


class Given:
    """The arguments of one call. What they point at lives as long as this does."""

    def __init__(self):
        self._kept = []

    def text(self, text: str) -> Text:
        expect(str, text)
        self._kept.append(_library.units_of(text))
        return _library.text_at(self._kept[-1])

    def fill(self, record, to: Structure):
        expect(type(to).record, record)
        to.size = ctypes.sizeof(to)
        for member, (name, kind) in zip(dataclasses.fields(type(to).record), to._fields_[1:]):
            value = getattr(record, member.name)
            setattr(to, name, self.text(value) if kind is Text else number(kind, value))
        return to

    def array(self, items: Items):
        if isinstance(items.items, str):
            raise TypeError("a list of texts is wanted, and not one text")
        values = list(items.items)
        if items.kind is str:
            array = (Text * len(values))(*[self.text(value) for value in values])
        else:
            array = (IN_C[items.kind] * len(values))()
            for value, place in zip(values, array):
                self.fill(value, place)
        self._kept.append(array)
        return array, c_size_t(len(values))

    def one(self, kind: type, value):
        if kind is Text:
            return self.text(value)
        if kind not in IN_C:
            return number(kind, value)
        self._kept.append(self.fill(value, IN_C[kind]()))
        return ctypes.byref(self._kept[-1])

    def arguments(self, values):
        """Each value as C takes it."""
        for value in values:
            if isinstance(value, Items):
                yield from self.array(value)
            elif isinstance(value, Out):
                yield ctypes.byref(value.place)
            else:
                yield self.one(value.kind, value.value)


def taken(value):
    """What a member or an output holds, as Python has it."""
    if isinstance(value, Text):
        return _library.text_of(value)
    if isinstance(value, Structure):
        return [taken_record(value.items[at]) for at in range(value.count)]
    return getattr(value, "value", value)


def taken_record(place):
    kind = type(place.contents)
    from_c = _library.whole(place, kind)
    record = kind.record()
    for member, (name, _) in zip(dataclasses.fields(record), kind._fields_[1:]):
        value = taken(getattr(from_c, name))
        setattr(record, member.name, bool(value) if member.type == "bool" else value)
    return record


def expects_result(outs) -> bool:
    return any(not isinstance(out.place, ctypes._SimpleCData) for out in outs)


class Result:
    """What a call has brought, until it has been read."""

    def __init__(self):
        self.handle = c_void_p()

    def __enter__(self) -> Result:
        return self

    def __exit__(self, *_):
        if self.handle:
            _library.library().pvw_result_free(self.handle)
