"""A browser without a window, driven over a pipe by its own protocol."""
import base64
import json
import os
import select
import shutil
import signal
import tempfile
import time
from pathlib import Path

PATIENCE = 120  # seconds: the machine may have much else to do
FLAGS = [
    "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--remote-debugging-pipe",
    "--no-first-run", "--no-default-browser-check", "--disable-background-networking", "--disable-component-update",
    "--disable-default-apps", "--disable-domain-reliability", "--disable-sync", "--disable-extensions",
    "--disable-breakpad", "--metrics-recording-only", "--no-pings", "--mute-audio",
    "--disable-features=OptimizationHints,MediaRouter,Translate,AutofillServerCommunication",
    # What it would ask of its makers goes to a port of loopback where nobody is.
    "--proxy-server=direct://", "--host-resolver-rules=MAP * 127.0.0.1:9, EXCLUDE 127.0.0.1", "--disable-quic",
]
# What tells in its log of the network that somebody else is spoken with, or looked for. Of a datagram only its sending
# counts: with an address alone a browser learns what networks there are.
CONTACTS = {"TCP_CONNECT_ATTEMPT": "address", "HOST_RESOLVER_MANAGER_REQUEST": "host", "UDP_BYTES_SENT": "byte_count"}
KEYS = {"Enter": 13, "Escape": 27, "Tab": 9, "ArrowUp": 38, "ArrowDown": 40, "ArrowLeft": 37, "ArrowRight": 39,
        "Home": 36, "End": 35, "PageUp": 33, "PageDown": 34, " ": 32, "/": 191, "c": 67}


class Browser:
    def __init__(self):
        program = shutil.which("chromium")
        if program is None:
            raise FileNotFoundError("chromium is missing; scripts/setup installs it")
        self.folder = tempfile.TemporaryDirectory(prefix="inspector-browser-", ignore_cleanup_errors=True)
        network_log = Path(self.folder.name) / "network.json"
        home = Path(self.folder.name) / "home"
        home.mkdir()
        commands, self.write_end = os.pipe()
        self.read_end, replies = os.pipe()
        # The protocol takes what stands at 3 and answers at 4.
        commands, replies = os.dup2(commands, 103), os.dup2(replies, 104)
        nothing = os.open(os.devnull, os.O_RDWR)
        environment = {**os.environ, "HOME": str(home), "XDG_CONFIG_HOME": str(home), "XDG_CACHE_HOME": str(home)}
        self.pid = os.posix_spawn(
            program, [program, *FLAGS, f"--user-data-dir={home}/profile", f"--log-net-log={network_log}",
                      "about:blank"], environment,
            file_actions=[(os.POSIX_SPAWN_DUP2, nothing, 0), (os.POSIX_SPAWN_DUP2, nothing, 1),
                          (os.POSIX_SPAWN_DUP2, nothing, 2), (os.POSIX_SPAWN_DUP2, commands, 3),
                          (os.POSIX_SPAWN_DUP2, replies, 4)])
        for descriptor in (commands, replies, nothing):
            os.close(descriptor)
        self.rest = b""
        self.count = 0
        self.replies = {}
        self.events = []

    def _read(self, end):
        while b"\0" not in self.rest:
            ready, _, _ = select.select([self.read_end], [], [], max(0, end - time.monotonic()))
            piece = os.read(self.read_end, 1 << 16) if ready else b""
            if not piece:
                raise TimeoutError("the browser says nothing any more")
            self.rest += piece
        text, self.rest = self.rest.split(b"\0", 1)
        message = json.loads(text)
        if "id" in message:
            self.replies[message["id"]] = message
        else:
            self.events.append(message)

    def call(self, method, session=None, **parameters):
        self.count += 1
        number = self.count
        message = {"id": number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self.write_end, data):]
        end = time.monotonic() + PATIENCE
        while number not in self.replies:
            self._read(end)
        reply = self.replies.pop(number)
        if "error" in reply:
            raise RuntimeError(f"{method}: {reply['error']}")
        return reply["result"]

    def page(self, width=1280, height=800):
        return Page(self, width, height)

    def close(self):
        """Ends it, which completes its log of the network. What that tells stays."""
        try:
            self.call("Browser.close")
        except (TimeoutError, OSError):
            os.kill(self.pid, signal.SIGKILL)
        os.waitpid(self.pid, 0)
        os.close(self.write_end)
        os.close(self.read_end)
        self.contacts = self._contacts(Path(self.folder.name) / "network.json")
        self.folder.cleanup()

    @staticmethod
    def _contacts(network_log):
        """Every address that the browser, and not only its pages, has spoken with, or has looked for."""
        log = json.loads(network_log.read_text(encoding="utf-8"))
        numbers = log["constants"]["logEventTypes"]
        names = {numbers[event]: name for event, name in CONTACTS.items()}
        found = {event.get("params", {}).get(names[event["type"]]) for event in log["events"] if event["type"] in names}
        return {str(each) for each in found - {None}}


