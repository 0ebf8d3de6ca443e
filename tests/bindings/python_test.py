#!/usr/bin/env python3
"""The Python package, from the wheel that is made of it, against the stand-in service.

    with-service.sh SERVICE python_test.py WORK [unittest's own]
"""
import asyncio
import contextlib
import ctypes
import dataclasses
import inspect
import os
import pickle
import shutil
import signal
import socket
import subprocess
import sys
import textwrap
import threading
import time
import types
import unittest
import unittest.mock
import warnings
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
LICENCES = ["LICENSE", "THIRD-PARTY.md"]
URL = os.environ["TEST_SERVICE_URL"]
STRANGE = "Grüße aus 東京 \U0001F600 <&> \"'"


def make_wheel(work):
    """The package's source is copied as it is installed: setuptools writes beside what it packs."""
    shutil.rmtree(work, ignore_errors=True)
    shutil.copytree(ROOT / "bindings/python", work / "source", ignore=shutil.ignore_patterns("__pycache__"))
    for text in LICENCES:
        shutil.copy(ROOT / text, work / "source")
    subprocess.run([sys.executable, "-c", f"from setuptools import build_meta\nbuild_meta.build_wheel({str(work)!r})"],
                   cwd=work / "source", check=True, stdout=subprocess.DEVNULL)
    return next(work.glob("pvwapi-*.whl"))


sys.path.insert(0, str(make_wheel(Path(sys.argv.pop(1)))))

import pvwapi  # noqa: E402
from pvwapi import _library, _operations, _records  # noqa: E402


@contextlib.contextmanager
def silent_server():
    """The operation address of a server that takes connections and says nothing."""
    with socket.create_server(("127.0.0.1", 0)) as server:
        yield f"http://127.0.0.1:{server.getsockname()[1]}/kznconnect/op.do"


@contextlib.contextmanager
def slow_server(seconds):
    """The operation address of a server that takes its time for one reply."""
    def answer(server):
        with server.accept()[0] as connection:
            connection.recv(65536)
            time.sleep(seconds)
            body = b"<?xml version=\"1.0\"?><wapi><result>SUCCESS</result></wapi>"
            connection.sendall(b"HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: text/xml\r\n"
                               b"Content-Length: %d\r\n\r\n%s" % (len(body), body))

    with socket.create_server(("127.0.0.1", 0)) as server:
        answering = threading.Thread(target=answer, args=(server,))
        answering.start()
        try:
            yield f"http://127.0.0.1:{server.getsockname()[1]}/kznconnect/op.do"
        finally:
            answering.join()


def address_of_nobody():
    with socket.create_server(("127.0.0.1", 0)) as server:
        return f"http://127.0.0.1:{server.getsockname()[1]}/kznconnect/op.do"


def anna():
    client = pvwapi.Client(URL)
    client.sign_in("anna", "anna-demo-1")
    return client


def run(program, url=URL):
    """What a program prints that ends well."""
    text = f"import pvwapi, pvwapi._client\nURL = {url!r}\n" + textwrap.dedent(program)
    ended = subprocess.run([sys.executable, "-c", text], env=dict(os.environ, PYTHONPATH=sys.path[0]), timeout=60,
                           check=True, stdout=subprocess.PIPE, text=True)
    return ended.stdout


