"""The client: what it has besides operations."""
from __future__ import annotations

import ctypes
import itertools
import warnings
import weakref
from collections.abc import Callable
from ctypes import c_int, c_uint, c_void_p
from dataclasses import dataclass, field

from . import _library
from ._calls import calls
from ._conversion import Given, Out, Result, expects_result, number
from ._errors import Cancelled, DeadlinePassed, NetworkError, NotSent, WapiError
from ._interrupts import interrupts
from ._library import Text, library
from ._operations import Operations
from ._records import Method, NetworkCause


@dataclass
class Exchange:
    """One exchange as it goes over the wire."""
    method: Method
    url: str  # where it goes, each redirect by itself
    headers: list[str] = field(default_factory=list)  # "Name: value" each; the system adds host and length
    body: bytes = b""
    status: int = 0  # 0 before it begins, -1 where no whole reply came
    reply: bytes = b""
    milliseconds: int = 0


def exchange_of(place) -> Exchange:
    seen = _library.whole(place, _library.ExchangeInC)
    headers = [_library.bytes_of(seen.headers[at]).decode("utf-8", "replace") for at in range(seen.headerCount)]
    body = b"".join(_library.bytes_of(seen.body[at]) for at in range(seen.bodyCount))
    return Exchange(Method(seen.method), _library.bytes_of(seen.url).decode("utf-8", "replace"), headers, body,
                    seen.status, _library.bytes_of(seen.reply), seen.milliseconds)


def xml_text(text: str) -> str:
    """The text as an XML document can carry it: "&", "<" and ">" become references, and what XML has no place for is
    dropped."""
    given, xml = Given(), Text()
    with Result() as result:
        if not library().pvw_xml_text(given.text(text), ctypes.byref(xml), ctypes.byref(result.handle)):
            raise MemoryError
        return _library.text_of(xml)


def version() -> str:
    """The version of the library, such as "1.0.0"."""
    return library().pvw_version().decode()


def set_log(maximum_level: int) -> None:
    """What the process's log takes from now on: 0 nothing, 1 errors, 2 warnings too, 3 information too, 4 everything,
    as at first."""
    library().pvw_set_log(number(c_int, maximum_level))


def message_loop_fd() -> int:
    """A descriptor that becomes readable when a tick of the calling thread is due; -1 on Windows."""
    return library().pvw_message_loop_fd()


def dispatch_pending_messages() -> int:
    """Delivers what is due on the calling thread, without waiting, and returns how many ticks that were."""
    with calls.running():
        return library().pvw_dispatch_pending_messages()


# What the library calls is there for good: a client that nobody closed is told of by the library for as long as its
# timer ticks, whether it is still there or not.
_listening: weakref.WeakValueDictionary = weakref.WeakValueDictionary()
_numbers = itertools.count(1)


def _stop(variables, _) -> bool:
    """The library has been told nothing by a listener that was interrupted."""
    client = _listening.get(variables["context"])
    if client is not None:
        client.cancel()
    return True


@_library.RefreshListener
@interrupts.expected(lambda _, raised: not isinstance(raised, Exception))  # which is the host's listener's own
def _refreshed(context, result):
    client = _listening.get(context)
    if client is not None:
        client._refreshed(result)


@_library.ExchangeListener
@interrupts.expected(_stop)
def _exchanged(context, place):
    client = _listening.get(context)
    return 1 if client is None else client._exchanged(place)


@_library.TransferProgress
@interrupts.expected(_stop)
def _transferred(context, done, size):
    client = _listening.get(context)
    return 1 if client is None else client._transferred(done, size)


def _cancel(handle: int) -> None:
    library().pvw_cancel(c_void_p(handle))


