"""Items that are not there, or cannot be used yet: the application feels nothing of the requests that are refused."""

import pytest

from extensions import extension
from hostapp import eventually


@pytest.fixture
def app(launch):
    """The application, with the keyboard in a field of a window in front of the items'."""
    application = launch("unreadyitemhost")
    assert application.request(extension("+focus", "Front", "name=frontLine")) == "0,QLineEdit"
    application.wait_until("frontLine", "focus", "true")
    return application


def activate(app, name, value, class_name=""):
    return app.request(extension("+5", "Items", f"name={name}", class_name, value))


def felt(app, request):
    """The reply to a request, and what the application's widgets have felt of it."""
    app.do("watch")
    reply = request()
    app.do("stopWatching")
    return reply, app.events("felt")


UNREADY = [
    ("list", "s:Late", 'item "Late" not there yet'),
    ("list", "i:7", 'item "7" not there yet'),
    ("list", "s:Blocked", 'item "Blocked" disabled'),
    ("list", "i:1", 'item "1" disabled'),
    ("list", "i:2", 'item "2" hidden'),
    ("tree", "s:Late", 'item "Late" not there yet'),
    ("tree", "s:Outer/Late", 'item "Outer/Late" not there yet'),
    ("tree", "s:Outer/Blocked", 'item "Outer/Blocked" disabled'),
    ("table", "s:9:1", 'item "9" not there yet'),
    ("table", "s:1:Late", 'item "Late" not there yet'),
    ("table", "s:2:1", 'item "2" hidden'),
    ("table", "s:1:2", 'item "1:2" disabled'),
    ("combo", "s:Late", 'item "Late" not there yet'),
    ("combo", "i:7", 'item "7" not there yet'),
    ("tabs", "s:Late", 'item "Late" not there yet'),
    ("tabs", "i:7", 'item "7" not there yet'),
    ("tabs", "s:Blocked", 'item "Blocked" disabled'),
    ("box", "s:Late", 'item "Late" not there yet'),
    ("box", "s:Blocked", 'item "Blocked" disabled'),
    ("bar", "s:Late/Entry", 'item "Late" not there yet'),
    ("bar", "s:Closed/Entry", 'item "Closed" disabled'),
    ("bar", "s:File/Late", 'item "Late" not there yet'),
    ("bar", "s:File/Blocked", 'item "Blocked" disabled'),
    ("bar", "s:File/More/Late", 'item "Late" not there yet'),
    ("bar", "s:File/Early/Late", 'item "Late" not there yet'),
]


@pytest.mark.parametrize("name, value, reason", UNREADY, ids=lambda text: text.replace("/", " "))
def test_nothing_happens_for_an_item_that_is_not_ready(app, name, value, reason):
    assert felt(app, lambda: activate(app, name, value)) == (f"9,{reason}", [])


def test_nothing_happens_in_a_view_that_is_served_as_any_item_view(app):
    refused = ('9,item "7" not there yet', [])
    assert felt(app, lambda: activate(app, "plain", "s:7", "QAbstractItemView")) == refused


def test_a_search_is_noticed_where_it_goes_on_to_the_item(app):
    reply, events = felt(app, lambda: activate(app, "list", "s:Early"))
    assert reply == "0,QListView"
    assert {"felt scrolling bar of the area", "felt focus QListWidget list"} <= set(events)


def test_an_open_menu_feels_no_key_for_an_entry_that_is_not_ready(app):
    app.do("popUp")
    popup = "Widget:ActivePopupWidget"
    eventually(lambda: app.request(extension("+7", popup, "", "", "className", "")), "0,u:514d656e75")
    for value, reason in [("s:Late", 'item "Late" not there yet'), ("s:Blocked", 'item "Blocked" disabled')]:
        reply, events = felt(app, lambda v=value: app.request(extension("+5", popup, "", "", v)))
        assert reply == f"9,{reason}"
        assert [event for event in events if event.startswith("felt key")] == []


@pytest.mark.parametrize("value, entry", [("s:Lazy/Filled", "filled"), ("s:Edit/Paste", "paste")])
def test_a_menu_that_the_application_fills_or_enables_as_it_opens_is_opened(app, value, entry):
    assert activate(app, "bar", value) == "0,QMenuBar"
    app.wait_for(f"triggered {entry}")


@pytest.mark.parametrize("value", ["s:Lazy/Late", "s:Empty/Late"])
def test_a_menu_that_may_change_as_it_opens_is_opened_to_see_and_closed(app, value):
    reply, events = felt(app, lambda: activate(app, "bar", value))
    assert reply == '9,item "Late" not there yet'
    assert "felt show QMenu " in events and "felt hide QMenu " in events
    gone = extension("+7", "Widget:ActivePopupWidget", "", "", "className", "")
    assert app.request(gone).startswith("2,")
