"""Headless Chromium for tests, driven by the WebDriver protocol with nothing but the standard library."""

import base64
import json
import re
import subprocess
import time
import urllib.error
import urllib.request
from contextlib import contextmanager

import pytest

ARGUMENTS = [
    "--headless=new",
    "--no-sandbox",
    "--disable-gpu",
    "--disable-quic",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
    "--disable-dev-shm-usage",
]
ENTER, SHIFT, ESCAPE, DOWN, UP, LEFT, RIGHT, HOME = (
    chr(code) for code in (0xE007, 0xE008, 0xE00C, 0xE015, 0xE013, 0xE012, 0xE014, 0xE011)
)
_ELEMENT = "element-6066-11e4-a52e-4f735466cecf"


class BrowserError(Exception):
    """The driver of the browser refused a command."""


class Browser:
    """One window of the browser."""

    def __init__(self, port, profile):
        self._root = f"http://127.0.0.1:{port}"
        options = {"args": [*ARGUMENTS, f"--user-data-dir={profile}"]}
        capabilities = {
            "browserName": "chrome",
            "goog:chromeOptions": options,
            "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"},
        }
        answer = self._call("POST", "/session", {"capabilities": {"alwaysMatch": capabilities}})
        self._root += f"/session/{answer['sessionId']}"

    def _call(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(
            self._root + path, data, {"Content-Type": "application/json"}, method=method
        )
        # Never by a proxy: the driver is on this machine.
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        try:
            with opener.open(request, timeout=60) as reply:
                return json.load(reply)["value"]
        except urllib.error.HTTPError as error:
            raise BrowserError(json.load(error)["value"]["message"]) from None

    def open(self, file, fragment=""):
        """Opens a file, with fresh logs: a browser has pages of its own when it starts."""
        self.go(file.absolute().as_uri() + fragment)

    def go(self, address):
        """Opens an address, with fresh logs."""
        self._call("POST", "/url", {"url": "about:blank"})
        self.log("browser"), self.log("performance")
        self._call("POST", "/url", {"url": address})

    def run(self, script, *arguments):
        """The value that the body of a function returns in the page."""
        return self._call("POST", "/execute/sync", {"script": script, "args": list(arguments)})

    def command(self, name, **parameters):
        """A command of the DevTools protocol."""
        return self._call("POST", "/goog/cdp/execute", {"cmd": name, "params": parameters})

    def texts(self, selector):
        """The text that a user reads in the elements that can be seen."""
        script = """return [...document.querySelectorAll(arguments[0])]
            .filter((one) => one.checkVisibility()).map((one) => one.innerText)"""
        return self.run(script, selector)

    def text(self, selector):
        (text,) = self.texts(selector)
        return text

    def click(self, selector, text=""):
        """Clicks the one element that can be seen and holds this text."""
        script = """return [...document.querySelectorAll(arguments[0])]
            .filter((one) => one.checkVisibility() && one.innerText.includes(arguments[1]))"""
        (element,) = self.run(script, selector, text)
        self._call("POST", f"/element/{element[_ELEMENT]}/click", {})

    def press(self, *keys):
        """Presses keys one after the other, as a user does, wherever the focus is."""
        self.keys(*((kind, key) for key in keys for kind in ("keyDown", "keyUp")))

    def chord(self, *keys):
        """Presses keys together."""
        self.keys(*(("keyDown", key) for key in keys), *(("keyUp", key) for key in reversed(keys)))

    def keys(self, *actions):
        """Presses and releases keys: "keyDown" and "keyUp", each with its key."""
        steps = [{"type": kind, "value": key} for kind, key in actions]
        self._call("POST", "/actions", {"actions": [{"type": "key", "id": "keyboard", "actions": steps}]})

    def mouse(self, *actions):
        """Has the mouse do things one after the other, as "move" with x and y in the page, "down" and "up" with a button."""
        steps = [
            {"type": "pointerMove", "duration": 0, "x": round(values[0]), "y": round(values[1])}
            if kind == "move"
            else {"type": f"pointer{kind.capitalize()}", "button": values[0]}
            for kind, *values in actions
        ]
        parameters = {"pointerType": "mouse"}
        source = {"type": "pointer", "id": "mouse", "parameters": parameters, "actions": steps}
        self._call("POST", "/actions", {"actions": [source]})

    def wheel(self, x, y, across, down):
        """Turns the wheel by pixels at a place of the page."""
        step = {"type": "scroll", "x": round(x), "y": round(y), "deltaX": across, "deltaY": down}
        self._call("POST", "/actions", {"actions": [{"type": "wheel", "id": "wheel", "actions": [step]}]})

    def type_into(self, selector, text):
        self.run("document.querySelector(arguments[0]).focus()", selector)
        self.press(*text)

    def wait_until(self, script, *arguments, seconds=20):
        """Waits until the body of a function returns something true in the page, and answers it."""
        deadline = time.monotonic() + seconds
        while not (value := self.run(script, *arguments)):
            assert time.monotonic() < deadline, f"never true: {script}"
            time.sleep(0.02)
        return value

    def shown_pictures(self):
        """The addresses of the screenshots that are shown, when they have been decoded."""
        self.wait_until(
            "return [...document.querySelectorAll('.pictures img')].every((one) => one.complete && one.naturalWidth)"
        )
        return self.run("return [...document.querySelectorAll('.pictures img')].map((one) => one.src)")

    def log(self, kind):
        """The messages of this log since the last call: "browser" is the console, "performance" the network too."""
        return self._call("POST", "/se/log", {"type": kind})

    def requested(self):
        """Addresses of everything that was requested since the last call."""
        events = [json.loads(entry["message"])["message"] for entry in self.log("performance")]
        return [
            event["params"]["request"]["url"]
            for event in events
            if event["method"] == "Network.requestWillBeSent"
        ]

    def size(self, width, height, scheme="light"):
        """Sets the size of the page in pixels, and the colour scheme that the user prefers."""
        self.command(
            "Emulation.setDeviceMetricsOverride",
            width=width,
            height=height,
            deviceScaleFactor=1,
            mobile=False,
        )
        self.command(
            "Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}]
        )

    def screenshot(self, file):
        file.write_bytes(base64.b64decode(self._call("GET", "/screenshot")))

    def quit(self):
        self._call("DELETE", "")


@contextmanager
def running_browser(profile):
    """A browser with a fresh profile in this folder. It ends with the block."""
    driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, text=True)
    try:
        port = None
        while port is None:
            line = driver.stdout.readline()
            assert line, "chromedriver has not started (Debian: chromium-driver)"
            found = re.search(r"started successfully on port (\d+)", line)
            port = found and int(found[1])
        browser = Browser(port, profile)
        try:
            yield browser
        finally:
            browser.quit()
    finally:
        driver.terminate()
        driver.communicate()


@pytest.fixture(scope="module")
def browser(tmp_path_factory):
    """One browser for all tests of this file."""
    with running_browser(tmp_path_factory.mktemp("profile")) as running:
        running.size(1400, 1000)
        yield running


@pytest.fixture(autouse=True)
def quiet(request):
    """After each test that used the browser: its console is empty, and nothing but the page was fetched."""
    yield
    if "browser" in request.fixturenames:
        browser = request.getfixturevalue("browser")
        assert [entry["message"] for entry in browser.log("browser")] == []
        requested = [address for address in browser.requested() if not address.startswith("data:")]
        assert [
            address
            for address in requested
            if not re.fullmatch(r"about:blank|file://.*\.html(#.*)?", address)
        ] == []
