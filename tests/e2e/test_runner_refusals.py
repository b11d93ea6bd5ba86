"""Refusals of the runner where keys and clicks would do something else than was asked for: an application says so."""

import pickle
import sys
from pathlib import Path

import pytest

sys.path.append(str(Path(__file__).resolve().parents[1] / "protocol"))

from hostapp import HostApp
from qtdriver import (
    CommandError,
    CornerButtonError,
    Driver,
    EarlyExitError,
    NoEditorError,
    NoGreetingError,
    PortInUseError,
    WidgetNotFoundError,
    eventually,
)
from qtdriver.commandline.dialogue import Dialogue
from qtdriver.trace.trace import describe_request

from showcase import AGENTS, running

ENTERED = {"list": "new", "table": "new", "tree": "0:new"}
SERVED = {"list": "QListView", "table": "QTableView", "tree": "QTreeView"}


@pytest.fixture
def start():
    """Starts the application with views and menus that keys can harm, in one of its scenarios.

    Answers the program, which tells what it has seen, and its window as the runner sees it.
    """
    hosts = []
    with Driver(build=AGENTS) as driver:

        def start_scenario(scenario, *arguments):
            host = HostApp("keysequencehost", "--scenario", scenario, *arguments, serve=False)
            hosts.append(host)
            window = driver.attach(pid=host.process.pid).window("Sequences")
            window.title()
            host.forget()
            return host, window

        yield start_scenario
        for host in hosts:
            assert host.close() == 0


def requests_of(window):
    """The requests so far, each by its command and what it is about, but for the one that asks for the extensions."""
    requests = [exchange.request for exchange in window.app.connection.transcript.exchanges()]
    return [request for request in requests if request != "+extensions"]


def numbers(requests):
    """The numbers of their commands, whether they travel as a command or as its extension."""
    return [request.split(",")[0].lstrip("+") for request in requests]


@pytest.fixture(params=ENTERED)
def view(request, start):
    """A view with a current item in an application that does not change by itself, its host, and a text for it."""
    host, window = start(request.param)
    host.do("currentR2C1")
    host.forget()
    return host, window.widget("view"), ENTERED[request.param], SERVED[request.param]


# Views without an editor


@pytest.mark.parametrize("triggers, names", [("None", "NoEditTriggers"), ("DoubleClick", "DoubleClicked")])
def test_a_text_for_a_view_without_an_editor_is_refused_and_nothing_happens(view, triggers, names):
    host, widget, text, served = view
    host.do(f"triggers{triggers}")
    with pytest.raises(NoEditorError) as caught:
        widget.enter(text)
    error = caught.value
    assert (error.view_class, error.triggers, error.value) == (served, names, text)
    assert f"its editTriggers are {names}" in str(error)
    assert "force=True" in str(error) and "double_click()" in str(error)
    assert host.events() == []
    assert host.get("view", "focus") == host.get("window", "visible") == "true"


def test_forced_the_text_is_sent_where_the_application_opens_the_editor_by_itself(view):
    host, widget, text, served = view
    host.do("triggersNone")
    host.do("editByItself")
    with pytest.raises(NoEditorError):
        widget.enter(text)
    assert widget.enter(text, force=True) == served
    host.wait_for("data view 1,0 'new' check 0")


def test_a_view_whose_editor_f2_opens_is_asked_once_for_each_text(view):
    host, widget, text, _ = view
    for number in range(2):
        sent = len(requests_of(widget.window))
        widget.enter(f"{text}{number}")
        host.wait_for(f"data view 1,0 'new{number}' check 0")
        assert numbers(requests_of(widget.window)[sent:]) == ["7", "6"]


def test_a_view_that_stops_opening_editors_is_refused_from_then_on(view):
    host, widget, text, _ = view
    widget.enter(text)
    host.wait_for("data view 1,0 'new' check 0")
    host.do("triggersNone")
    host.forget()
    with pytest.raises(NoEditorError):
        widget.enter(text)
    assert host.events() == []


def test_the_focus_widget_is_not_looked_at(view):
    host, widget, text, _ = view
    host.do("triggersNone")
    widget.window.focus_widget().enter(text)
    host.wait_for("accepted window")


def test_the_advice_works_the_text_is_entered_in_the_editor_that_a_double_click_opens(view):
    host, widget, _, _ = view
    host.do("triggersDoubleClick")
    widget.double_click()
    host.wait_until("view", "focus", "false")
    widget.window.focus_widget().enter("new\n")
    host.wait_for("data view 1,0 'new' check 0")
    assert host.get("window", "visible") == "true"


@pytest.mark.parametrize("triggers, text", [("AnyKey", "0:"), ("DoubleClick", "0:new")])
def test_a_tree_is_refused_a_text_that_types_nothing_or_opens_nothing(start, triggers, text):
    host, window = start("tree")
    host.do("currentR2C1")
    host.do(f"triggers{triggers}")
    host.forget()
    with pytest.raises(NoEditorError):
        window.widget("view").enter(text)
    assert host.events() == []


@pytest.mark.parametrize("triggers", ["AnyKey", "CurrentChanged", "F2"])
def test_a_tree_is_given_a_text_that_its_editor_can_get(start, triggers):
    host, window = start("tree")
    host.do("currentR2C1")
    host.do(f"triggers{triggers}")
    window.widget("view").enter("0:new")
    host.wait_for("data view 1,0 'new' check 0")


def test_a_check_state_needs_no_editor(start):
    host, window = start("list")
    host.do("makeCheckable")
    host.do("currentR2C1")
    host.do("triggersNone")
    window.widget("view").enter(True)
    host.wait_for("data view 1,0 'R2C1' check 2")
    assert not any("editTriggers" in describe_request(request) for request in requests_of(window))