class OperationsTest(unittest.TestCase):
    def setUp(self):
        self.client = anna()
        self.addCleanup(self.client.close)

    def make_space(self):
        space = self.client.create_space("new", [pvwapi.WorkspaceField(0, "first")], 3, 0)
        self.client.edit_ext_wksp(space, pvwapi.xml_text(STRANGE), 1, [])
        self.addCleanup(self.client.delete_wksp, space)
        return space

    def test_texts_records_and_lists_come_back_as_they_went(self):
        made = self.make_space()
        spaces, _ = self.client.get_wksp_list()
        listed = next(space for space in spaces if space.workspace_id == made)
        self.assertEqual(listed.workspace_name, STRANGE)
        self.assertEqual(listed.description, "first")
        self.assertEqual(listed.role, pvwapi.InviteAs.ADMIN)
        space, invitations, access = self.client.get_space_batch(made)
        self.assertEqual([member.user_name for member in space.members], ["anna"])
        self.assertEqual(invitations, [])
        self.assertNotEqual(access.set_workspace_access, "")
        self.assertIsInstance(space.tabs[0], pvwapi.Tab)

    def test_records_that_go_in(self):
        made = self.make_space()
        self.client.create_tab(made, "one", 5)
        tabs = self.client.get_tabs(made)
        tab = next(tab for tab in tabs if tab.name == "one")
        self.client.edit_tab(made, dataclasses.replace(tab, name=STRANGE))
        tabs = list(reversed(self.client.get_tabs(made)))
        self.client.edit_tab_order(made, [dataclasses.replace(tab, position=at) for at, tab in enumerate(tabs)])
        ordered = sorted(self.client.get_tabs(made), key=lambda tab: tab.position)
        self.assertEqual([tab.id for tab in ordered], [tab.id for tab in tabs])
        self.assertIn(STRANGE, [tab.name for tab in ordered])

    def test_lists_that_go_in_and_come_back(self):
        made = self.make_space()
        roles = self.client.get_role([made])
        self.assertEqual({(role.cmd, role.id) for role in roles}, {("get", made), ("set", made)})
        [back] = self.client.invite_members(
            [pvwapi.Invitation(made, "nobody@example.org", "EMAIL", invite_as=pvwapi.InviteAs.MEMBER)], "come")
        self.assertEqual((back.workspace_id, back.user), (made, "nobody@example.org"))
        self.assertNotEqual(back.status, "")
        self.assertEqual([item.workspace_id for item in
                          self.client.get_space_notify([pvwapi.SpaceCountItem(made)])], [made])

    def test_numbers_and_flags(self):
        self.assertEqual(self.client.get_policy_data().create_workspace, 1)
        self.client.get_session_info()
        self.assertEqual(self.client.get_refresh_interval(), 3000)
        apps = [app for library in self.client.get_user_libraries_with_apps(0, 1) for app in library.apps]
        self.assertTrue(apps)
        self.assertTrue(all(isinstance(app.top_level, bool) for app in apps))

    def test_a_credential_of_its_own(self):
        cred = self.client.clone_session("")
        self.assertNotIn(cred, ("", self.client.get_root_cred()))
        self.client.get_session_info(cred=cred)
        with self.assertRaises(pvwapi.WapiError):
            self.client.get_session_info(cred="none of mine")

    def test_a_call_whose_reply_comes_in_any_case(self):
        answer, reply = self.client.wapi_proxy_call("cmd=noSuchCommand", pvwapi.Method.POST, URL, "", 1)
        self.assertIs(answer, False)
        self.assertIn("FAILURE", reply)
        answer, reply = self.client.wapi_proxy_call("cmd=x", pvwapi.Method.POST, address_of_nobody(), "", 1)
        self.assertEqual((answer, reply), (False, ""))


