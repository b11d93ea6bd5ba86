"""Who may do what to whom: the page that tells it, and those of its sentences that have no test elsewhere."""

import re
import socket
import stat
import subprocess
from pathlib import Path

import pytest
from PIL import Image
from Xlib import X, display

from qtdriver import Desktop, Driver, PortInUseError, Server, agent_library, eventually, preload_environment
from qtdriver.desktop.desktop import SCRIPT
from qtdriver.protocol.tcptable import LISTENING, tcp_sockets

from showcase import AGENTS, PROGRAM, QT, running

ROOT = Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs" / "security.md"
SENTENCE = re.compile(r"- .*[.] `(tests/\w+/\w+[.]py)::(test_\w+)`")


@pytest.fixture
def desktop():
    """A desktop without a screen."""
    running_desktop = Desktop()
    yield running_desktop
    running_desktop.close()


@pytest.fixture
def app(build, fake_agent):
    """An application on the desktop of this test."""
    with Driver(qt=5, build=build) as driver:
        yield driver.launch(*fake_agent)


def test_each_sentence_of_the_page_has_a_test():
    lines = [line for line in PAGE.read_text().splitlines()[3:] if line and not line.startswith("#")]
    assert len(lines) > 30
    for line in lines:
        named = SENTENCE.fullmatch(line)
        assert named, line
        file, test = named.groups()
        assert re.search(rf"^def {test}\(", (ROOT / file).read_text(), re.MULTILINE), line


def test_the_port_is_open_at_one_address_of_this_machine_only(server):
    (listening,) = [end for end in tcp_sockets() if end.state == LISTENING and end.local[1] == server.port]
    assert listening.local == ("127.0.0.1", 4242)
    with pytest.raises(ConnectionRefusedError):
        socket.create_connection(("127.0.0.2", server.port))


def test_an_agent_serves_whoever_listens():
    environment = preload_environment(agent_library(QT, AGENTS))
    with socket.create_server(("127.0.0.1", 4242)) as anybody:
        anybody.settimeout(60)
        with subprocess.Popen([PROGRAM], env=environment) as application:
            with anybody.accept()[0] as agent, agent.makefile("rwb") as lines:
                assert lines.readline().startswith(b"+client+ ")
                lines.write(b"99\n")
                lines.flush()
                assert lines.readline() == b"8,Command not found\n"
            application.terminate()


def test_no_application_is_started_while_somebody_else_has_the_port(build, tmp_path):
    note = tmp_path / "started"
    with Server(), pytest.raises(PortInUseError):
        with Driver(qt=5, build=build) as driver:
            driver.launch("/bin/touch", str(note))
    assert not note.exists()


def test_a_desktop_without_a_screen_is_for_its_user_alone(desktop):
    connection = display.Display(desktop.environment["DISPLAY"])
    try:
        listed = connection.list_hosts()
        own_id = subprocess.check_output(["id", "-u"], text=True).strip()
        assert listed.mode == 1, "who is not on the list is refused"
        assert [(host.family, bytes(host.name)) for host in listed.hosts] == [
            (5, f"localuser\0#{own_id}".encode())
        ]
    finally:
        connection.close()
    port = 6000 + int(desktop.environment["DISPLAY"].lstrip(":"))
    assert port not in [end.local[1] for end in tcp_sockets() if end.state == LISTENING]


def test_who_has_neither_the_user_nor_the_secret_does_not_get_in(desktop):
    """As any other user: the list of the desktop has none any more."""
    name = desktop.environment["DISPLAY"]
    connection = display.Display(name)
    try:
        (host,) = connection.list_hosts().hosts
        connection.change_hosts(X.HostDelete, host.family, host.name)
        connection.sync()
        asked = subprocess.run(
            ["xdotool", "getmouselocation"],
            env={"DISPLAY": name},
            capture_output=True,
            text=True,
            check=False,
        )
        assert asked.returncode != 0 and "Authorization required" in asked.stderr
    finally:
        connection.change_hosts(X.HostInsert, host.family, host.name)
        connection.sync()
        connection.close()


def test_the_files_of_a_desktop_are_for_its_user_alone():
    looking = 'stat -c "%a %F" "$XDG_RUNTIME_DIR" "$XDG_RUNTIME_DIR/Xauthority"'
    done = subprocess.run([SCRIPT, "sh", "-c", looking], capture_output=True, text=True, check=True)
    assert done.stdout == "700 directory\n600 regular file\n"


def test_the_mouse_of_a_test_is_that_of_the_screen():
    def place():
        told = subprocess.check_output(["xdotool", "getmouselocation", "--shell"], text=True)
        return tuple(int(re.search(rf"^{axis}=(\d+)", told, re.MULTILINE)[1]) for axis in "XY")

    with running() as (_, app):
        button = app.window(name="showcase").widget("brewButton")
        button.hover()
        edges = button.rect()
        x, y = place()
        assert edges.left <= x <= edges.right and edges.top <= y <= edges.bottom


def test_a_screenshot_has_the_windows_of_other_programs(app, tmp_path):
    connection = display.Display()
    screen = connection.screen()
    window = screen.root.create_window(
        20, 20, 100, 100, 0, screen.root_depth, background_pixel=0x12AB34, override_redirect=True
    )
    window.map()
    connection.sync()
    try:

        def colour():
            with Image.open(app.screenshot(tmp_path / "shot.png")) as image:
                return image.convert("RGB").getpixel((70, 70))

        eventually(colour).equals((0x12, 0xAB, 0x34))
    finally:
        connection.close()


def test_the_clipboard_is_that_of_all_programs_of_the_screen(app):
    subprocess.run(["xclip", "-selection", "clipboard"], input="of another program", text=True, check=True)
    # xclip goes on in the background, and may not have offered the text yet.
    eventually(app.clipboard).equals("of another program")
