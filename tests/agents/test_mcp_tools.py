"""The tools of `qtdriver mcp` on the showcase: what a model is answered."""

import base64
import io
import json
import re
import time

import psutil
import pytest
from PIL import Image

from mcpclient import processor_time

PIN = "s3cret-77"


def page(client, name):
    """Shows a page of the showcase."""
    client.call("select", target="pages", value=name)


def ref_of(text, line):
    """The number of the widget on the line of an outline that has these words."""
    found = [re.search(r"\[(\d+)\]", one) for one in text.splitlines() if line in one]
    assert len(found) == 1, text
    return int(found[0][1])


def test_a_snapshot_is_an_outline_with_numbers(showcase):
    page(showcase, "Buttons")
    text = showcase.call("snapshot")
    assert re.match(r'\[\d+\] window "Roastery" #showcase\n  \[\d+\] menu bar', text)
    assert re.search(r'\n {8}\[\d+\] button "Refill water" #refillButton \(disabled\)\n', text)
    assert len(text) / 4 < 750


def test_a_snapshot_of_a_part_has_that_and_as_many_levels_as_are_wanted(showcase):
    page(showcase, "Buttons")
    group = ref_of(showcase.call("snapshot"), "#roastBox")
    text = showcase.call("snapshot", target=group)
    assert text.startswith(f'[{group}] group "Roast" #roastBox\n  ') and text.count("radio button") == 4
    assert showcase.call("snapshot", target=group, depth=0) == f'[{group}] group "Roast" #roastBox'


def test_a_click_answers_with_what_has_changed(showcase):
    page(showcase, "Buttons")
    showcase.call("click", target="brewButton")
    text = showcase.call("click", target="Brew a cup")
    first, *rest = text.splitlines()
    assert first.startswith("clicked [") and 'button "Brew a cup" #brewButton' in first
    assert len(rest) == 2 and all(line.startswith("~ [") for line in rest), text
    assert "clicked: brewButton" in rest[0] and "#clearJournalButton, before: " in rest[1]


def test_a_change_is_told_once(showcase):
    page(showcase, "Buttons")
    showcase.call("click", target="brewButton")
    assert showcase.call("snapshot", changes=True) == "nothing has changed since the last answer"


def test_an_item_that_is_only_in_another_state_is_told_apart_from_a_new_one(showcase):
    page(showcase, "Buttons")
    assert "\n    ~ Lists (selected)\n" in showcase.call("select", target="pages", value="Lists")


def test_numbers_stay_true_when_others_come_and_go(showcase):
    page(showcase, "Buttons")
    before = ref_of(showcase.call("find", text="brewButton"), "#brewButton")
    page(showcase, "Lists")
    page(showcase, "Buttons")
    assert ref_of(showcase.call("find", text="brewButton"), "#brewButton") == before


def test_a_widget_out_of_sight_is_told_with_what_hides_it(showcase):
    page(showcase, "Buttons")
    button = ref_of(showcase.call("find", text="brewButton"), "#brewButton")
    page(showcase, "Lists")
    problem = showcase.refusal("click", target=button)
    assert re.search(r'#brewButton.* is hidden at the moment, as all in \[\d+\] widget "Buttons"', problem)


def test_a_disabled_widget_is_told_with_what_disables_it(showcase):
    page(showcase, "Buttons")
    problem = showcase.refusal("click", target="courierButton")
    assert '"Call a courier" #courierButton (disabled)' in problem
    assert re.search(r'it is in \[\d+\] group "Deliver to the door"', problem)


def test_what_is_not_there_is_told_with_the_nearest(showcase):
    page(showcase, "Buttons")
    problem = showcase.refusal("click", target="Brew a cupp")
    assert problem.startswith("nothing in MainWindow \"Roastery\" shows 'Brew a cupp'. The nearest:\n[")
    assert '"Brew a cup" #brewButton' in problem
    assert (
        showcase.refusal("click", target=99999)
        == "there is no widget [99999]: take a snapshot, which has the numbers"
    )