def test_a_field_is_asked_whether_it_is_a_view_before_its_first_text_only():
    with running() as (_, app):
        customer = app.window(name="showcase").widget("customerEdit")
        app.window(name="showcase").widget("pages/qt_tabwidget_tabbar").select("Entry fields")
        asked = []
        for text in ("Ada", "Grace", "Ada"):
            sent = len(requests_of(customer.window))
            customer.enter(text)
            asked.append(numbers(requests_of(customer.window)[sent:]))
            eventually(customer).has(text=text)
        assert asked == [["7", "6"], ["6"], ["6"]]


def test_a_widget_that_is_not_there_is_the_error_that_it_was(start):
    _, window = start("list")
    with pytest.raises(WidgetNotFoundError):
        window.widget("nothing").enter("x", timeout=0)
    with pytest.raises(CommandError, match='"enter" is not implemented for widget of class "QPushButton"'):
        window.widget("ok").enter("x")


# Buttons in the corner of a menu bar


def test_a_menu_whose_opening_would_press_the_button_in_the_corner_is_refused(start):
    host, window = start("corner")
    for choose in (window.menu("File/Save").activate, window.menu("File/Wrap").check):
        with pytest.raises(CornerButtonError) as caught:
            choose()
        error = caught.value
        assert (error.button_class, error.button, error.bar) == ("QPushButton", "corner", "bar")
        assert 'the QPushButton "corner" is' in str(error) and "force=True" in str(error)
    assert host.events("press", "clicked", "shown", "triggered") == []


def test_a_combo_box_in_the_corner_is_a_reason_to_refuse_too(start):
    host, window = start("corner", "--combo")
    with pytest.raises(CornerButtonError, match='the QComboBox "corner" is'):
        window.menu("File/Save").activate()
    assert host.events("press", "shown", "triggered") == []


def test_forced_the_menu_is_opened_and_the_button_pressed(start):
    host, window = start("corner")
    window.menu("File/Save").activate(force=True)
    host.wait_for("triggered save")
    assert host.events("clicked") == ["clicked corner"]


def test_the_advice_works_the_menu_opens_by_a_click_on_its_title(start):
    host, window = start("corner")
    window.widget("bar").click(at=(0.02, 0.5))
    window.app.popup().menu("Save").activate()
    host.wait_for("triggered save")
    assert host.events("clicked") == []


@pytest.mark.parametrize("arguments", [("--left",), ("-reverse",)], ids=" ".join)
def test_a_button_in_the_other_corner_is_no_reason_to_refuse(start, arguments):
    host, window = start("corner", *arguments)
    window.menu("File/Save").activate()
    host.wait_for("triggered save")
    assert host.events("clicked") == []


def test_a_bar_that_is_named_by_its_path_is_not_looked_at(start):
    host, window = start("corner")
    window.menu("File/Save", bar="bar").activate()
    host.wait_for("triggered save")
    assert host.events("clicked") == ["clicked corner"]


@pytest.mark.parametrize("change", ["hideCorner", "disableCorner", "labelInCorner"])
def test_what_does_nothing_when_it_is_clicked_is_no_reason_to_refuse(start, change):
    host, window = start("corner")
    host.do(change)
    window.menu("File/Save").activate()
    host.wait_for("triggered save")
    assert host.events("clicked") == []


def test_a_bar_without_other_widgets_costs_no_request_more(start):
    host, window = start("dialog")
    sent = len(requests_of(window))
    window.menu("File/Save").is_enabled()
    reading = len(requests_of(window)) - sent
    window.menu("File/Save").activate()
    host.wait_for("triggered save")
    # Both find the bar and send one request; reading lists the windows once in a while.
    acting = [number for number in numbers(requests_of(window)[sent + reading :]) if number != "1"]
    asking = [number for number in numbers(requests_of(window)[sent : sent + reading]) if number != "1"]
    assert len(acting) == len(asking)


# The command line


def say(window, *lines):
    """The console's answers and complaints at these lines."""
    said, complaints = [], []
    Dialogue(window.app, said.append, complaints.append, echo=False).run(lines)
    return "\n".join(map(str, said)), "\n".join(map(str, complaints))


def test_the_command_line_refuses_a_view_without_an_editor_unless_it_is_forced(start):
    host, window = start("list")
    host.do("currentR2C1")
    host.do("triggersNone")
    host.forget()
    said, complaints = say(window, "enter Sequences view new")
    assert "editTriggers are NoEditTriggers" in said + complaints
    assert host.events() == []
    host.do("editByItself")
    assert say(window, "enter Sequences view new --force") == ("QListView", "")
    host.wait_for("data view 1,0 'new' check 0")


def test_the_command_line_refuses_a_button_in_the_corner_unless_it_is_forced(start):
    host, window = start("corner")
    said, complaints = say(window, "menu Sequences File/Save")
    assert 'the QPushButton "corner" is' in said + complaints
    assert host.events("press", "shown") == []
    assert say(window, "menu Sequences File/Save --force") == ("OK", "")
    host.wait_for("triggered save")


# Copies of the errors, for parallel test runs


@pytest.mark.parametrize(
    "error",
    [
        NoEditorError("QListView", "NoEditTriggers", "x"),
        CornerButtonError("QToolButton", "out", "bar"),
        EarlyExitError("app", -11, "a\nb", "another has connected, too"),
        NoGreetingError("app", 5, "a\nb", 4711),
        PortInUseError("127.0.0.1", 4242),
    ],
)
def test_the_errors_can_be_copied_to_another_process(error):
    copy = pickle.loads(pickle.dumps(error))
    assert (type(copy), str(copy), vars(copy)) == (type(error), str(error), vars(error))
