"""Makes the events that an agent tells of a window with one widget of each kind."""

(
    BUTTON,
    LINE,
    LIST,
    TREE,
    TABLE,
    TABS,
    BOX,
    BAR,
    CANVAS,
    SECRET,
    NOTES,
    SLIDER,
    CHECK,
    COLUMNS,
    TOOL,
    FILE,
    SAVE,
    CUPS,
) = range(2, 20)
NAMED = (
    (BUTTON, "QPushButton", "button", {"name": "brew"}),
    (LINE, "QLineEdit", "edit", {"label": "Customer:"}),
    (LIST, "QListWidget", "list", {"name": "drinks"}),
    (TREE, "QTreeWidget", "tree", {"name": "files"}),
    (TABLE, "QTableWidget", "table", {"name": "prices"}),
    (TABS, "QTabBar", "tab bar", {"name": "qt_tabwidget_tabbar"}),
    (BOX, "QComboBox", "combo box", {"name": "roast"}),
    (BAR, "QMenuBar", "menu bar", {}),
    (CANVAS, "Canvas", "widget", {"name": "canvas"}),
    (SECRET, "QLineEdit", "edit", {"name": "password"}),
    (NOTES, "QTextEdit", "edit", {"name": "notes"}),
    (SLIDER, "QSlider", "slider", {"name": "heat"}),
    (CHECK, "QCheckBox", "checkbox", {"text": "Milk"}),
    (TOOL, "QToolButton", "button", {"name": "more"}),
    (FILE, "QLineEdit", "edit", {"name": "fileNameEdit"}),
    (SAVE, "QPushButton", "button", {"text": "Save"}),
    (CUPS, "QSpinBox", "spin box", {"name": "cups", "value": 0}),
)


def tree(**values):
    """The window Shop; keywords are values of its widgets, by their names."""
    children = [
        {"ref": ref, "class": kind, "role": role, "rect": [0, 0, 100, 20], **told}
        for ref, kind, role, told in NAMED
    ]
    for child in children:
        if child.get("name") in values:
            child["value"] = values[child["name"]]
        if child.get("label") == "Customer:" and "customer" in values:
            child["value"] = values["customer"]
        if child["ref"] == CHECK and values.get("milk"):
            child["states"] = ["checked"]
        inner = {"class": "QWidget", "role": "widget", "rect": [0, 0, 1, 1]}
        if child["ref"] == NOTES:
            child["children"] = [{**inner, "ref": 90, "name": "qt_scrollarea_viewport"}]
        if child["ref"] == TREE:
            child["children"] = [{**inner, "ref": COLUMNS, "class": "QHeaderView", "role": "header"}]
    root = {"ref": 1, "class": "QMainWindow", "role": "window", "name": "shop", "rect": [0, 0, 500, 500]}
    return {**root, "title": "Shop", "children": children}


def event(kind, ref, window=1, **told):
    return {"kind": kind, "ref": ref, "window": window, "time": 0, **told}


def mouse(kind, ref, button="left", **told):
    place = {"at": [50, 10], "size": [100, 20], "button": button}
    values = {**place, **({"tree": tree()} if kind != "release" else {}), **told}
    return event(kind, ref, **{name: value for name, value in values.items() if value is not None})


def held(ref, value):
    """The widget that had the last input before, and its value."""
    return {"ref": ref, "value": value}


def click(ref, **told):
    return [
        mouse("press", ref, **told),
        mouse("release", ref, **{k: v for k, v in told.items() if k not in ("tree", "widget", "previous")}),
    ]


def double_click(ref, **told):
    return [*click(ref, **told), mouse("double click", ref, **told), mouse("release", ref, **told)]


def keys(ref, text, before="", **told):
    """A key for each character; the first one tells the window."""
    events = []
    for number, character in enumerate(text):
        name = {"\r": "Return", "\b": "Backspace"}.get(character, character.upper())
        value = {"value": before} if before else {}
        extra = {"tree": tree()} if number == 0 else {}
        events.append(event("key", ref, key=name, text=character, **value, **extra, **told))
        before = before[:-1] if character == "\b" else before + character.replace("\r", "\n")
    return events


def key(ref, name, **told):
    return event("key", ref, key=name, tree=tree(), **told)


def wheel(ref, angle, **told):
    return event("wheel", ref, angle=angle, at=[1, 1], size=[2, 2], tree=tree(), **told)


def row(*path, **told):
    return {"path": list(path), "text": path[-1], "row": 0, "column": 0, **told}


def entry(*path, opener=BAR, window=1):
    return {"path": list(path), **({"opener": opener, "window": window} if opener else {})}


def chosen(*path, **options):
    item = entry(*path, **options)
    return [
        event("press", 50, 50, at=[1, 1], size=[9, 9], button="left", item=item),
        event("release", 50, 50, at=[1, 1], size=[9, 9], button="left", item=item),
        event("action", 50, 50, item=item),
    ]


DIALOG = {
    "ref": 70,
    "class": "QDialog",
    "role": "dialog",
    "rect": [0, 0, 9, 9],
    "title": "Pay",
    "children": [
        {"ref": 71, "class": "QPushButton", "role": "button", "rect": [0, 0, 9, 9], "text": "OK"},
        {"ref": 72, "class": "QPushButton", "role": "button", "rect": [0, 0, 9, 9], "text": "Cancel"},
    ],
}
SECTION = {"section": 1, "orientation": "horizontal", "text": "Size"}
CELL = row("1.80", headers=["3", "Price"])
CUPS_BOX = {"class": "QSpinBox", "role": "spin box", "name": "cups"}
MILK_BOX = {"class": "QCheckBox", "role": "checkbox", "text": "Milk"}
SAVE_BUTTON = {"class": "QPushButton", "role": "button"}
MILK = {"tree": tree(milk=True)}
