"""eventually(): its conditions, their opposites, soft assertions, and arguments that nothing can fulfil."""

import re
import time

import pytest

from conftest import FAKE_AGENT
from qtdriver import ConditionError, Driver, Widget, WidgetNotFoundError, Window, containing, eventually, soft


@pytest.fixture(scope="module")
def patient(build):
    """A driver whose calls wait a moment."""
    with Driver(qt=5, build=build, timeout=0.2) as running:
        yield running


@pytest.fixture(scope="module")
def window(patient):
    """A window whose widget "ok" answers what a test says."""
    return patient.launch(*FAKE_AGENT).window("Editor")


@pytest.fixture
def shows(monkeypatch, window):
    """Has each reading of a property of "ok" give the next of its values, and the last one from then on."""
    left = {}

    def read(self, name, argument=None, *, timeout=None):
        return left[name].pop(0) if len(left[name]) > 1 else left[name][0]

    monkeypatch.setattr(Widget, "read", read)

    def call(**values):
        left.update({name: value if isinstance(value, list) else [value] for name, value in values.items()})
        return eventually(window.widget("ok"))

    return call


def failure(condition, *arguments, **named):
    """The message with which a condition fails, without the widget."""
    with pytest.raises(ConditionError) as caught:
        condition(*arguments, **named)
    return str(caught.value).partition(": expected ")[2]


def test_each_condition_of_a_widget_has_its_opposite(shows):
    ok = shows(text="Save", enabled=True, checked=False)
    ok.has_not(text="Saved")
    ok.has_not_property("text", re.compile("^Saved"))
    ok.is_not_disabled()
    ok.is_not_checked()
    assert failure(ok.has_not, text="Save") == "text not to be 'Save', but after 0.2 s it was 'Save'"
    assert failure(ok.has_not_property, "text", containing("av")).startswith("text not to have 'av' in it,")
    assert failure(ok.is_not_enabled) == "enabled to be False, but after 0.2 s it was True"


def test_each_condition_of_visibility_and_of_a_window_has_its_opposite(window, monkeypatch):
    missing = eventually(window.widget("missing"))
    missing.is_not_visible()
    assert failure(missing.is_not_hidden).startswith(
        "it to be visible, but after 0.2 s it could not be read:"
    )
    monkeypatch.setattr(Window, "is_open", lambda self: True)
    monkeypatch.setattr(Window, "title", lambda self, timeout: "Editor")
    eventually(window).has_not_title("Save")
    eventually(window).is_not_closed()
    assert failure(eventually(window).has_not_title, re.compile("^Ed")).startswith(
        "title not to match '^Ed', but"
    )
    assert failure(eventually(window, timeout=0).is_not_open) == "it to be closed, but after 0 s it was False"


def test_each_condition_of_a_result_has_its_opposite():
    three = eventually(lambda: 3, timeout=0)
    three.does_not_equal(4)
    three.does_not_satisfy(lambda value: value > 3)
    eventually(lambda: 0).is_false()
    for wrong in (
        lambda: three.does_not_equal(3),
        lambda: three.does_not_satisfy(lambda value: value == 3),
        three.is_false,
    ):
        with pytest.raises(ConditionError, match="but after 0 s it was 3$"):
            wrong()


def test_properties_are_to_have_their_values_at_one_moment(shows):
    """Saving shows "Saved" while the button is disabled, and "Save" while it is enabled, never both as expected."""
    ok = shows(text=["Saved", "Save"] * 1000, enabled=[True, True, False] * 1000)
    with pytest.raises(ConditionError):
        ok.has(text="Saved", enabled=True)


def test_properties_that_come_to_have_their_values_are_awaited_together(shows):
    shows(text=["Save", "Save", "Saved"], enabled=[True, False, False, True]).has(text="Saved", enabled=True)


def test_only_what_differs_is_told(shows):
    ok = shows(text="Save", enabled=True, width=80)
    assert failure(ok.has, text="Saved", enabled=True, width=90) == (
        "text to be 'Saved' and enabled to be True and width to be 90, but after 0.2 s text was 'Save' and width was 80"
    )


@pytest.mark.parametrize(
    "value, expected",
    [("2.50", 2.5), ("1e3", 1000), (3, 3.0), ("0.30000000000000004", 0.3), ("7", 7), (5, 5)],
)
def test_numbers_compare_as_numbers(shows, value, expected):
    shows(value=value).has(value=expected)


@pytest.mark.parametrize("value, expected", [(True, 1), (1, True), ("2.5x", 2.5), ("2.5", "2.50"), ("", 0)])
def test_what_is_no_number_does_not_compare_as_one(shows, value, expected):
    shows(value=value).has_not(value=expected)