def test_a_text_that_several_show_is_refused_with_their_numbers(showcase):
    page(showcase, "Buttons")
    problem = showcase.refusal("click", target="Milk")
    assert (
        problem.startswith("2 widgets have 'Milk'; say which one by its number:") and problem.count("[") == 2
    )


def test_a_menu_opens_a_dialog_which_is_shown_and_is_in_front(showcase):
    page(showcase, "Buttons")
    text = showcase.call("click", menu="Order/New order...")
    assert re.search(
        r'\nopened, modal: \[\d+\] dialog "New order" #orderDialog\n  \[\d+\] edit "Customer:"', text
    )
    assert "(modal, in front)" in showcase.call("windows")
    behind = showcase.refusal("click", target=ref_of(showcase.call("find", text="brewButton"), "#brewButton"))
    assert 'the modal dialog "New order" (OrderDialog) is open in front of it: answer it first' in behind
    assert 'closed: OrderDialog "New order"' in showcase.call("press", keys=["Escape"])


def test_a_menu_that_is_not_there_is_told_with_the_entries(showcase):
    assert "New order" in showcase.refusal("click", menu="Order/New ordre...")


def test_find_looks_for_a_part_of_any_text(showcase):
    page(showcase, "Lists")
    assert '"Roastery" #showcase' in showcase.call("find", text="roastERY", role="window")
    assert "\n  - " in showcase.call("find", text="cinnamon", role="list")
    problem = showcase.refusal("find", text="absinthe", role="list")
    assert problem.startswith("nothing in sight has 'absinthe' of the role 'list'; there are button, ")


def test_text_is_replaced_or_typed_at_the_caret(showcase):
    page(showcase, "Entry fields")
    showcase.call("type", target="Name:", text="Ada")
    assert "'AdaB'" in showcase.call("type", text="B")
    assert "'AdaBC'" in showcase.call("type", target="Name:", text="C", replace=False)
    assert "'Grace'" in showcase.call("type", target="customerEdit", text="Grace", enter=True)


@pytest.mark.parametrize(
    "target, value, property",
    [
        ("Bean:", "Robusta", "currentText: 'Robusta'"),
        ("Cups:", 3, "value: 3"),
        ("Weight:", "2.5", "value: '2.5'"),
        ("Strength:", 7, "value: 7"),
        ("roastedEdit", "2024-05-01", "text: '2024-05-01'"),
    ],
)
def test_values_are_chosen_as_the_widget_takes_them(showcase, target, value, property):
    page(showcase, "Entry fields")
    showcase.call("select", target=target, value=value)
    assert property in showcase.call("read", target=target, check=False)


def test_check_boxes_are_set(showcase):
    page(showcase, "Buttons")
    for state in (True, True, False):
        showcase.call("select", target="milkCheck", value=state)
        assert f"checked: {state}" in showcase.call("read", target="milkCheck", check=False)
    assert showcase.refusal("select", target="milkCheck", value="on") == "a checkbox is set to true or false"


def test_items_are_chosen_clicked_and_read(showcase):
    page(showcase, "Lists")
    text = showcase.call("read", target="extrasList", items=True, check=False)
    items = re.findall(r"^- (.*)$", text, re.MULTILINE)
    assert len(items) > 3 and f"has {len(items)} items" in text
    assert "(selected" in showcase.call("click", target="extrasList", item=items[2])
    showcase.call("select", target="extrasList", value=items[1])
    assert items[0] in showcase.refusal("select", target="extrasList", value=items[0] + "x")


def test_several_items_are_chosen_together(showcase):
    page(showcase, "Lists")
    showcase.call("select", target="extrasList", value=["Honey", "Nutmeg"])
    lines = showcase.call("snapshot", target="extrasList").splitlines()
    assert [line.split()[1] for line in lines if "selected" in line] == ["Honey", "Nutmeg"]


