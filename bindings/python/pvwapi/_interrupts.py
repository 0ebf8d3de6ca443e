"""What a signal's handler raises while the library has the main thread."""
from __future__ import annotations

import contextlib
import sys
import threading
from collections.abc import Callable


class Interrupts:
    """The interpreter runs a signal's handler where Python code goes on: in what the library calls, often before any
    try there. What the handler raises then ends at the library, and only sys.unraisablehook is told of it."""

    def __init__(self):
        self._ends: dict = {}  # by the code that the library calls
        self._raised: list[BaseException] | None = None  # in the call that is running

    def expected(self, end: Callable[[dict, BaseException], bool]):
        """What leaves this function, which the library calls, comes out of the call if `end` says so, which is given
        the function's variables and what was raised."""
        def of(function):
            self._ends[function.__code__] = end
            return function
        return of

    @contextlib.contextmanager
    def raised(self):
        """For the length of a call; on other threads no signals are handled."""
        if threading.current_thread() is not threading.main_thread():
            yield
            return
        outer, self._raised = self._raised, []
        try:
            with self._listening():
                yield
            if self._raised:
                raise self._raised[0]
        finally:
            self._raised = outer

    @contextlib.contextmanager
    def _listening(self):
        before = sys.unraisablehook

        def hook(unraisable):
            if not self._take(unraisable):
                before(unraisable)

        try:
            sys.unraisablehook = hook
            yield
        finally:
            if sys.unraisablehook is hook:  # and not one that the host has set meanwhile, which may call this one
                sys.unraisablehook = before

    def _take(self, unraisable) -> bool:
        """Whether it comes out of the call: it has left one of the functions, whose frame is the outermost."""
        trace = unraisable.exc_traceback
        is_here = threading.current_thread() is threading.main_thread() and self._raised is not None
        if not is_here or trace is None:
            return False
        end = self._ends.get(trace.tb_frame.f_code)
        if end is None or not end(trace.tb_frame.f_locals, unraisable.exc_value):
            return False
        self._raised.append(unraisable.exc_value)
        return True


interrupts = Interrupts()