class FailuresTest(unittest.TestCase):
    def test_the_services_reason(self):
        with pvwapi.Client(URL) as client, self.assertRaises(pvwapi.WapiError) as caught:
            client.sign_in("anna", "wrong")
        error = caught.exception
        self.assertNotIsInstance(error, (pvwapi.NetworkError, pvwapi.NotSent))
        self.assertEqual(error.operation, "login")
        self.assertTrue(error.reason)
        self.assertTrue(error.exception_id.startswith("KZN:"))
        self.assertIn(error.exception_id, error.response)
        self.assertEqual(str(error), f"login: {error.reason} ({error.exception_id})")

    def test_nobody_is_there(self):
        with pvwapi.Client(address_of_nobody()) as client, self.assertRaises(pvwapi.NetworkError) as caught:
            client.get_session_info()
        self.assertIs(caught.exception.cause, pvwapi.NetworkCause.REFUSED)
        self.assertIn("127.0.0.1", caught.exception.cause_text)
        self.assertIn(caught.exception.cause_text, str(caught.exception))

    def test_what_is_not_sent_has_no_reason_of_another_call(self):
        with anna() as client:
            with self.assertRaises(pvwapi.WapiError):
                client.get_tabs("no such workspace")
            with self.assertRaises(pvwapi.NotSent) as caught:
                client.delete_wksp("")
            self.assertEqual(caught.exception.reason, "")
            with self.assertRaises(pvwapi.NotSent) as caught:
                client.create_space("", [], 3, 0)
            self.assertNotEqual(caught.exception.reason, "")

    def test_a_cause_that_a_later_library_brings(self):
        later = pvwapi.NetworkCause(99)
        self.assertEqual((later, later.name, repr(later)), (99, "UNKNOWN_99", "<NetworkCause.UNKNOWN_99: 99>"))
        self.assertIs(pvwapi.NetworkCause(99), later)
        self.assertIs(pickle.loads(pickle.dumps(later)), later)
        self.assertNotIn(later, list(pvwapi.NetworkCause))
        with self.assertRaises(ValueError):
            pvwapi.NetworkCause("99")
        with pvwapi.Client(address_of_nobody()) as client, \
                unittest.mock.patch.object(client, "get_network_error_kind", lambda: 99):
            with self.assertRaises(pvwapi.NetworkError) as caught:
                client.get_session_info()
            self.assertIs(caught.exception.cause, later)
            self.assertIs(pickle.loads(pickle.dumps(caught.exception)).cause, later)

    def test_a_method_that_a_later_library_brings(self):
        exchange = _library.ExchangeInC(size=ctypes.sizeof(_library.ExchangeInC), method=7)
        self.assertEqual(pvwapi._client.exchange_of(ctypes.pointer(exchange)).method.name, "UNKNOWN_7")

    def test_a_failure_goes_to_another_process(self):
        with pvwapi.Client(address_of_nobody()) as client:
            for call in (client.get_session_info, lambda: client.delete_wksp("")):
                with self.assertRaises(pvwapi.WapiError) as caught:
                    call()
                gone = pickle.loads(pickle.dumps(caught.exception))
                self.assertEqual((type(gone), str(gone)), (type(caught.exception), str(caught.exception)))
                self.assertEqual(vars(gone), vars(caught.exception))

    def test_the_same_refusal_once_more(self):
        with anna() as client:
            for _ in range(2):
                with self.assertRaises(pvwapi.NotSent) as caught:
                    client.create_space("", [], 3, 0)
                self.assertNotEqual(caught.exception.reason, "")
            with self.assertRaises(pvwapi.NotSent) as caught:
                client.delete_wksp("")
            self.assertEqual(caught.exception.reason, "")

    def test_an_address_that_is_none(self):
        with pvwapi.Client("nowhere") as client:
            for call in (client.get_session_info, client.get_policy_data, client.get_session_info):
                with self.assertRaises(pvwapi.NetworkError) as caught:
                    call()
                self.assertIs(caught.exception.cause, pvwapi.NetworkCause.BAD_ADDRESS)
            with self.assertRaises(pvwapi.NotSent):
                client.create_space("", [], 3, 0)
        with pvwapi.Client(address_of_nobody()) as client:
            with self.assertRaises(pvwapi.NetworkError):
                client.get_session_info()
            with self.assertRaises(pvwapi.NotSent) as caught:
                client.delete_wksp("")
            self.assertEqual(caught.exception.reason, "")

    def test_a_client_that_is_closed(self):
        client = anna()
        client.close()
        client.close()
        client.cancel()
        for call in (client.get_session_info, client.copy, client.on_timer, lambda: client.set_deadline(1)):
            with self.assertRaises(ValueError):
                call()

    def test_a_client_that_nobody_closes(self):
        with self.assertWarns(ResourceWarning):
            client = pvwapi.Client(URL)
            handle = client._handle
            client.__del__()
        client.close()
        self.assertFalse(_library.library().pvw_client_free(handle))


    def test_the_timer_of_a_client_that_nobody_closes(self):
        """It ticks on, and must not tell what is no longer there."""
        told = run("""
            import gc, time, warnings
            warnings.simplefilter("ignore")
            client = pvwapi.Client(URL)
            client.sign_in("anna", "anna-demo-1")
            for _ in range(2000):
                pvwapi.Client(URL).on_refresh(print)
            gc.collect()
            client.on_refresh(print)
            client.on_exchange(lambda _: True)
            tick, handle = pvwapi._client.library().pvw_on_timer, client._handle
            del client
            gc.collect()
            rubbish = [bytearray(200) for _ in range(10000)]
            tick(handle, 1)
            print("still there")
        """)
        self.assertEqual(told, "still there\n")

    def test_the_interpreter_ends_while_a_thread_calls(self):
        program = """
            import threading, time
            begun = threading.Event()
            def work():
                client = pvwapi.Client(URL)
                client.on_exchange(lambda _: begun.set() or True)
                while True:
                    try:
                        client.get_session_info()
                    except pvwapi.WapiError:
                        pass
            threading.Thread(target=work, daemon=True).start()
            begun.wait()
            time.sleep(0.02)
        """
        with silent_server() as silent:
            for _ in range(5):
                self.assertEqual(run(program), "")
                self.assertEqual(run(program, silent), "")


