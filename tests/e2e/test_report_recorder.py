"""A Recorder writes down tests of the showcase, which do not notice it."""

import json
import os
import re
import signal
import socket

import pytest
from PIL import Image

from qtdriver import (
    ApplicationEndedError,
    ApplicationHangsError,
    ConditionError,
    WidgetNotFoundError,
    eventually,
)
from qtdriver.trace import recorder as module
from qtdriver.trace.recorder import Recorder
from qtdriver.desktop import screenshots
from qtdriver.desktop.bands import BandCutter, Pixels
from qtdriver.desktop.screenshots import ScreenshotStore
from qtdriver.desktop.strips import StripWriter

from showcase import running


@pytest.fixture
def recorded(tmp_path):
    """Runs a test of the showcase with a Recorder, and answers what that has written."""

    def run(test, *, keep=True, prepare=lambda app: None, **options):
        folder = tmp_path / "traces" / "one"
        with running(timeout=options.pop("timeout", 10), request_timeout=3) as (driver, app):
            prepare(app)
            recorder = Recorder(folder, **options)
            driver.listeners.append(recorder)
            test(app)
            recorder.close(keep=keep)
        return json.loads((folder / "trace.json").read_text()) if keep else folder

    return run


def order(app):
    window = app.window(name="showcase")
    window.widget("brewButton").activate()
    eventually(window.widget("clickCount")).has(text="1")
    window.widget("milkCheck").check()


def added(store, images):
    """Pictures of a screen, in a store."""
    cutter = BandCutter()
    return [store.add(image.size, cutter.cut(Pixels.of(image)), "screen") for image in images]


def picture(tmp_path, name):
    return Image.open(tmp_path / "traces" / "one" / name)


def test_the_steps_are_there_in_order_with_their_times(recorded):
    trace = recorded(order)
    assert [(step["title"], step["reads"]) for step in trace["steps"]] == [
        ('window(name="showcase").widget("brewButton").activate()', False),
        ("""eventually(window(name="showcase").widget("clickCount")).has(text='1')""", True),
        ('window(name="showcase").widget("milkCheck").check()', False),
    ]
    times = [time for step in trace["steps"] for time in (step["start"], step["start"] + step["seconds"])]
    assert times == sorted(times) and 0 < times[0] and times[-1] < trace["seconds"]
    assert trace["notes"] == []


def test_requests_and_replies_are_told_as_sent_and_in_words(recorded):
    steps = recorded(order)["steps"]
    (first, pressed), (checked,) = steps[0]["exchanges"], steps[2]["exchanges"]
    assert (first["request"], first["asks"]) == ("+extensions", "+extensions")
    assert pressed["request"].startswith("+5,") and pressed["reply"] == "0,QPushButton"
    assert pressed["asks"] == '+activateWidget  Widget:showcase  path="brewButton"'
    assert checked["asks"] == '+activateWidget  Widget:showcase  path="milkCheck"  b:true'
    assert checked["answers"] == "QCheckBox"
    # Once a second a step that reads lists the windows, too.
    read = [exchange["answers"] for exchange in steps[1]["exchanges"] if exchange["request"].startswith("7,")]
    assert read[-1] == "1"
    assert 0 < pressed["seconds"] <= steps[0]["seconds"]


def test_acting_steps_have_a_picture_before_and_after_and_reading_steps_one_after(recorded, tmp_path):
    press, read, check = recorded(order)["steps"]
    assert press["before"] and press["after"] and not read["before"] and read["after"]
    before, after = (picture(tmp_path, check[moment]) for moment in ("before", "after"))
    assert before.size == after.size
    assert check["before"] != check["after"] and before.convert("RGB") != after.convert("RGB")


def test_a_picture_without_a_change_is_stored_once(tmp_path):
    store = ScreenshotStore()
    one, other = added(store, [Image.radial_gradient("L") for _ in range(2)])
    assert one is other
    store.save(tmp_path, [one, other])
    assert [file.suffix for file in tmp_path.iterdir()] == [".webp"]


def test_the_widgets_follow_acting_steps(recorded):
    trace = recorded(order)
    press, read, check = trace["steps"]
    assert not read["widgets"]
    lines = trace["trees"][press["widgets"]].split("\n")
    assert lines[:2] == ['window "Roastery"', '  MainWindow "showcase"']
    assert any(line.endswith('QPushButton "brewButton"') for line in lines)
    assert any(line.endswith(" hidden") for line in lines)
    assert press["widgets"] == check["widgets"]


def test_a_menu_and_a_dialog_are_among_the_windows(recorded):
    def open_order(app):
        app.window(name="showcase").menu("Order/New order...").activate()
        app.modal("New order").move(20, 20)

    trace = recorded(open_order)
    tree = trace["trees"][trace["steps"][-1]["widgets"]]
    assert 'window "Roastery"' in tree and 'window "New order" modal\n  OrderDialog' in tree
    assert "cannot be listed" not in tree


