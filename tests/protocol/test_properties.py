"""The properties that every widget has."""

import pytest

from hostapp import QT, eventually

SCREEN_WIDTH, SCREEN_HEIGHT = 1280, 1024


@pytest.fixture
def app(launch):
    return launch("corehost")


@pytest.mark.shared
def test_a_plain_widget_has_exactly_the_built_in_pseudo_properties(app):
    names = ["propertyNames", "pseudoPropertyNames", "className", "silkClassName", "globalRect"]
    assert app.read("Editor", "canvas", "pseudoPropertyNames") == "0,l:" + "".join(
        "\f" + name for name in names
    )


@pytest.mark.shared
def test_a_button_adds_its_text(app):
    assert app.read("Editor", "twin", "pseudoPropertyNames").endswith("\fglobalRect\ftext")


@pytest.mark.shared
def test_all_qt_properties_are_named_inherited_ones_first(app):
    names = app.read("Editor", "canvas", "propertyNames").split("\f")
    assert names[:2] == ["0,l:", "objectName"]
    assert names[-5:] == ["options", "alignment", "orientation", "unregistered", "thrower"]


@pytest.mark.shared
def test_an_exception_of_the_application_is_answered(app):
    assert app.read("Editor", "canvas", "thrower") == "8,Exception : Unknown exception"
    assert app.request("8,Editor") == "0,Editor"


def test_a_property_of_a_type_that_qt_does_not_know_has_no_value_and_nothing_is_printed(capfd, launch):
    app = launch("corehost")  # only now, so that what it prints is seen
    # Qt 6 knows every type; the older ones would print a warning if they were asked for the value.
    unknown = '8,Exception : Unknown property "unregistered".' if QT < 6 else "8,Unknown property type"
    assert app.read("Editor", "canvas", "unregistered") == unknown
    app.settle()
    assert capfd.readouterr().err == ""


REFUSED = {
    "8,Property type not supported": {"childrenRegion", "sizePolicy", "palette", "cursor", "shortcut"},
    "8,Unknown property type": {"locale"},
}


def as_the_application_has_it(reply):
    """The value in a reply as the application itself writes that of its property; a picture is none there."""
    kind, value = reply.removeprefix("0,").split(":", 1)
    if kind == "r":
        left, top, right, bottom = map(int, value.split(","))
        return f"{left},{top} {right - left + 1}x{bottom - top + 1}"
    return "" if kind == "x" else value


@pytest.mark.shared
def test_every_named_property_has_the_value_that_the_application_has_or_a_type_without_one(app):
    names = app.read("Editor", "twin", "propertyNames").split("\f")[1:]
    refused = {reply: set() for reply in REFUSED}
    for name in names:
        reply = app.read("Editor", "twin", name)
        if reply in refused:
            refused[reply].add(name)
        else:
            assert as_the_application_has_it(reply) == app.get("twin", name), (name, reply)
    assert refused == REFUSED
    assert {"text", "geometry", "checked", "width", "windowOpacity"} <= set(names)


@pytest.mark.shared
def test_the_global_rectangle_is_in_screen_coordinates_and_prepares_the_window(app):
    app.show("showNames", "names")
    left, top, right, bottom = app.rect("Editor", "canvas")
    assert (right - left + 1, bottom - top + 1) == (200, 100)
    app.wait_until("main", "isActiveWindow", "true")
    app.request("4,Editor,canvas")
    app.do("reportCursor")
    assert app.journal[-1] == f"cursor {left},{top}"


@pytest.mark.shared
def test_other_properties_prepare_nothing(app):
    app.show("showNames", "names")
    assert app.read("Editor", "canvas", "className") == "u:ValueWidget"
    assert app.get("names", "isActiveWindow") == "true"


@pytest.mark.shared
def test_built_in_names_win_over_properties_of_the_same_name(app):
    app.do("shadowClassName")
    assert app.read("Editor", "canvas", "className") == "u:ValueWidget"


@pytest.mark.shared
@pytest.mark.parametrize("name", ["nothing", "classname", "pseudopropertynames"])
def test_an_unknown_property_is_an_error(app, name):
    assert app.read("Editor", "canvas", name) == f'8,Exception : Unknown property "{name}".'


@pytest.mark.shared
@pytest.mark.parametrize("argument", ["s:x", "x", "", "b:true"])
def test_an_argument_that_a_property_does_not_use_is_ignored(app, argument):
    assert app.read("Editor", "twin", "text", argument) == "u:twin"


def test_a_minimised_window_is_shown_for_real_input(app):
    app.do("minimizeMain")
    app.wait_until_minimized("main")

    def is_clicked():
        # The window manager takes its time to show the window: a click may come before that, or meet it on its way.
        app.activate("Editor", "twin")
        return "clicked twin" in app.events("clicked")

    eventually(is_clicked, True)
    assert app.get("main", "minimized") == "false"


@pytest.mark.shared
def test_a_window_is_active_when_it_is_acted_on(app):
    app.show("showNames", "names")
    assert app.mouse("Editor", "canvas", "") == "0,QWidget"
    assert app.get("main", "isActiveWindow") == "true"


def test_a_window_partly_off_the_screen_is_moved_onto_it(app):
    app.do("moveMainOffScreen")
    eventually(lambda: app.get("main", "x").startswith("-"), True)

    def place():
        # The window manager may move the window to its former place after the agent has looked at it.
        reply = app.mouse("Editor", "canvas", "")
        left, top, right, bottom = app.rect("Editor", "canvas")
        is_on_the_screen = 0 <= left and 0 <= top and right < SCREEN_WIDTH and bottom < SCREEN_HEIGHT
        return "on the screen" if is_on_the_screen else f"{left},{top},{right},{bottom} after {reply}"

    eventually(place, "on the screen")


@pytest.mark.shared
def test_a_widget_on_the_screen_leaves_its_window_where_it_is(app):
    before = app.get("main", "geometry")
    app.mouse("Editor", "canvas", "")
    assert app.get("main", "geometry") == before


@pytest.mark.shared
def test_an_icon_has_as_many_pixels_on_a_screen_of_twice_the_density(launch):
    app = launch("corehost", env={"QT_SCALE_FACTOR": "2"})
    reply = app.read("Editor", "canvas", "anIcon")
    assert b'"64 64 1 1"' in bytes.fromhex(reply.partition("0,x:")[2])