class ArgumentsTest(unittest.TestCase):
    """What C would read as something else is refused; a program of its own, because it crashed."""

    def test_values_of_another_kind(self):
        told = run("""
            client = pvwapi.Client(URL)
            client.on_exchange(lambda _: print("sent"))
            for call in (lambda: client.get_tabs(7), lambda: client.get_tabs(b"7"), lambda: client.get_tabs(None),
                         lambda: client.get_tabs("w", cred=7), lambda: client.set_root_cred(None),
                         lambda: client.response_invitation("w", "1"), lambda: client.response_invitation("w", 1.0),
                         lambda: client.response_invitation("w", 2**31), lambda: client.probe_space_access("w", -1),
                         lambda: client.set_deadline(-1), lambda: client.set_deadline("1"),
                         lambda: client.edit_tab("w", "tab"), lambda: client.edit_tab("w", pvwapi.UserField()),
                         lambda: client.edit_tab("w", pvwapi.Tab(7)), lambda: client.edit_tab("w", None),
                         lambda: client.edit_tab("w", pvwapi.Tab("t", position=2**40)),
                         lambda: client.edit_tab_order("w", [pvwapi.Member()]), lambda: client.get_role("w"),
                         lambda: client.edit_tab_order("w", None), lambda: client.get_role([7]),
                         lambda: pvwapi.Client(7), lambda: pvwapi.xml_text(7), lambda: pvwapi.set_log(2**40)):
                try:
                    call()
                    print("not refused")
                except (TypeError, OverflowError) as refused:
                    print(type(refused).__name__)
            client.close()
        """)
        self.assertEqual(sorted(told.split()), ["OverflowError"] * 5 + ["TypeError"] * 18)

    def test_a_record_of_a_further_kind(self):
        class Mine(pvwapi.Tab):
            pass
        with anna() as client:
            made = client.create_space("new", [], True, False)
            client.edit_tab(made, Mine(client.create_tab(made, "one", 5), "two"))
            self.assertIn("two", [tab.name for tab in client.get_tabs(made)])
            client.delete_wksp(made)