def test_the_widgets_of_an_open_popup_are_told(recorded):
    def open_list(app):
        box = app.window(name="showcase").widget("hopperCombo", as_class="QWidget")
        box.click(at=(0.5, 0.5))
        app.popup().tree()
        app.popup().move(5, 5)

    trace = recorded(open_list)
    tree = trace["trees"][trace["steps"][-1]["widgets"]]
    assert 'window ""\n  QComboBoxPrivateContainer' in tree
    assert "cannot be listed" not in tree


def test_a_failed_step_has_its_error_and_the_widgets_that_were_there(recorded):
    def fail(app):
        with pytest.raises(WidgetNotFoundError):
            app.window(name="showcase").widget("milkCheque").read("checked", timeout=0)

    trace = recorded(fail)
    (step,) = trace["steps"]
    assert step["error"].startswith("Widget (milkCheque) not found")
    assert '"milkCheck"' in trace["trees"][step["widgets"]] and step["after"]


def test_a_failed_step_has_the_place_of_its_widget_also_where_the_test_has_used_no_extension(recorded):
    def fail(app):
        with pytest.raises(ConditionError):
            eventually(app.window(name="showcase").widget("milkCheck"), timeout=0).is_checked()

    (step,) = recorded(fail)["steps"]
    assert step["error"] and step["place"] and [one["asks"][0] for one in step["exchanges"]].count("+") == 0


def test_a_test_that_fails_after_reading_has_the_widgets_of_its_end(recorded):
    trace = recorded(lambda app: app.window(name="showcase").widget("clickCount").text())
    (step,) = trace["steps"]
    assert '"clickCount"' in trace["trees"][step["widgets"]]


def test_a_dead_application_is_asked_nothing_more(recorded):
    def die(app):
        os.kill(app.pid, signal.SIGKILL)
        with pytest.raises(ApplicationEndedError):
            app.window(name="showcase").widget("brewButton").activate()

    trace = recorded(die)
    (step,) = trace["steps"]
    assert "the application ended" in step["error"] and step["widgets"] == "" and step["after"]
    assert step["exchanges"][-1]["reply"] is None and step["exchanges"][-1]["error"]
    assert trace["notes"] == []


def test_an_application_that_stops_answering_between_steps_costs_a_moment_and_keeps_its_message(recorded):
    """The recorder meets the silence first; the test gets the message that it would get without it."""
    stopped = []

    def stop_after_the_step(app):
        window = app.window(name="showcase")
        pressed = app.connection.activate_widget

        def press_and_stop(*arguments, **options):
            answer = pressed(*arguments, **options)
            os.kill(app.pid, signal.SIGSTOP)
            stopped.append(app.pid)
            return answer

        app.connection.activate_widget = press_and_stop
        window.widget("brewButton").activate()
        with pytest.raises(
            ApplicationHangsError,
            match=re.escape('no reply to window(name="showcase").widget("clickCount").text() within'),
        ):
            window.widget("clickCount").text()

    trace = recorded(stop_after_the_step)
    assert stopped and [step["widgets"] for step in trace["steps"]] == ["", ""]


def test_the_transcript_has_what_the_test_asked_and_nothing_else(recorded):
    seen = {}

    def read_the_transcript(app):
        before = len(app.connection.transcript.exchanges())
        order(app)
        seen["requests"] = [one.request for one in app.connection.transcript.exchanges()[before:]]
        seen["timeout"] = app.connection.timeout

    trace = recorded(read_the_transcript)
    in_steps = [one["request"] for step in trace["steps"] for one in step["exchanges"]]
    assert seen["requests"] == in_steps and not any(one.startswith("2,") for one in in_steps)
    assert seen["timeout"] == 3


def test_nothing_is_left_of_a_test_that_is_not_kept(recorded):
    folder = recorded(order, keep=False)
    assert not folder.exists() and not folder.parent.exists()


def test_without_screenshots_the_rest_is_recorded(recorded, tmp_path):
    trace = recorded(order, screenshots=False)
    assert [step["before"] + step["after"] for step in trace["steps"]] == ["", "", ""]
    assert trace["steps"][0]["widgets"] and trace["notes"] == []
    assert sorted(file.name for file in (tmp_path / "traces" / "one").iterdir()) == ["trace.js", "trace.json"]


def test_an_error_of_the_recorder_is_a_note_and_no_failure_of_the_test(recorded, monkeypatch):
    def broken(*_):
        raise RuntimeError("the screen is on fire")

    monkeypatch.setattr(module.SCREENS, "grab", broken)
    trace = recorded(order)
    assert len(trace["steps"]) == 3
    assert trace["notes"] == [
        "no picture before a step: the screen is on fire",
        "no picture after a step: the screen is on fire",
    ]


@pytest.mark.parametrize("time", ["once", "again"])
def test_a_display_that_does_not_answer_holds_up_one_step_and_no_other(recorded, monkeypatch, time):
    """The X server accepts the connection and then says nothing, as one does that a program has grabbed."""
    monkeypatch.setattr("qtdriver.desktop.screen_process.Pending.wait.__defaults__", (0.5,))
    with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as silent:
        silent.bind("\0/tmp/.X11-unix/X7777")
        silent.listen()
        trace = recorded(order, prepare=lambda app: setattr(app, "display", ":7777"))
    notes = [note for note in trace["notes"] if "picture" in note]
    assert notes == ["no picture before a step: the display :7777 has not answered within 0.5 seconds"]
    assert len(trace["steps"]) == 3


