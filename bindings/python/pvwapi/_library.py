"""The library itself, and how a text crosses its boundary."""
from __future__ import annotations

import ctypes
import functools
import os
import sys
from ctypes import CFUNCTYPE, POINTER, Structure, c_char_p, c_int, c_size_t, c_uint, c_void_p
from enum import IntEnum


class Answered(IntEnum):
    """Numbers that the library answers with. One that only a later library has is no member, and yet of the kind."""

    @classmethod
    def _missing_(cls, value):
        if not isinstance(value, int):
            return None
        member = int.__new__(cls, value)
        member._name_ = f"UNKNOWN_{value}"
        member._value_ = int(value)
        return cls._value2member_map_.setdefault(member._value_, member)

    def __reduce_ex__(self, protocol):
        return type(self), (self._value_,)


class Text(Structure):
    """A text in UTF-16. Whoever makes one keeps the units alive."""
    _fields_ = [("units", c_void_p), ("length", c_size_t)]


class Bytes(Structure):
    _fields_ = [("bytes", c_void_p), ("length", c_size_t)]


class ExchangeInC(Structure):
    _fields_ = [
        ("size", c_size_t),
        ("method", c_int),
        ("url", Bytes),
        ("headers", POINTER(Bytes)),
        ("headerCount", c_size_t),
        ("body", POINTER(Bytes)),
        ("bodyCount", c_size_t),
        ("status", c_int),
        ("reply", Bytes),
        ("milliseconds", c_uint),
    ]


RefreshListener = CFUNCTYPE(None, c_void_p, c_int)
TransferProgress = CFUNCTYPE(c_int, c_void_p, c_size_t, c_size_t)
ExchangeListener = CFUNCTYPE(c_int, c_void_p, POINTER(ExchangeInC))


def name() -> str:
    """The library's file: what PVWAPI_LIBRARY names, else the one beside this module, else what the system finds."""
    usual = "pvwapi_c.dll" if sys.platform == "win32" else "libpvwapi_c.so.1"
    inside = os.path.join(os.path.dirname(os.path.abspath(__file__)), usual)
    return os.environ.get("PVWAPI_LIBRARY", inside if os.path.exists(inside) else usual)


@functools.cache
def library() -> ctypes.CDLL:
    """Loads the library with the first call that needs it."""
    from ._records import ABI_VERSION
    loaded = ctypes.CDLL(name())
    loaded.pvw_abi_version.restype = c_uint
    loaded.pvw_version.restype = c_char_p
    if loaded.pvw_abi_version() < ABI_VERSION:
        raise ImportError(f"{name()} is older than this package")
    return loaded


def units_of(text: str) -> bytes:
    return text.encode("utf-16-le", "surrogatepass")


def text_at(units: bytes) -> Text:
    return Text(ctypes.cast(c_char_p(units), c_void_p), len(units) // 2)


def text_of(text: Text) -> str:
    if not text.length:
        return ""
    return ctypes.string_at(text.units, 2 * text.length).decode("utf-16-le", "surrogatepass")


def bytes_of(piece: Bytes) -> bytes:
    return ctypes.string_at(piece.bytes, piece.length) if piece.length else b""


def whole(place, kind: type[Structure]) -> Structure:
    """A record of this package's own size: what an older library's does not have is empty."""
    record = kind()
    ctypes.memmove(ctypes.byref(record), place, min(place.contents.size, ctypes.sizeof(kind)))
    return record