class ControlTest(unittest.TestCase):
    def test_a_deadline(self):
        with silent_server() as url, pvwapi.Client(url) as client:
            client.set_deadline(50)
            with self.assertRaises(pvwapi.DeadlinePassed):
                client.get_session_info()

    def test_another_thread_ends_a_call(self):
        with silent_server() as url, pvwapi.Client(url) as client:
            begun = threading.Event()
            client.on_exchange(lambda _: begun.set() or True)
            ending = threading.Thread(target=lambda: (begun.wait(), time.sleep(0.05), client.cancel()))
            ending.start()
            with self.assertRaises(pvwapi.Cancelled):
                client.get_session_info()
            ending.join()

    def test_exchanges_are_told(self):
        seen = []
        with anna() as client:
            client.on_exchange(lambda exchange: seen.append(exchange) or True)
            client.get_session_info()
        before, after = seen
        self.assertEqual((before.status, after.status), (0, 200))
        self.assertEqual((before.method, before.url), (pvwapi.Method.POST, URL))
        self.assertIn(b"sessionInfo", before.body)
        self.assertIn(b"SUCCESS", after.reply)
        self.assertTrue(any(header.startswith("Content-Type: ") for header in before.headers))

    def test_what_a_listener_raises(self):
        def listen(_):
            raise KeyError("mine")
        with anna() as client:
            client.on_exchange(listen)
            with self.assertRaises(KeyError):
                client.get_session_info()

    def test_transfers_are_told(self):
        told = []
        picture = Path(sys.path[0]).with_name("picture.png")
        picture.write_bytes(b"x" * 5000)
        with anna() as client:
            spaces, _ = client.get_wksp_list()
            own = next(space for space in spaces if space.role == pvwapi.InviteAs.ADMIN)
            client.on_transfer_progress(lambda done, whole: told.append((done, whole)) or True)
            client.set_space_icon(own.workspace_id, str(picture))
            self.assertGreaterEqual(told[-1][0], 5000)
            client.on_transfer_progress(lambda *_: False)
            with self.assertRaises(pvwapi.Cancelled):
                client.set_space_icon(own.workspace_id, str(picture))

    def test_refreshes_are_told_and_a_copy_has_the_listener(self):
        told = []
        with anna() as client:
            client.on_refresh(told.append)
            client.on_timer()
            with client.copy() as copy:
                copy.on_timer()
                self.assertEqual(copy.get_root_cred(), client.get_root_cred())
        self.assertEqual(told, [True, True])

    def test_a_listener_closes_its_client(self):
        client = anna()
        client.on_refresh(lambda _: client.close())
        client.on_timer()
        self.assertFalse(client._handle)


class Alarm(Exception):
    pass