def test_a_picture_is_taken_by_another_process_while_the_test_goes_on(recorded):
    """The process does not take pictures before it goes on; a step whose picture has not come ends all the same."""
    stopped = []

    def stop_taking_pictures(app):
        label = app.window(name="showcase").widget("clickCount")
        label.text()
        process = module.SCREENS._process
        os.kill(process.pid, signal.SIGSTOP)
        stopped.append(process)
        try:
            label.text()
        finally:
            os.kill(process.pid, signal.SIGCONT)

    trace = recorded(stop_taking_pictures)
    assert stopped and len(trace["steps"]) == 2 and trace["steps"][1]["after"]


def test_a_display_that_is_not_there_is_noted_once(recorded):
    trace = recorded(order, prepare=lambda app: setattr(app, "display", ":4711"))
    (note,) = trace["notes"]
    assert note.startswith("no picture before a step: no picture of the display :4711")


def test_an_application_that_lists_slowly_is_asked_twice_and_then_no_more(recorded, monkeypatch):
    from qtdriver.trace import widgets

    monkeypatch.setattr(widgets, "SLOW_SECONDS", 0.0)
    trace = recorded(order)
    assert [bool(step["widgets"]) for step in trace["steps"]] == [True, False, False]
    (note,) = trace["notes"]
    assert "are no longer recorded" in note


def test_a_trace_ends_with_its_recorder(recorded):
    def go_on(app):
        app.window(name="showcase").title()
        app.listeners[0].close(keep=True)
        app.window(name="showcase").widget("brewButton").activate()

    assert len(recorded(go_on)["steps"]) == 1


def test_pictures_are_written_while_the_caller_goes_on(tmp_path):
    """They are there when it waits for them, and one that cannot be written is told then."""
    from qtdriver.desktop.screen_process import SCREENS, display_name

    def save(folder):
        store = SCREENS.new_store()
        picture = SCREENS.grab(display_name(None), store, 1_000_000)
        picture.wait()
        saved = SCREENS.save(store, folder, [picture], later=True).files
        SCREENS.forget(store)
        return saved[picture.number].name

    name = save(tmp_path)
    SCREENS.finish()
    with Image.open(tmp_path / name) as picture:
        picture.load()
    save(tmp_path / "nowhere")
    with pytest.raises(FileNotFoundError):
        SCREENS.finish()
    SCREENS.finish()


def noise(seed, size=(64, 64)):
    return Image.effect_noise(size, 100 + seed).convert("RGB")


def test_a_store_drops_its_oldest_pictures_beyond_the_limit(tmp_path):
    store = ScreenshotStore(kept_bytes=60_000)
    pictures = added(store, map(noise, range(40)))
    kept = store.save(tmp_path, pictures)
    assert 0 < store.dropped < 40 and len(kept) == 40 - store.dropped
    assert list(kept) == pictures[store.dropped :]


def test_only_the_latest_bands_of_a_store_are_not_compressed(tmp_path, monkeypatch):
    """Compressing takes most of the time of a picture, and those of a test that passes are never looked at."""
    monkeypatch.setattr(screenshots, "LOOSE_BYTES", 3 * 4 * 64 * 16 * 3)
    store = ScreenshotStore()
    images = [noise(number) for number in range(5)]
    pictures = added(store, images)
    states = [{band.is_compressed() for band in picture.bands} for picture in pictures]
    assert states == 2 * [{True}] + 3 * [{False}]
    for image, file in zip(images, store.save(tmp_path, pictures).values()):
        assert list(Image.open(tmp_path / file.name).convert("RGB").getdata()) == list(image.getdata())


@pytest.mark.parametrize("quickly", [False, True])
def test_pictures_come_back_as_they_were_without_their_common_border(tmp_path, quickly):
    one, other = (Image.new("RGB", (200, 150), "navy") for _ in range(2))
    one.paste("red", (50, 60, 70, 80))
    other.paste("white", (100, 40, 120, 100))
    store = ScreenshotStore()
    pictures = added(store, (one, other, one))
    files, unwritten = store.plan(tmp_path, pictures, quickly=quickly)
    assert list(tmp_path.iterdir()) == [] and len(unwritten) == 2
    strips = StripWriter()
    for file in unwritten:
        file.write(strips)
    assert files[pictures[0]] == files[pictures[2]] != files[pictures[1]]
    assert {file.place for file in files.values()} == {(38, 28, 94, 84)}
    for image, shown in ((one, pictures[0]), (other, pictures[1])):
        saved = Image.open(tmp_path / files[shown].name).convert("RGB")
        assert list(saved.getdata()) == list(image.crop((38, 28, 132, 112)).getdata())