class Page:
    def __init__(self, browser, width, height):
        self.browser = browser
        target = browser.call("Target.createTarget", url="about:blank")["targetId"]
        self.target = target
        self.session = browser.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Network", "Log", "DOM"):
            self.call(f"{domain}.enable")
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setFocusEmulationEnabled", enabled=True)

    def call(self, method, **parameters):
        return self.browser.call(method, self.session, **parameters)

    def events(self, method):
        self.call("Runtime.evaluate", expression="0")  # what happened before is here behind this
        return [event["params"] for event in self.browser.events
                if event["method"] == method and event.get("sessionId") == self.session]

    def open(self, url):
        self.call("Page.navigate", url=url)

    def run(self, expression):
        reply = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in reply:
            raise RuntimeError(f"{expression}: {reply['exceptionDetails']}")
        return reply["result"].get("value")

    def wait(self, expression, patience=PATIENCE):
        end = time.monotonic() + patience
        while True:
            if self.run(f"(() => {{ try {{ return Boolean({expression}) }} catch {{ return false }} }})()"):
                return
            if time.monotonic() > end:
                raise AssertionError(f"never true: {expression}\n{self.run('document.body.innerText')[:3000]}")
            time.sleep(0.05)

    def text(self, selector):
        return self.run(f"document.querySelector({json.dumps(selector)}).textContent")

    def click(self, selector):
        self.wait(f"document.querySelector({json.dumps(selector)})")
        self.run(f"document.querySelector({json.dumps(selector)}).click()")

    def key(self, name, shift=False):
        text = {"Enter": "\r"}.get(name, name if len(name) == 1 else "")
        key = {"key": name, "windowsVirtualKeyCode": KEYS[name], "modifiers": 8 if shift else 0}
        self.call("Input.dispatchKeyEvent", type="keyDown" if text else "rawKeyDown", text=text, **key)
        self.call("Input.dispatchKeyEvent", type="keyUp", **key)

    def type_by_keys(self, text):
        """Letters, one key after the other, as a list of choices takes them."""
        for letter in text:
            self.call("Input.dispatchKeyEvent", type="keyDown", text=letter, key=letter,
                      windowsVirtualKeyCode=ord(letter.upper()))
            self.call("Input.dispatchKeyEvent", type="keyUp", key=letter, windowsVirtualKeyCode=ord(letter.upper()))

    def type(self, text):
        self.call("Input.insertText", text=text)

    def choose_file(self, selector, path):
        root = self.call("DOM.getDocument")["root"]["nodeId"]
        node = self.call("DOM.querySelector", nodeId=root, selector=selector)["nodeId"]
        self.call("DOM.setFileInputFiles", nodeId=node, files=[str(path)])

    def accessible(self):
        """What a screen reader meets, as (role, name)."""
        nodes = self.call("Accessibility.getFullAXTree")["nodes"]
        return {(node.get("role", {}).get("value"), node.get("name", {}).get("value", "")) for node in nodes
                if not node.get("ignored")}

    def scheme(self, name):
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": name}])

    def picture(self, path):
        data = self.call("Page.captureScreenshot", format="png")["data"]
        Path(path).write_bytes(base64.b64decode(data))

    def close(self):
        self.browser.call("Target.closeTarget", targetId=self.target)