class Client(Operations):
    """One user's connection to the service.

    A call that fails raises a WapiError, or one of its kinds. A client belongs to the thread that made it; `cancel`
    alone may come from another one. Where an operation is given no credential it takes that of the session.
    """

    def __init__(self, url: str = ""):
        """`url` is the operation endpoint, such as "http://host/kznconnect/op.do"."""
        self._handle = c_void_p()
        if not library().pvw_client_new(Given().text(url), ctypes.byref(self._handle)):
            raise MemoryError
        self._refresh_listener = self._exchange_listener = self._transfer_progress = None
        self._begin()

    def _begin(self) -> None:
        """Listens to everything: whom to tell is a matter of its own, and may change in the middle of a call."""
        self._sent = False
        self._raised: BaseException | None = None
        self._unsent: tuple | None = None  # what was not sent last, and why
        context = next(_numbers)
        _listening[context] = self
        library().pvw_on_refresh(self._handle, _refreshed, c_void_p(context))
        library().pvw_on_exchange(self._handle, _exchanged, c_void_p(context))
        library().pvw_on_transfer_progress(self._handle, _transferred, c_void_p(context))
        calls.add(self._handle.value, _cancel)

    def copy(self) -> Client:
        """A further client that shares the timer, and holds everything else for itself."""
        self._expect_open()
        further = type(self).__new__(type(self))
        further._handle = c_void_p()
        if not library().pvw_client_copy(self._handle, ctypes.byref(further._handle)):
            raise MemoryError
        further._refresh_listener = self._refresh_listener
        further._exchange_listener = self._exchange_listener
        further._transfer_progress = self._transfer_progress
        further._begin()
        return further

    def close(self) -> None:
        """Ends the client; the session at the service lives on, unless it was ended with `logout`."""
        if self._handle:
            calls.remove(self._handle.value)
            library().pvw_client_free(self._handle)
            self._handle = c_void_p()

    def _expect_open(self) -> None:
        if not self._handle:
            raise ValueError("the client is closed")

    def __enter__(self) -> Client:
        return self

    def __exit__(self, *_) -> None:
        self.close()

    def __del__(self):
        if getattr(self, "_handle", None):  # which thread this is nobody knows
            warnings.warn("a client was not closed", ResourceWarning, source=self)

    # ---- Control ----

    def sign_in(self, user_name: str, password: str = "", *, token: str = "", isp: str = "") -> None:
        """Begins a session with the token where there is one, with the password otherwise."""
        self.login(user_name, token, isp, password, 1 if token else 0, 1)

    def cancel(self) -> None:
        """Ends the call that is running; without one nothing happens. From any thread."""
        library().pvw_cancel(self._handle)

    def set_deadline(self, milliseconds: int) -> None:
        """How long each call from now on may take as a whole; 0, the default, is no such limit."""
        self._expect_open()
        library().pvw_set_deadline(self._handle, number(c_uint, milliseconds))

    def on_timer(self, timer_id: int = 1) -> None:
        """The refresh tick: reads the session with the root credential. Called by the timer itself."""
        self._expect_open()
        with calls.running():
            library().pvw_on_timer(self._handle, number(c_uint, timer_id))

    def on_refresh(self, listener: Callable[[bool], None] | None) -> None:
        """Told after each refresh by the timer, with its result. It may do anything."""
        self._refresh_listener = listener

    def on_exchange(self, listener: Callable[[Exchange], bool] | None) -> None:
        """Told of each exchange before it begins and when it is over. False before it begins sends nothing. It must not
        call the client but for `cancel`."""
        self._exchange_listener = listener

    def on_transfer_progress(self, progress: Callable[[int, int], bool] | None) -> None:
        """Told of the bytes done and the whole as a picture goes up or comes down. False ends the transfer."""
        self._transfer_progress = progress

    # ---- What operations are made of ----

    def _answer(self, listener, *arguments) -> int:
        """What a listener says; what it raises ends the call, and is raised there."""
        try:
            return 1 if listener(*arguments) else 0
        except BaseException as raised:  # no exception may go through C
            self._raised = raised
            return 0

    def _refreshed(self, result: int) -> None:
        if self._refresh_listener is not None:
            self._refresh_listener(result == 1)

    def _transferred(self, done: int, size: int) -> int:
        return 1 if self._transfer_progress is None else self._answer(self._transfer_progress, done, size)

    def _exchanged(self, place) -> int:
        self._sent = True
        if self._exchange_listener is None:
            return 1
        return self._answer(lambda: self._exchange_listener(exchange_of(place)))

    def _cred(self, cred: str | None) -> str:
        return self.get_root_cred() if cred is None else cred

    def _call(self, name: str, values) -> tuple[int, list]:
        self._expect_open()
        outs = [value for value in values if isinstance(value, Out)]
        given = Given()
        with Result() as result:
            arguments = [self._handle, *given.arguments(values)]
            if expects_result(outs):
                arguments.append(ctypes.byref(result.handle))
            with calls.running():
                outcome = getattr(library(), name)(*arguments)
            is_there = outcome or (result.handle and outs)
            return outcome, [out.value() for out in outs] if is_there else []

    @staticmethod
    def _returned(values: list):
        return None if not values else values[0] if len(values) == 1 else tuple(values)

    def _ask(self, name: str, *values):
        """What the client holds; only memory can be missing."""
        outcome, found = self._call(name, values)
        if not outcome:
            raise MemoryError
        return self._returned(found)

    def _operate(self, name: str, *values):
        before = self.get_lst_msg()
        outcome, found = self._listened(name, values)
        if not outcome:
            raise self._error(name.removeprefix("pvw_"), before)
        return self._returned(found)

    def _operate_always(self, name: str, *values):
        """One whose outputs come back whatever becomes of it."""
        outcome, found = self._listened(name, values)
        return bool(outcome), *(found or [""])

    def _listened(self, name: str, values) -> tuple[int, list]:
        """What a listener raises meanwhile is raised here."""
        self._sent = False
        self._raised = None
        outcome, found = self._call(name, values)
        raised, self._raised = self._raised, None
        if raised is not None:
            raise raised
        return outcome, found

    def _error(self, name: str, before) -> WapiError:
        message = self.get_lst_msg()
        cause = NetworkCause(self.get_network_error_kind())
        if self._sent:
            self._unsent = None
            return self._network_error(name, message, cause) if self.get_network_error() else WapiError(name, message)
        is_own = message != before or self._unsent == (name, message)
        self._unsent = (name, message) if is_own else None
        if message.reason.startswith("Network error.") and (is_own or self._has_bad_address(message, cause)):
            return self._network_error(name, message, cause)
        return NotSent(name, message if is_own else type(message)())

    def _has_bad_address(self, message, cause: NetworkCause) -> bool:
        """Each operation sends nothing then, with the same message."""
        return cause is NetworkCause.BAD_ADDRESS and message.reason.endswith(self.get_op_url())

    def _network_error(self, name: str, message, cause: NetworkCause) -> NetworkError:
        kind = {NetworkCause.CANCELLED: Cancelled, NetworkCause.DEADLINE: DeadlinePassed}.get(cause, NetworkError)
        return kind(name, message, cause, self.get_network_error_text())
