"""Requests of every kind to the application `leakhost`, and what each leaves behind in it."""

import itertools
import statistics
import time
from typing import NamedTuple

from extensions import extension
from hostapp import DEADLINE, HostApp, hexed

BYTES_PER_REQUEST = 8
"""A leak of one pointer per request is more than that: the smallest piece of a heap has 16 bytes."""
BATCHES = 3
"""A leak shows in every batch of rounds; growth in only some of them is that of a cache."""
MOST_BATCHES = 12
"""So many when the first ones all grew: on a busy machine the X server's events of one batch arrive in the next."""
SPREAD_OF_MENUS = 1.5
"""The memory that Qt 6 keeps of a menu differs by a fifth from batch to batch. Qt 4 and 5 keep nothing: leaks show there exactly."""
NEXT_TRY = ("2,Window (Widget:ActivePopupWidget)", "4,")
"""Replies of windows that are about to open or to close."""


class Request(NamedTuple):
    """A request line, the beginning of its reply, and how many menus it opens."""

    line: str
    reply: str = "0,"
    menus: int = 0


def activate(path, value="", option="", reply="0,", window="Leaks", class_name="", menus=0):
    return Request(f"5,{window},{path},{class_name},{hexed(value)},{hexed(option)}", reply, menus)


def enter(path, value, reply="0,"):
    return Request(f"6,Leaks,{path},,{hexed(value)},", reply)


def mouse(path, command, reply="0,", class_name=""):
    return Request(f"9,Leaks,{path},{class_name},{hexed('s:' + command)},", reply)


def read(path, name, argument="", reply="0,", class_name=""):
    return Request(f"7,Leaks,{path},{class_name},{name},{argument}", reply)


def extended(name, locator, *texts, reply="0,"):
    return Request(extension(name, "Leaks", locator, *texts), reply)


def exactly(line, reply="0,"):
    return [Request(line, reply)]


POPUP_OPENS = [activate("opener", menus=1), Request("8,Widget:ActivePopupWidget")]
POPUP = "Widget:ActivePopupWidget"

QUERIES = {
    "1: list windows": exactly("1"),
    "2: tree": exactly("2,Leaks"),
    "2: unknown window": exactly("2,Nowhere", "2,"),
    "3: widget at cursor": [Request("4,Leaks,canvas"), Request("3", "?,QWidget")],
    "3: item view at cursor": [Request("4,Leaks,table"), Request("3", "?,QTableWidget")],
    "3: nothing at cursor": exactly("3", "?,"),
    "4: locate": exactly("4,Leaks,button"),
    "4: hidden widget": exactly("4,Leaks,plain", "6,"),
    "8: check window": exactly("8,Leaks"),
    "8: unknown window": exactly("8,Nowhere", "2,"),
    "10: move window": [Request("10,Leaks,40,50"), Request("10,Leaks,30,40")],
    "11: resize window": [Request("11,Leaks,1110,710"), Request("11,Leaks,1100,700")],
    "11: no number": exactly("11,Leaks,x,y", "8,Type error"),
    "12: tray icon": exactly("12,,tray", "6,Object"),
    "12: unknown tray icon": exactly("12,,none", "2,Object"),
    "unknown command": exactly("13", "8,Command not found"),
    "a text of 10,000 bytes": exactly("8," + "x" * 10000, "2,"),
}

VALUES = "aBool anInt aDouble aString aDateTime aFont aColor aStringList aRect aPixmap anIcon level".split()
READS = {
    **{f"7: {name}": [read("values", name)] for name in VALUES},
    "7: unsupported type": [read("values", "aMap", reply="8,Property type")],
    "7: unknown type": [read("values", "aUrl", reply="8,Unknown property type")],
    "7: unknown property": [read("values", "none", reply="8,Exception")],
    "7: exception of the application": [read("values", "thrower", reply="8,Exception")],
    "7: property names": [read("button", "propertyNames"), read("tree", "pseudoPropertyNames")],
    "7: rectangle on the screen": [read("button", "globalRect")],
    "7: by path": [read("window/button", "text", reply="5,"), read("window//button", "text")],
    "7: another class": [read("button", "text", class_name="QComboBox", reply="8,Exception")],
    "7: button": [read("button", "text")],
    "7: combo box": [read("combo", "itemList")],
    "7: list": [read("list", "itemList"), read("list", "itemIsChecked", "s:item 1")],
    "7: tree": [read("tree", "pathList"), read("tree", "itemTextList", "s:folder/a")],
    "7: tree, no such item": [read("tree", "itemIsOpen", "s:none", reply="8,Exception")],
    "7: table": [read("table", "itemText", "s:2:B"), read("table", "columnHeaderText", "s:1")],
    "7: any item view": [read("tree", "itemData", "s:1/2", class_name="QAbstractItemView")],
    "7: tab bar": [read("tabs", "itemList"), read("tabs", "currentText")],
    "7: tool box": [read("toolBox", "itemList")],
    "7: status bar": [read("status", "currentMessage")],
    "7: menu bar": [read("bar", "itemList"), read("bar", "pathDisabled", "s:File/Save")],
}