def test_an_entry_of_a_context_menu_is_chosen_or_the_menu_opened_and_looked_at(showcase):
    page(showcase, "Lists")
    told = showcase.call("click", target="extrasList", menu="Check all", button="right")
    assert told.startswith("chose 'Check all' from the menu of [") and "~ Vanilla (checked)" in told
    opened = showcase.call("click", target="extrasList", button="right")
    assert "opened: [" in opened and "- Uncheck all\n" in opened and "- Order more (disabled)" in opened
    told = showcase.call("click", menu="Uncheck all")
    assert "~ Vanilla\n" in told and "checked" not in told


CLICKS = [
    ({"at": [0.15, 0.55]}, "single left at 1, 5"),
    ({"button": "right", "at": [0.85, 0.25]}, "single right at 8, 2"),
    ({"button": "middle", "modifier": "alt"}, "single middle alt at"),
    ({"double": True, "modifier": "control"}, "double left control at"),
    ({"modifier": "shift"}, "single left shift at"),
]


def test_a_click_has_the_button_the_key_and_the_place_that_are_named(kiosk, client):
    kiosk()
    for arguments, shown in CLICKS:
        assert f'label "{shown}' in client.call("click", app="kiosk", target="pad", **arguments)


def test_a_cell_is_named_by_its_row_and_column(showcase):
    page(showcase, "Tables")
    text = showcase.call("click", target="priceTable", cell=[2, 3])
    assert "clicked [2, 3] of [" in text and "#priceTable" in text


def test_properties_are_read_by_name_and_their_names_can_be_had(showcase):
    page(showcase, "Buttons")
    text = showcase.call("read", target="brewButton", properties=["enabled", "text"], check=False)
    assert text.splitlines()[1:] == ["enabled: True", "text: 'Brew a cup'"]
    assert "objectName" in showcase.call("read", target="brewButton", properties=["*"])
    assert "nonsense" in showcase.refusal("read", target="brewButton", properties=["nonsense"])


def test_a_password_is_in_no_answer(showcase):
    page(showcase, "Entry fields")
    showcase.call("type", target="Member PIN:", text=PIN)
    texts = [
        showcase.call("snapshot", whole_texts=True),
        showcase.call("read", target="Member PIN:"),
        showcase.call("read", target="Member PIN:", properties=["text", "displayText"]),
        showcase.call("find", text="PIN"),
        showcase.refusal("click", target=PIN),
    ]
    assert all("***" in text for text in texts)
    assert PIN not in "".join(texts)


def test_wait_tells_what_was_there_instead(showcase):
    page(showcase, "Entry fields")
    showcase.call("type", target="Name:", text="Ada")
    assert "it is so" in showcase.call("wait", target="orderSummary", contains="Ada")
    problem = showcase.refusal("wait", target="orderSummary", equals="Order for Bob", timeout=0.2)
    assert "Order for Ada" in problem and "Order for Bob" in problem
    problem = showcase.refusal("wait", window="Nowhere", state="open", timeout=0.2)
    assert re.search(r'open are:\n\[\d+\] MainWindow "Roastery" \(in front\)', problem)
    assert "it is so" in showcase.call("wait", window="Roastery", state="open")
    assert "it is so" in showcase.call("wait", window="No such window", state="closed")
    assert "it is so" in showcase.call("wait", text="Customer", timeout=1)
    assert "say what to wait for" in showcase.refusal("wait", target="orderSummary")


def test_a_wait_tells_how_far_it_is_and_can_be_cancelled(showcase):
    page(showcase, "Buttons")
    waiting = {"target": "brewButton", "state": "disabled", "timeout": 60}
    params = {"name": "wait", "arguments": waiting, "_meta": {"progressToken": "t"}}
    began = time.monotonic()
    number = showcase.send("tools/call", params)
    told = showcase.read()
    assert told["method"] == "notifications/progress" and told["params"]["progressToken"] == "t"
    assert told["params"]["progress"] >= 1 and "waiting for" in told["params"]["message"]
    ping = showcase.send("ping")
    assert showcase.response(ping)["result"] == {}, "it is answered while the tool runs"
    showcase.notify("notifications/cancelled", requestId=number)
    assert "Roastery" in showcase.call("windows"), "the next response is not that of the cancelled request"
    assert time.monotonic() - began < 45


