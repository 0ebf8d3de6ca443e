"""The calls that threads are in, and how they end before the interpreter does."""
from __future__ import annotations

import atexit
import contextlib
import threading
import time

from ._interrupts import interrupts

PATIENCE = 5  # seconds for a listener that does not return


class Calls:
    """The interpreter ends a thread that comes back to it too late, in the middle of whatever called it: that must not
    be the library, through which nothing may be thrown."""

    def __init__(self):
        self._changed = threading.Condition()
        self._count = 0  # of threads
        self._own = threading.local()
        self._is_over = False
        self._clients: dict[int, object] = {}  # what ends a client's call, by the client's handle

    def add(self, handle: int, cancel) -> None:
        with self._changed:
            self._clients[handle] = cancel

    def remove(self, handle: int) -> None:
        with self._changed:
            self._clients.pop(handle, None)

    @contextlib.contextmanager
    def running(self):
        if getattr(self._own, "is_within", False):  # a listener's call
            with interrupts.raised():
                yield
            return
        with self._changed:
            while self._is_over and threading.current_thread() is not threading.main_thread():
                self._changed.wait()  # for the end, as every other thread does that is left
            self._count += 1
        self._own.is_within = True
        try:
            with interrupts.raised():
                yield
        finally:
            self._own.is_within = False
            with self._changed:
                self._count -= 1
                self._changed.notify_all()

    def end(self) -> None:
        """Begins none on another thread from now on, and ends those that run."""
        with self._changed:
            self._is_over = True
            last = time.monotonic() + PATIENCE
            while self._count and time.monotonic() < last:
                for handle, cancel in self._clients.items():
                    cancel(handle)
                self._changed.wait(0.01)


calls = Calls()
atexit.register(calls.end)