class SignalsTest(unittest.TestCase):
    """What a signal's handler raises while the library has the thread comes out of the call."""

    def setUp(self):
        self.told = []
        self.set_hook(self.told.append)

    def set_hook(self, hook):
        self.addCleanup(setattr, sys, "unraisablehook", sys.unraisablehook)
        sys.unraisablehook = hook
        self.hook = hook

    def raise_in(self, seconds, kind):
        def handler(*_):
            raise kind
        self.addCleanup(signal.signal, signal.SIGALRM, signal.signal(signal.SIGALRM, handler))
        signal.setitimer(signal.ITIMER_REAL, seconds)

    def test_in_a_call(self):
        for kind in (Alarm, KeyboardInterrupt):
            for listener in (None, lambda _: True):
                with slow_server(0.3) as url, pvwapi.Client(url) as client:
                    client.on_exchange(listener)
                    self.raise_in(0.1, kind)
                    with self.assertRaises(kind):
                        client.call_wapi("cmd=x", cred="c")
                    self.assertEqual((self.told, sys.unraisablehook), ([], self.hook))
                    client.set_deadline(50)  # nobody answers the next one
                    with self.assertRaises(pvwapi.DeadlinePassed):
                        client.call_wapi("cmd=x", cred="c")

    def test_in_a_refresh(self):
        with slow_server(0.3) as url, pvwapi.Client(url) as client:
            self.raise_in(0.1, KeyboardInterrupt)
            with self.assertRaises(KeyboardInterrupt):
                client.on_timer()
        self.assertEqual((self.told, sys.unraisablehook), ([], self.hook))

    def test_in_a_call_of_a_listener(self):
        told = []

        def listen(_):
            with slow_server(0.3) as url, pvwapi.Client(url) as inner:
                self.raise_in(0.1, Alarm)
                try:
                    inner.call_wapi("cmd=x", cred="c")
                except Alarm as raised:
                    told.append(raised)
            return True

        with anna() as client:
            client.on_exchange(listen)
            client.on_timer()
        self.assertEqual([type(raised) for raised in told], [Alarm] * 2)
        self.assertEqual((self.told, sys.unraisablehook), ([], self.hook))

    def test_before_anything_is_sent(self):
        with silent_server() as url, pvwapi.Client(url) as client, \
                unittest.mock.patch.object(pvwapi.Client, "_exchanged", side_effect=Alarm):
            client.set_deadline(20000)
            begun = time.monotonic()
            with self.assertRaises(Alarm):
                client.get_session_info()
            self.assertLess(time.monotonic() - begun, 10)

    def test_what_is_for_the_hosts_hook(self):
        class Broken:
            def __del__(self):
                raise Alarm

        def listen(_):
            Broken()
            breaking = threading.Thread(target=Broken)
            breaking.start()
            breaking.join()
            return True

        def refreshed(_):
            raise Alarm

        with anna() as client:
            client.on_exchange(listen)
            client.get_session_info()
            self.assertEqual([told.exc_type for told in self.told], [Alarm] * 4)
            client.on_exchange(None)
            client.on_refresh(refreshed)
            client.on_timer()
        self.assertEqual([told.exc_type for told in self.told], [Alarm] * 5)

    def test_a_hook_that_is_set_meanwhile(self):
        def listen(_):
            before = sys.unraisablehook
            self.set_hook(lambda told: before(told))
            return True

        with anna() as client:
            client.on_exchange(listen)
            client.get_session_info()
            self.assertIs(sys.unraisablehook, self.hook)
            client.get_session_info()
            self.assertIs(sys.unraisablehook, self.hook)
            mine = types.SimpleNamespace(exc_value=Alarm(), exc_traceback=None)
            sys.unraisablehook(mine)
        self.assertEqual(self.told, [mine])

    def test_on_another_thread(self):
        """No signal is handled there, so that nothing is hidden from the host's hook."""
        raised = []

        def work():
            with pvwapi.Client(address_of_nobody()) as client:
                try:
                    client.get_session_info()
                except pvwapi.WapiError as failure:
                    raised.append(type(failure))

        with unittest.mock.patch.object(pvwapi.Client, "_exchanged", side_effect=Alarm):
            working = threading.Thread(target=work)
            working.start()
            working.join()
        self.assertEqual(len(raised), 1)
        self.assertEqual({told.exc_type for told in self.told}, {Alarm})


