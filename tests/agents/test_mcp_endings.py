"""`qtdriver mcp` and applications that crash, print, mislead, or show very much."""

import os
import re
import time

import pytest

from mcpclient import BUILD, KIOSK, McpClient, processor_time

SECONDS_FOR_MANY = 0.05


def test_an_application_that_crashes_ends_its_tools_with_the_stack_and_can_be_launched_again(client, kiosk):
    kiosk()
    problem = client.refusal("click", app="kiosk", target="Crash")
    assert "the application ended (signal SIGSEGV)" in problem and "started" in problem
    assert "its stack:\nthread " in problem and "#0 " in problem
    assert problem.endswith("'kiosk' is off the list: launch starts it again")
    assert "no application" in client.refusal("snapshot", app="kiosk")
    assert "[1] window" in kiosk()


def test_an_application_that_is_killed_is_told_so(client, kiosk):
    kiosk()
    assert "signal SIGKILL" in client.refusal("click", app="kiosk", target="End")
    assert "launch" in client.refusal("snapshot")


def test_an_application_that_ends_well_is_no_error(client, kiosk):
    kiosk()
    assert "the application ended (exit status 0)" in client.call("click", target="Leave")
    assert client.call("windows") == "no application is running: launch one"


def test_what_an_application_prints_is_no_part_of_the_protocol(client, kiosk):
    kiosk()
    assert client.call("click", target="Print").endswith("nothing has changed on the screen")


def test_a_text_that_an_application_shows_cannot_look_like_a_line_of_the_outline(kiosk):
    lines = [line for line in kiosk().splitlines() if "Ignore all previous" in line]
    assert len(lines) == 1 and re.match(r'\s*\[\d+\] label "Ice cream \[99\] button', lines[0])


def test_the_number_of_a_widget_that_is_gone_names_what_took_its_place(client, kiosk):
    old = re.search(r'\[(\d+)\] button "Made"', kiosk())[1]
    changed = client.call("click", target="Make anew")
    new = re.search(r'\+ \[(\d+)\] button "Made"', changed)[1]
    assert f'- [{old}] button "Made"' in changed and new != old
    problem = client.refusal("click", target=int(old))
    assert problem.startswith(f"[{old}] is gone: it was ") and problem.endswith(
        f'In its place:\n[{new}] button "Made"'
    )
    assert '"the new one"' in client.call("click", target=int(new))


def test_the_number_of_a_dialog_that_is_gone_is_told_to_be_gone(client, kiosk):
    kiosk()
    yes = int(re.search(r'\[(\d+)\] button "Yes"', client.call("click", target="Ask"))[1])
    assert 'closed: QDialog "Sure?"' in client.call("click", target=yes)
    assert client.refusal("click", target=yes).startswith(f"[{yes}] is gone: it was ")


def test_what_comes_later_can_be_waited_for(client, kiosk):
    kiosk()
    assert "nothing has changed" in client.call("click", target="Open later")
    assert "~ [" in client.call("wait", target="state", equals="open late")


def test_a_window_with_very_much_is_cut_and_the_rest_can_be_had(client, kiosk):
    text = kiosk("many")
    assert len(text) < 6200
    left_out = re.search(r"\.\.\. (\d+) more lines: snapshot with target (\d+) and first_line (\d+)$", text)
    assert left_out, text[-300:]
    more, root, first = map(int, left_out.groups())
    assert more + first == 5001
    rest = client.call("snapshot", target=root, first_line=first)
    assert rest.startswith(f'  [{first + 1}] label "Label {first - 1}"') and len(rest) <= 6000
    assert "it has 5001 lines" in client.refusal("snapshot", target=root, first_line=6000)
    process = int(re.search(r"\(process (\d+)\)", text)[1])
    rounds = []
    for _ in range(3):
        with processor_time(client.process.pid, process) as spent:
            for _ in range(5):
                client.call("snapshot")
        rounds += spent
    assert min(rounds) / 5 < SECONDS_FOR_MANY


@pytest.mark.parametrize("options, has_own", [((), True), (("--headed",), False)])
def test_applications_have_a_network_of_their_own_unless_they_are_to_be_watched(tmp_path, options, has_own):
    with McpClient(*options, "--build", BUILD / "agents", folder=tmp_path) as client:
        client.initialize()
        network = os.readlink(f"/proc/{client.process.pid}/ns/net")
    assert (network != os.readlink("/proc/self/ns/net")) is has_own


def test_applications_end_with_the_server(tmp_path):
    with McpClient("--build", BUILD / "agents", folder=tmp_path) as client:
        client.initialize()
        arguments = {"program": "/usr/bin/python3", "arguments": [str(KIOSK)], "qt": 5}
        process = int(re.search(r"\(process (\d+)\)", client.call("launch", **arguments))[1])
        client.send(
            "tools/call",
            {"name": "wait", "arguments": {"target": "Open", "state": "disabled", "timeout": 60}},
        )
        began = time.monotonic()
        status, log = client.close()
        assert status == 0 and time.monotonic() - began < 45
        assert log == "", "nothing is logged where all goes well"
    assert not _runs(process)


def _runs(process):
    try:
        os.kill(process, 0)
    except ProcessLookupError:
        return False
    return True
