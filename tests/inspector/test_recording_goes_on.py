"""A recording goes on whatever a question comes to: one that failed each time would keep all that follows from the text."""

import asyncio
import os
from types import SimpleNamespace

from qtdriver import App
from qtdriver.errors import WindowNotFoundError
from qtdriver.inspector.operations import perform
from qtdriver.inspector.session import PageSession

PLACE = {"at": [1, 1], "size": [9, 9], "button": "left", "window": 1, "time": 0}


def node(ref, kind, role, name, **told):
    return {"ref": ref, "class": kind, "role": role, "name": name, "rect": [0, 0, 9, 9], **told}


TREE = node(
    1,
    "QDialog",
    "window",
    "tools",
    title="Tools",
    children=[
        node(3, "QLineEdit", "edit", "field"),
        node(4, "QToolButton", "button", ""),
        node(5, "QToolButton", "button", ""),
    ],
)


class Connection:
    """An agent whose window closes after it has been looked at."""

    pid = os.getpid()

    def __init__(self):
        self.asked = 0
        self.replies = []

    def require(self, name):
        pass

    record = stop_recording = lambda self: None

    def events(self):
        return {"events": self.replies.pop(0), "dropped": 0, "recording": True}

    def list_windows(self):
        return [SimpleNamespace(class_name="QDialog", title="Tools", modal=False)]

    def snapshot(self, window, *locator):
        return TREE

    def read(self, *_):
        self.asked += 1
        raise WindowNotFoundError("2", "Window (Tools) not found")


def test_what_follows_a_widget_of_a_window_that_has_closed_is_recorded():
    connection = Connection()
    app = App(connection)
    perform(app, "record", {"on": True, "anew": True})
    connection.replies = [
        [
            {"kind": "press", "ref": 4, "tree": TREE, **PLACE},
            {"kind": "release", "ref": 4, **PLACE},
        ],
        [{"kind": "key", "ref": 3, "window": 1, "time": 1, "key": "A", "text": "a"}],
    ]
    for lines in (
        ["# not recorded: click() on a button that no locator finds alone"],
        [
            "# not recorded: click() on a button that no locator finds alone",
            'tools = app.window(name="tools")',
            'tools.widget("field").fill("a")',
        ],
    ):
        told = perform(app, "recorded", {"text": "", "line": 0, "written": []})
        assert told["written"][1:] == lines
    assert connection.asked


def test_a_question_that_fails_in_any_way_is_answered():
    told = []

    async def send_json(message):
        told.append(message)

    async def ask():
        socket = SimpleNamespace(closed=False, send_json=send_json, send_bytes=None)
        target = SimpleNamespace(display="", ask=lambda operation, values: {}["nothing"].there)

        async def run(call):
            return call()

        session = PageSession(socket, target, SimpleNamespace(run=run))
        await session._answer(7, "recorded", {})

    asyncio.run(ask())
    assert told == [{"answers": 7, "error": "recorded: KeyError('nothing')"}]