CLICKS = {
    "5: button": [activate("button")],
    "5: check box": [activate("check", "b:true"), activate("check", "b:false")],
    "5: radio button": [activate("radio")],
    "5: tool button": [activate("tool", "b:true"), activate("tool", "b:false")],
    "5: group box": [activate("group", "b:true"), activate("group", "b:false")],
    "5: disabled button": [activate("disabled", reply="8,Exception")],
    "5: wrong value": [activate("check", "s:x", reply="8,Exception")],
    "5: tab bar": [activate("tabs", "s:First"), activate("tabs", "i:1")],
    "5: tool box": [activate("toolBox", "s:First"), activate("toolBox", "s:Second")],
    "5: dock widget": [activate("dockFirst"), activate("dockSecond")],
    "5: any item view": [activate("tree", "s:1/2", "s:ClearAndSelect", class_name="QAbstractItemView")],
    "9: move": [mouse("canvas", "::0.2:0.2:"), mouse("canvas", "::0.8:0.8:")],
    "9: click": [mouse("canvas", "MouseClick:LeftButton:0.5:0.5:ControlModifier")],
    "9: double click": [mouse("canvas", "MouseDoubleClick:LeftButton:::")],
    "9: drag": [
        mouse("canvas", "MousePress:LeftButton:0.1:0.1:"),
        mouse("canvas", "MouseMove:LeftButton:0.9:0.9:"),
        mouse("canvas", "MouseRelease:LeftButton:0.9:0.9:"),
    ],
    "9: wrong word": [mouse("canvas", "MousePush:LeftButton:::", reply="8,Exception")],
    "9: button": [mouse("button", "MouseClick:LeftButton:::")],
    "9: list": [mouse("list", "MouseClick:LeftButton:::")],
}

KEYS = {
    "6: line edit": [enter("line", "s:abc"), enter("line", "s:d\n")],
    "6: text edit": [enter("text", "s:abc"), enter("text", "s:d")],
    "6: refused": [enter("button", "s:abc", reply="8,Exception")],
    "5 and 6: spin box": [activate("spin", "i:5"), enter("spin", "i:6")],
    "5: double spin box": [activate("doubleSpin", "s:1.5"), activate("doubleSpin", "s:2.5")],
    "5 and 6: date": [activate("date", "s:2024-03-12"), enter("date", "s:2024-03-13")],
    "5: slider": [activate("slider", "i:2"), activate("slider", "i:7")],
    "5: list": [activate("list", "s:item 2"), activate("list", "i:0")],
    "6: list": [enter("list", "b:true"), enter("list", "b:false"), enter("list", "s:item 0")],
    "5: tree": [activate("tree", "s:folder/a"), activate("tree", "s:folder/b")],
    "6: tree": [activate("tree", "s:folder/a"), enter("tree", "s:1:22")],
    "5: table": [activate("table", "s:1:A"), activate("table", "s:3:C")],
    "6: table": [activate("table", "s:2:B"), enter("table", "s:cell")],
    "6: combo box": [enter("editable", "s:abc")],
}

MENUS = {
    "5: menu bar": [activate("bar", "s:File/Save", menus=1)],
    "5: submenu": [activate("bar", "s:File/Send/Mail", menus=2)],
    "5: checkable item": [
        activate("bar", "s:File/Wrap", "b:true", menus=1),
        activate("bar", "s:File/Wrap", "b:false", menus=1),
    ],
    "5: menu without the item": [activate("bar", "s:File/None", reply="8,Exception", menus=1)],
    "5: popup menu": [*POPUP_OPENS, activate("ActivePopupWidget", "s:More/Paste", window=POPUP, menus=1)],
    "4: blocked by a popup": [
        *POPUP_OPENS,
        Request("8,Leaks", "4,Window (Leaks) not active popup"),
        activate("ActivePopupWidget", "s:Copy", window=POPUP),
    ],
    "5: combo box": [activate("combo", "s:three"), activate("combo", "i:0")],
    "5: editable combo box": [activate("editable", "s:two"), activate("editable", "s:one")],
}