class AsyncTest(unittest.IsolatedAsyncioTestCase):
    async def test_calls_are_awaited_in_turn(self):
        async with pvwapi.AsyncClient(URL) as client:
            await client.sign_in("anna", "anna-demo-1")
            (spaces, _), policy = await asyncio.gather(client.get_wksp_list(), client.get_policy_data())
            self.assertTrue(spaces)
            self.assertEqual(policy.create_workspace, 1)
            with self.assertRaises(pvwapi.NotSent):
                await client.delete_wksp("")
            await client.logout()

    async def test_a_task_that_is_cancelled_ends_its_call(self):
        with silent_server() as url:
            async with pvwapi.AsyncClient(url) as client:
                begun = time.monotonic()
                with self.assertRaises(asyncio.TimeoutError):
                    await asyncio.wait_for(client.get_session_info(), 0.1)
                self.assertLess(time.monotonic() - begun, 10)
                self.assertEqual(await client.get_network_error_kind(), pvwapi.NetworkCause.CANCELLED)

    async def test_a_call_is_cancelled_by_its_client(self):
        with silent_server() as url:
            async with pvwapi.AsyncClient(url) as client:
                call = asyncio.ensure_future(client.get_session_info())
                while not call.done():
                    await asyncio.sleep(0.05)
                    client.cancel()
                with self.assertRaises(pvwapi.Cancelled):
                    call.result()

    async def test_the_timer_ticks(self):
        told = []
        async with pvwapi.AsyncClient(URL) as client:
            await client.sign_in("anna", "anna-demo-1")
            await client.on_refresh(told.append)
            await client.get_session_info()
            self.assertEqual(await client.get_refresh_interval(), 3000)
            await client.on_timer()
            end = time.monotonic() + 20
            while len(told) < 2 and time.monotonic() < end:
                await asyncio.sleep(0.1)
        self.assertEqual(told[:2], [True, True])

    async def test_the_timer_ticks_between_calls(self):
        told = []
        async with pvwapi.AsyncClient(URL) as client:
            await client.sign_in("anna", "anna-demo-1")
            await client.get_session_info()
            await client.on_timer()
            await client.on_refresh(told.append)
            end = time.monotonic() + 20
            while not told and time.monotonic() < end:
                await client.get_refresh_interval()
        self.assertTrue(told)

    async def test_a_task_that_is_cancelled_twice_ends_its_call(self):
        with silent_server() as url:
            async with pvwapi.AsyncClient(url) as client:
                call = asyncio.ensure_future(client.get_session_info())
                await asyncio.sleep(0.1)
                call.cancel()
                await asyncio.sleep(0)
                call.cancel()
                with self.assertRaises(asyncio.CancelledError):
                    await call
                self.assertEqual(await asyncio.wait_for(client.get_network_error_kind(), 10),
                                 pvwapi.NetworkCause.CANCELLED)

    async def test_a_client_that_is_left_while_tasks_call(self):
        with silent_server() as url:
            async with pvwapi.AsyncClient(url) as client:
                calls = [asyncio.ensure_future(client.get_session_info()) for _ in range(2)]
                await asyncio.sleep(0.1)
            done, pending = await asyncio.wait(calls, timeout=10)
            self.assertFalse(pending)
            self.assertEqual({type(call.exception()) for call in done}, {pvwapi.Cancelled, ValueError})

    async def test_a_client_that_is_not_open(self):
        client = pvwapi.AsyncClient(URL)
        client.cancel()
        with self.assertRaises(ValueError):
            await client.get_session_info()
        async with client:
            pass
        client.cancel()
        with self.assertRaises(ValueError):
            await asyncio.wait_for(client.get_session_info(), 10)

    async def test_a_client_whose_opening_is_cancelled(self):
        client = pvwapi.AsyncClient(URL)
        opening = asyncio.ensure_future(client.__aenter__())
        await asyncio.sleep(0)
        opening.cancel()
        with self.assertRaises(asyncio.CancelledError):
            await opening
        await asyncio.get_running_loop().run_in_executor(None, client._thread.join)
        self.assertIsNone(client._client)


    async def test_a_library_that_is_not_there_or_too_old(self):
        for patch in (unittest.mock.patch.dict(os.environ, PVWAPI_LIBRARY="/no/such/library.so"),
                      unittest.mock.patch.object(_records, "ABI_VERSION", 99)):
            _library.library.cache_clear()
            client = pvwapi.AsyncClient(URL)
            with patch, self.assertRaises((OSError, ImportError)) as caught:
                await asyncio.wait_for(client.__aenter__(), 10)
            self.assertNotIsInstance(caught.exception, asyncio.TimeoutError)
            await asyncio.get_running_loop().run_in_executor(None, client._thread.join)
            async with client:  # it is there now
                self.assertEqual(await client.get_user_id(), "")

    async def test_what_a_listener_raises(self):
        for kind, wanted in ((KeyError, KeyError), (StopIteration, RuntimeError)):
            def listen(_, kind=kind):
                raise kind("mine")
            async with pvwapi.AsyncClient(URL) as client:
                await client.on_exchange(listen)
                with self.assertRaises(wanted) as caught:
                    await asyncio.wait_for(client.get_session_info(), 10)
                cause = caught.exception.__cause__ or caught.exception
                self.assertEqual((type(cause), cause.args), (kind, ("mine",)))

    async def test_a_task_that_is_cancelled_while_it_leaves(self):
        leaving = asyncio.Event()
        calls = []

        def listen(_):
            time.sleep(0.3)
            return True

        async def use():
            async with pvwapi.AsyncClient(URL) as client:
                await client.on_exchange(listen)
                calls.append(asyncio.ensure_future(client.get_session_info()))
                await asyncio.sleep(0.1)
                calls.append(client)
                leaving.set()

        task = asyncio.ensure_future(use())
        await leaving.wait()
        await asyncio.sleep(0.05)
        task.cancel()
        with self.assertRaises(asyncio.CancelledError):
            await task
        call, client = calls
        self.assertFalse(client._thread.is_alive())
        with self.assertRaises(pvwapi.Cancelled):
            await call


