"""The client for asyncio: its calls run on a thread of their own, one after the other."""
from __future__ import annotations

import asyncio
import contextlib
import queue
import threading
from collections.abc import Callable

from ._client import Client, dispatch_pending_messages
from ._operations import AwaitedOperations

TICK = 0.5  # seconds between two looks at the timer


class AsyncClient(AwaitedOperations):
    """One user's connection to the service, for one event loop.

    Where a task that waits for a call is cancelled, the call is ended; so is one that still runs where the client is
    left. Listeners are told on the client's own thread.
    """

    def __init__(self, url: str = ""):
        self._url = url
        self._jobs: queue.SimpleQueue = queue.SimpleQueue()
        self._client: Client | None = None
        self._turn: asyncio.Lock | None = None
        self._thread: threading.Thread | None = None

    async def __aenter__(self) -> AsyncClient:
        self._turn = asyncio.Lock()
        self._thread = threading.Thread(target=self._work, daemon=True)
        self._thread.start()
        try:
            await self._do(self._open)
        except BaseException:  # also where the task was cancelled, and the client is there a moment later
            self._jobs.put(self._close)
            self._jobs.put(None)
            raise
        return self

    async def __aexit__(self, *_) -> None:
        client, self._client = self._client, None
        closed = self._do(client.close)
        self._jobs.put(None)
        cancelled = await self._end(client, closed)
        self._thread.join()
        if cancelled is not None:
            raise cancelled

    def _open(self) -> None:
        self._client = Client(self._url)

    def _close(self) -> None:
        client, self._client = self._client, None
        if client is not None:
            client.close()

    def _work(self) -> None:
        """Does one job after the other, and sees to the timer in between."""
        while True:
            with contextlib.suppress(queue.Empty):
                job = self._jobs.get(timeout=TICK)
                if job is None:
                    return
                job()
            if self._client is not None:  # without one there may be no library
                dispatch_pending_messages()

    @staticmethod
    async def _end(client: Client, done: asyncio.Future) -> asyncio.CancelledError | None:
        """Ends the call, which may only just be about to begin, whoever cancels the task meanwhile. Returns what is to
        be raised then."""
        cancelled = None
        while not done.done():
            client.cancel()
            try:
                await asyncio.wait([done], timeout=0.01)
            except asyncio.CancelledError as raised:
                cancelled = raised
        return cancelled

    def _do(self, function: Callable, *arguments, **named) -> asyncio.Future:
        loop = asyncio.get_running_loop()
        done = loop.create_future()

        def settle(how, value):
            if not done.cancelled():
                how(value)

        def job():
            try:
                value = function(*arguments, **named)
            except StopIteration as raised:  # a future takes none
                failure = RuntimeError("a listener raised StopIteration")
                failure.__cause__ = raised
                loop.call_soon_threadsafe(settle, done.set_exception, failure)
            except BaseException as raised:
                loop.call_soon_threadsafe(settle, done.set_exception, raised)
            else:
                loop.call_soon_threadsafe(settle, done.set_result, value)

        self._jobs.put(job)
        return done

    async def _run(self, operation: Callable, *arguments, **named):
        self._expect_open()
        async with self._turn:
            client = self._expect_open()
            done = self._do(operation, client, *arguments, **named)
            try:
                return await asyncio.shield(done)
            except asyncio.CancelledError:
                await self._end(client, done)
                done.exception()
                raise

    def _expect_open(self) -> Client:
        if self._client is None:
            raise ValueError("the client is not open: use it in an async with")
        return self._client

    async def sign_in(self, user_name: str, password: str = "", *, token: str = "", isp: str = "") -> None:
        """Begins a session with the token where there is one, with the password otherwise."""
        await self._run(Client.sign_in, user_name, password, token=token, isp=isp)

    def cancel(self) -> None:
        """Ends the call that is running; it then fails as Cancelled."""
        if self._client is not None:
            self._client.cancel()

    async def set_deadline(self, milliseconds: int) -> None:
        """How long each call from now on may take as a whole; 0, the default, is no such limit."""
        await self._run(Client.set_deadline, milliseconds)

    async def on_refresh(self, listener) -> None:
        """See Client.on_refresh."""
        await self._run(Client.on_refresh, listener)

    async def on_exchange(self, listener) -> None:
        """See Client.on_exchange."""
        await self._run(Client.on_exchange, listener)

    async def on_transfer_progress(self, progress) -> None:
        """See Client.on_transfer_progress."""
        await self._run(Client.on_transfer_progress, progress)

    async def on_timer(self, timer_id: int = 1) -> None:
        """See Client.on_timer."""
        await self._run(Client.on_timer, timer_id)
