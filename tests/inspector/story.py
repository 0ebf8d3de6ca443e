"""A service with its inspector, and the library that works with it."""
import http.client
import json
import os
import subprocess
import tempfile
from pathlib import Path

TOKEN = "a-token-of-the-tests"


class Story:
    """PVWAPI_SERVICE and PVWAPI_HOST name the two programs."""

    def __init__(self, data=":memory:", port=0):
        self.folder = tempfile.TemporaryDirectory(prefix="inspector-story-")
        self.service = subprocess.Popen(
            [os.environ["PVWAPI_SERVICE"], "--data", data, "--seed", "demo", "--listen", f"127.0.0.1:{port}",
             "--ready-json", "--control-token", TOKEN],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.url = json.loads(self.service.stdout.readline())["url"]
        self.port = int(self.url.split(":")[2].split("/")[0])
        self.origin = f"http://127.0.0.1:{self.port}"
        self.page = f"{self.origin}/#token={TOKEN}"

    @property
    def log(self):
        return Path(self.folder.name) / "Pravik" / "Log" / "pvwapi.txt"

    def host(self, *words, user="anna", password=None, cred=None):
        """The command-line host, which speaks through the library. With a credential it neither signs in nor out."""
        environment = {**os.environ, "PVWAPI_BASE_URL": self.url, "XDG_DATA_HOME": self.folder.name}
        if cred:
            environment["PVWAPI_CRED"] = cred
        else:
            environment |= {"PVWAPI_USER": user, "PVWAPI_PASSWORD": password or f"{user}-demo-1"}
        return subprocess.run([os.environ["PVWAPI_HOST"], *words], env=environment, capture_output=True, text=True,
                              timeout=120, check=False)

    def control(self, method, resource, body=None):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=120)
        connection.request(method, f"/control/{resource}", None if body is None else json.dumps(body),
                           {"Authorization": f"Bearer {TOKEN}", "Content-Type": "application/json"})
        reply = connection.getresponse().read()
        connection.close()
        return json.loads(reply)

    def post(self, bodies):
        """Many forms on one connection."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=120)
        for body in bodies:
            connection.request("POST", "/kznconnect/op.do", body,
                               {"Content-Type": "application/x-www-form-urlencoded"})
            connection.getresponse().read()
        connection.close()

    def end(self):
        self.service.terminate()
        self.service.wait(60)
        self.service.stdout.close()
        self.folder.cleanup()