class InterfaceTest(unittest.TestCase):
    def test_the_awaited_operations_are_the_same(self):
        def of(kind):
            return {name: str(inspect.signature(function)) for name, function in vars(kind).items()
                    if not name.startswith("_")}
        self.assertEqual(of(_operations.Operations), of(_operations.AwaitedOperations))
        self.assertGreater(len(of(_operations.Operations)), 60)

    def test_records_are_laid_out_as_in_c(self):
        """The list of what hosts have compiled in says how."""
        kinds = [*_records.IN_C.values(), _library.ExchangeInC]
        names = [kind.__name__ for kind in kinds]
        in_c = ["pvw_" + "".join("_" + letter.lower() if letter.isupper() else letter for letter in name)
                .removeprefix("_").removesuffix("_in_c") for name in names]
        own = [f"type {record} size {ctypes.sizeof(kind)}" for record, kind in zip(in_c, kinds)]
        for record, kind in zip(in_c, kinds):
            own += [f"member {record}.{member} at {getattr(kind, member).offset}, size {getattr(kind, member).size}"
                    for member, _ in kind._fields_]
        told = Path(os.environ["PVWAPI_ABI_LIST"]).read_text(encoding="utf-8").splitlines()
        told = [line.split(", align")[0] for line in told if line.startswith(("type ", "member "))]
        self.assertEqual(sorted(own), sorted(line for line in told if line.split()[1].split(".")[0] in in_c))
        self.assertGreater(len(own), 150)

    def test_a_record_of_an_older_library(self):
        tab = _records.TabInC()
        tab.size = _records.TabInC.type.offset
        kept = [_library.units_of(text) for text in ("T1", "garbage")]
        tab.ID, tab.type = map(_library.text_at, kept)
        tab.position = 7
        whole = _library.whole(ctypes.pointer(tab), _records.TabInC)
        self.assertEqual((_library.text_of(whole.ID), _library.text_of(whole.type), whole.position), ("T1", "", 0))

    def test_a_library_that_is_too_old(self):
        _library.library.cache_clear()
        with unittest.mock.patch.object(_records, "ABI_VERSION", 99), self.assertRaises(ImportError):
            _library.library()

    def test_the_wheel_has_the_licences(self):
        with zipfile.ZipFile(sys.path[0]) as wheel:
            names = [name for name in wheel.namelist() if ".dist-info/" in name]
            for text in LICENCES:
                [inside] = [name for name in names if Path(name).name == text]
                self.assertEqual(wheel.read(inside), (ROOT / text).read_bytes())

    def test_what_is_the_librarys(self):
        self.assertEqual(pvwapi.version(), pvwapi.__version__)
        self.assertEqual(pvwapi.xml_text("a<b>&\0c"), "a&lt;b&gt;&amp;c")
        self.assertGreaterEqual(pvwapi.dispatch_pending_messages(), 0)
        self.assertGreaterEqual(pvwapi.message_loop_fd(), 0)
        pvwapi.set_log(4)
        self.assertIn(".whl/", pvwapi.__file__)


if __name__ == "__main__":
    warnings.simplefilter("error", ResourceWarning)
    unittest.main()