EXTENSIONS = {
    "+extensions": exactly("+extensions"),
    "+2: window": [extended("+2", "")],
    "+2: tree": [extended("+2", "name=tree")],
    "+4: by text": [extended("+4", "QPushButton first")],
    "+5: button": [extended("+5", "name=button")],
    "+5: disabled": [extended("+5", "name=disabled", reply="9,disabled")],
    "+5: item that is not there": [extended("+5", "name=list", "", "s:none", reply="9,item")],
    "+5: menu entry that is not there": [extended("+5", "name=bar", "", "s:File/None", reply="9,item")],
    "+6: line edit": [extended("+6", "name=line", "", "s:\u20ac"), extended("+6", "name=line", "", "s:d")],
    "+7: by property": [extended("+7", '.objectName="button"', "", "text")],
    "+7: by pattern": [extended("+7", "QPushButton name~=^butt", "", "text")],
    "+7: by label": [extended("+7", 'label="none"', "", "text", reply="5,")],
    "+7: several": [extended("+7", "QWidget", "", "text", reply="7,")],
    "+7: no locator": [extended("+7", "text~=(", "", "text", reply="8,Exception : Invalid locator")],
    "+9: click": [extended("+9", "name=canvas", "", "s:MouseClick:LeftButton:0.5:0.5:")],
    "+press and +type": [extended("+press", "name=line", "Ctrl+A, Del"), extended("+type", "", "a\u20ac")],
    "+press: held": [extended("+press", "", "Shift", "press"), extended("+press", "", "Shift", "release")],
    "+wheel": [extended("+wheel", "name=text", ":::0:1"), extended("+wheel", "name=text", ":::0:-1")],
    "+focus": [extended("+focus", "name=line"), extended("+focus", "name=text")],
    "+record and +events": [
        Request(extension("+record", "start")),
        extended("+9", "name=list", "", "s:MouseClick:LeftButton:::", "", "s:item 2"),
        extended("+press", "name=line", "Ctrl+A, A"),  # replaces: a text that grows would take memory, too
        Request("+events"),
        Request(extension("+record", "stop")),
    ],
}

SLOW = {"5: editable combo box"}
"""The agent waits a fifth of a second in each of them."""
EVERY_KIND = {**QUERIES, **READS, **CLICKS, **KEYS, **MENUS, **EXTENSIONS}
PLANTED = {name: [read("leaky", name)] for name in ("bytes", "object", "widget", "file")}


class LeakApp(HostApp):
    """The application whose use of memory and of all else is looked at."""

    def __init__(self):
        environment = {
            # Small freed pieces that a thread keeps for itself would count as used.
            "GLIBC_TUNABLES": "glibc.malloc.tcache_count=0",
            # Each menu that is opened gets a window, and for each window the GLX of Mesa keeps some 300 bytes for ever.
            "QT_XCB_GL_INTEGRATION": "none",
        }
        super().__init__("leakhost", env=environment)

    def play(self, request):
        """Sends a request, again while a window is about to appear or to go, and checks the reply."""
        deadline = time.monotonic() + DEADLINE
        reply = self.request(request.line)
        while not reply.startswith(request.reply):
            assert reply.startswith(NEXT_TRY) and time.monotonic() < deadline, f"{request}: {reply}"
            reply = self.request(request.line)

    def play_rounds(self, requests, rounds):
        for _ in range(rounds):
            for request in requests:
                self.play(request)

    def stock(self):
        """The application's use of memory and of all else at rest."""
        self.settle()
        self.do("takeStock")
        return {name: int(self.get("usage", name)) for name in ("heap", "files", "widgets", "objects")}

    def growths(self, play, rounds):
        """Growth in batch after batch of so many rounds, after a first batch that fills the caches. Has no end."""
        play(rounds)
        before = self.stock()
        while True:
            play(rounds)
            after = self.stock()
            yield {name: after[name] - before[name] for name in after}
            before = after

    def leak_of_requests(self, requests, rounds, bytes_of_menu):
        """The counts that grew beyond their limits in every batch, and by how much in the one in which they grew least."""
        batches = self.growths(lambda count: self.play_rounds(requests, count), rounds)
        least = next(batches)
        for number, growth in enumerate(batches, 2):
            least = {name: min(least[name], growth[name]) for name in least}
            leak = excess(least, requests, rounds, bytes_of_menu)
            if number >= (MOST_BATCHES if leak else BATCHES):
                return leak

    def growth_of_a_menu(self):
        """The bytes that Qt itself keeps of each menu that opens, with nobody but the application at work.

        The median of many small batches: in some of them Qt frees a cache, and the menus seem to cost less or nothing.
        """
        rounds, count_of_batches = 50, 7

        def open_and_close(count):
            for _ in range(count):
                self.do("popUp")
                self.wait_until("popup", "visible", "true")
                self.do("closePopup")

        batches = itertools.islice(self.growths(open_and_close, rounds), count_of_batches)
        return statistics.median(growth["heap"] for growth in batches) / rounds


def excess(growth, requests, rounds, bytes_of_menu):
    """Growth that is a leak: all but half of the smallest piece of memory for each request."""
    of_menus = SPREAD_OF_MENUS * max(0, bytes_of_menu) * sum(request.menus for request in requests)
    allowed = {"heap": rounds * (BYTES_PER_REQUEST * len(requests) + of_menus)}
    return {name: count for name, count in growth.items() if count > allowed.get(name, 0)}