@pytest.mark.parametrize(
    "call, error, words",
    [
        (lambda ok: ok.has(), TypeError, 'has: no property is named: has(text="Saved")'),
        (lambda ok: ok.has(text=None), TypeError, "has: text: None (NoneType) is none of a text, a number,"),
        (lambda ok: ok.has_not(text={1}), TypeError, "has_not: text: {1} (set) is none of a text, a number,"),
        (
            lambda ok: ok.has(text=re.compile(b"a")),
            TypeError,
            "has: text: re.compile(b'a') is a pattern of bytes",
        ),
        (lambda ok: ok.has_property("text", None), TypeError, "has_property: expected: None (NoneType)"),
        (lambda ok: ok.is_checked("yes"), TypeError, "is_checked: on: 'yes' (str) is neither True nor False"),
        (
            lambda ok: eventually(True),
            TypeError,
            "eventually: True (bool) is no widget, no window and no function",
        ),
        (lambda ok: eventually(len, timeout="5"), TypeError, "timeout: '5' (str) is no number of seconds"),
        (lambda ok: eventually(len, timeout=True), TypeError, "timeout: True (bool) is no number of seconds"),
        (lambda ok: eventually(len, timeout=-1), ValueError, "timeout: -1 is no number of seconds from 0"),
        (
            lambda ok: eventually(len).satisfies(5),
            TypeError,
            "satisfies: 5 (int) is no function of one argument",
        ),
    ],
)
def test_a_wrong_argument_is_an_error_at_once_that_names_it(shows, call, error, words):
    with pytest.raises(error) as caught:
        call(shows(text="Save", checked=True))
    assert str(caught.value).startswith(words)


def test_a_coroutine_function_is_refused_since_its_result_is_always_true():
    async def saved():
        return False

    with pytest.raises(TypeError, match="eventually: .*saved.* is no widget, no window and no function"):
        eventually(saved)


@pytest.fixture
def slow(patient):
    """A window of an application that takes longer for each answer than a test waits."""
    return patient.launch(*FAKE_AGENT, "--delay", "2").window("Editor")


def test_a_timeout_is_a_bound_also_where_replies_are_slow(slow):
    ok = slow.widget("ok")
    for condition in (
        lambda: eventually(ok, timeout=0.2).has(text="Saved"),
        lambda: eventually(ok.text, timeout=0.2).equals("Saved"),
    ):
        started = time.monotonic()
        with pytest.raises(ConditionError, match="but after 0.2 s there was no reply to .* yet"):
            condition()
        assert time.monotonic() - started < 1.9, "less than the application takes for one answer"
    eventually(ok, timeout=60).is_enabled()


def test_all_failures_of_a_block_are_told_together_with_their_lines(shows):
    ok = shows(text="Save", enabled=True)
    with pytest.raises(ConditionError) as caught:
        with soft():
            ok.has(text="Saved")
            ok.is_enabled()
            eventually(lambda: 3, timeout=0).equals(4)
    lines = str(caught.value).splitlines()
    assert lines[0] == "2 soft assertions failed:"
    assert re.fullmatch(r"1\. test_conditions\.py:\d+: ok\.has\(text=\"Saved\"\)", lines[1])
    assert lines[2].endswith("expected text to be 'Saved', but after 0.2 s it was 'Save'")
    assert lines[3].endswith("eventually(lambda: 3, timeout=0).equals(4)")
    assert lines[4] == "   expected 4, but after 0 s it was 3"


def test_a_block_without_failures_passes(shows):
    with soft():
        shows(enabled=True).is_enabled()


def test_what_ends_a_block_is_told_after_its_failures(shows):
    ok = shows(text="Save")
    with pytest.raises(ConditionError) as caught:
        with soft():
            ok.has(text="Saved")
            raise AssertionError("counted")
    assert str(caught.value).startswith("2 soft assertions failed:\n1. ")
    assert "counted" in str(caught.value).splitlines()[-1]
    assert isinstance(caught.value.__cause__, AssertionError)


def test_an_error_ends_a_block_without_failures_as_it_is(window):
    with pytest.raises(WidgetNotFoundError):
        with soft():
            window.widget("missing").text(timeout=0)


def test_a_block_within_another_one_adds_to_it(shows):
    ok = shows(text="Save")
    with pytest.raises(ConditionError, match="^2 soft assertions failed:"):
        with soft():
            with soft():
                ok.has(text="Saved")
            ok.has(text="Sent")


def test_after_a_block_a_failure_ends_the_test_again(shows):
    with pytest.raises(ConditionError), soft():
        shows(text="Save").has(text="Saved")
    with pytest.raises(ConditionError, match="^window"):
        shows(text="Save").has(text="Saved")