def test_an_id_that_is_still_worked_on_is_refused(showcase):
    page(showcase, "Buttons")
    waiting = {"target": "brewButton", "state": "disabled", "timeout": 60}
    number = showcase.send("tools/call", {"name": "wait", "arguments": waiting})
    showcase.send("ping", number=number)
    assert showcase.read()["error"]["code"] == -32600
    showcase.notify("notifications/cancelled", requestId=number)


def test_a_picture_is_an_image_in_which_points_are_widgets(showcase):
    page(showcase, "Buttons")
    result = showcase.result("screenshot", width=400)
    text, image = result["content"]
    assert image["mimeType"] == "image/png"
    picture = Image.open(io.BytesIO(base64.b64decode(image["data"])))
    assert picture.size[0] == 400 and f"{picture.size[0]} x {picture.size[1]} pixels" in text["text"]
    assert 'button "Brew a cup"' in pick_everywhere(showcase, picture.size)
    assert "no window of the application is at" in showcase.refusal("pick", x=9000, y=9000)


def pick_everywhere(client, size):
    """The widgets at points all over the picture."""
    points = [(x, y) for x in range(2, size[0], 40) for y in range(2, size[1], 12)]
    return "\n".join(client.call("pick", x=x, y=y).splitlines()[0] for x, y in points)


def test_a_picture_of_a_widget_has_its_size_and_its_points(showcase):
    page(showcase, "Buttons")
    result = showcase.result("screenshot", target="brewButton")
    picture = Image.open(io.BytesIO(base64.b64decode(result["content"][1]["data"])))
    assert picture.size[0] < 300 and picture.size[1] < 100
    assert 'button "Brew a cup"' in showcase.call("pick", x=picture.size[0] / 2, y=picture.size[1] / 2)


def test_a_picture_of_the_whole_screen_has_its_shape(showcase):
    text, image = showcase.result("screenshot", screen=True, width=640)["content"]
    picture = Image.open(io.BytesIO(base64.b64decode(image["data"])))
    assert picture.size == (640, 512) and "the whole screen, 640 x 512 pixels" in text["text"]


def test_nothing_but_the_runner_listens_for_the_applications_that_it_starts(showcase):
    process = psutil.Process(showcase.process.pid)
    listening = [one.laddr for one in process.connections("inet") if one.status == psutil.CONN_LISTEN]
    assert listening == [("127.0.0.1", 4242)]


def test_a_second_application_has_a_name_of_its_own(showcase, kiosk):
    assert "running as 'kiosk'" in kiosk()
    assert showcase.refusal("snapshot") == "say which application by 'app': app, kiosk"
    assert "Kiosk" in showcase.call("snapshot", app="kiosk") and "Roastery" in showcase.call(
        "snapshot", app="app"
    )
    assert "is running already" in showcase.refusal("launch", program="true", app="kiosk")


def test_a_click_with_what_changes_takes_less_than_60_milliseconds(showcase):
    page(showcase, "Buttons")
    button = ref_of(showcase.call("find", text="brewButton"), "#brewButton")
    process = int(re.search(r"\(process (\d+)\)", showcase.launched)[1])
    with processor_time(showcase.process.pid, process) as spent:
        for _ in range(10):
            showcase.call("click", target=button)
    assert spent[0] / 10 < 0.06


def test_every_message_is_one_line_of_ascii(showcase):
    showcase.send("tools/call", {"name": "find", "arguments": {"text": "\u2028€"}})
    line = showcase.process.stdout.readline()
    assert line.isascii() and "€" in json.loads(line)["result"]["content"][0]["text"]
