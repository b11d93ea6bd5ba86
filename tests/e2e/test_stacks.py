"""Where an application crashed or hangs: its stack, and the call of its own that messages name."""

import os
import re
import shutil
import stat
import subprocess

import pytest

from qtdriver import ApplicationEndedError, ApplicationHangsError, Driver
from qtdriver.crashes import cores
from qtdriver.crashes import stacks as module
from qtdriver.crashes.stacks import Frame, Stacks, Thread, stacks_of_process
from qtdriver.plugin.bundle import write_bundle

PROGRAM = r"""
#include <arpa/inet.h>
#include <pthread.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

static void *keep_warm(void *unused) { for (;;) pause(); return unused; }
static void spill_coffee(volatile int *cup) { *cup = 1; }
static void grind_for_ever(void) { for (;;) pause(); }

int main(int count, char **words)
{
    char line[200];
    pthread_t thread;
    struct sockaddr_in place = {.sin_family = AF_INET, .sin_port = htons(4242), .sin_addr.s_addr = htonl(INADDR_LOOPBACK)};
    int agent = socket(AF_INET, SOCK_STREAM, 0);
    pthread_create(&thread, NULL, keep_warm, NULL);
    connect(agent, (struct sockaddr *)&place, sizeof place);
    snprintf(line, sizeof line, "+client+ 2.1.0 %d -1 fake\n", getpid());
    write(agent, line, strlen(line));
    read(agent, line, sizeof line);
    if (count > 1)
        grind_for_ever();
    spill_coffee(NULL);
}
"""


@pytest.fixture(scope="module")
def program(tmp_path_factory):
    """A program whose agent crashes at the first request, or hangs with any argument."""
    folder = tmp_path_factory.mktemp("program")
    source = folder / "coffee.c"
    source.write_text(PROGRAM)
    command = ["gcc", "-g", "-O0", "-o", folder / "coffee", source, "-lpthread"]
    subprocess.run(command, check=True)
    return folder / "coffee"


@pytest.fixture
def launched(program, build, tmp_path):
    """Starts the program in a folder of its own."""
    folder, pattern = tmp_path / "work", cores._PATTERN.read_text()
    folder.mkdir()
    with Driver(qt=5, build=build, timeout=1, request_timeout=1) as driver:
        yield lambda *words: driver.launch(program, *words, working_directory=folder)
    assert list(folder.iterdir()) == [], "the core file is gone"
    assert cores._PATTERN.read_text() == pattern, "core files of other programs go where they went before"


def kept(app, tmp_path):
    """The stacks in the bundle of the application."""
    notes = write_bundle([app], [], tmp_path, 0.0)
    return (tmp_path / "stack.txt").read_text(), notes


def test_a_crash_names_the_call_of_the_application_and_keeps_the_stacks_of_all_threads(launched, tmp_path):
    app = launched()
    with pytest.raises(
        ApplicationEndedError, match=r"\(signal SIGSEGV\) at .*, in spill_coffee at .*coffee\.c:9"
    ):
        app.windows()
    text, _ = kept(app, tmp_path)
    first, second = re.split(r"^thread ", text, flags=re.MULTILINE)[1:]
    assert re.search(r"^  #0   spill_coffee at \S+/coffee.c:9$", first, re.MULTILINE)
    assert re.search(r"^  #1   main at ", first, re.MULTILINE) and "keep_warm" in second


def test_a_hang_names_the_call_of_the_application_and_keeps_its_stack(launched, tmp_path):
    app = launched("hang")
    with pytest.raises(
        ApplicationHangsError, match=r"the application hangs in grind_for_ever at .*coffee\.c:10, and"
    ):
        app.windows()
    text, _ = kept(app, tmp_path)
    assert text.index("grind_for_ever") < text.index("keep_warm"), "the main thread comes first"


def test_an_application_that_ends_orderly_has_no_stack(launched, tmp_path):
    app = launched("hang")
    app.terminate()
    write_bundle([app], [], tmp_path, 0.0)
    assert app.stacks() is None and not (tmp_path / "stack.txt").exists()


EU_STACK = """#!/bin/sh
test "$1 $2 $3 $4" = "-m -s -p $WANTED" || exit 1
cat <<'END'
PID {0} - process
TID 77:
#0  0x00007f14818f3df2 pause - /usr/lib/x86_64-linux-gnu/libc.so.6
    ../sysdeps/unix/sysv/linux/pause.c:29:10
TID {0}:
#0  0x00007f14818f3df2 - 1 QWidget::show() - /usr/lib/x86_64-linux-gnu/libQt5Widgets.so.5
#1  0x000055f54279c1c7 - 1 Order::brew(QString const&, int) - /home/me/coffee
    /home/me/order.cpp:12:3
#2  0x000055f54279c1c7
END
"""


def test_without_gdb_elfutils_tells_the_stack(tmp_path, monkeypatch):
    tool = tmp_path / "eu-stack"
    tool.write_text(EU_STACK.replace("{0}", "99999999"))
    tool.chmod(tool.stat().st_mode | stat.S_IXUSR)
    for name in ("sh", "cat", "test"):
        (tmp_path / name).symlink_to(shutil.which(name))
    monkeypatch.setenv("PATH", str(tmp_path))
    monkeypatch.setenv("WANTED", "99999999")
    found = stacks_of_process(99999999)
    assert [thread.number for thread in found.threads] == [99999999, 77]
    assert found.own_frame() == Frame(
        "Order::brew(QString const&, int)", "/home/me/order.cpp:12", "/home/me/coffee"
    )
    assert found.threads[0].frames[2].function == "??"


def test_the_calls_of_an_interpreter_are_not_the_applications_own():
    with subprocess.Popen(["/usr/bin/python3", "-c", "import time; time.sleep(600)"]) as process:
        try:
            found = stacks_of_process(process.pid)
        finally:
            process.kill()
    assert found.threads and found.own_frame() is None


@pytest.mark.parametrize("name, is_own", [("shotcut", True), ("python3.11-dbg", False), ("sh", False)])
def test_a_program_whose_name_only_begins_like_an_interpreters_has_calls_of_its_own(name, is_own):
    call = Frame("brew()", "coffee.cpp:12", "")
    found = Stacks((Thread(1, "", (call,)),), program=f"/opt/{name}")
    assert found.own_frame() == (call if is_own else None)


def test_without_either_the_bundle_says_what_is_needed(launched, tmp_path, monkeypatch):
    app = launched()
    monkeypatch.setattr(module.shutil, "which", lambda name: None)
    with pytest.raises(ApplicationEndedError):
        app.windows()
    notes = write_bundle([app], [], tmp_path, 0.0)
    assert "reading the stack needs gdb, or eu-stack of elfutils, which are not installed" in notes


@pytest.mark.parametrize(
    "library, own",
    [
        ("", True),
        ("/home/me/build/libcoffee.so.1", True),
        ("/usr/lib/x86_64-linux-gnu/libc.so.6", False),
        ("/opt/qt/lib/libQt5Core.so.5", False),
        ("/home/me/build/lib/libqtdriver.so", False),
        ("libc.so.6", False),
    ],
)
def test_what_is_the_applications_own(library, own):
    assert Frame("f", "", library).is_own() is own


@pytest.mark.parametrize(
    "pattern, problem, remedy",
    [
        ("core", "", ""),
        ("/var/cores/core.%p", "", ""),
        (
            "|/usr/share/apport/apport %p",
            "the system hands core files to a program",
            "sysctl kernel.core_pattern=core",
        ),
        (
            "|/usr/lib/systemd/systemd-coredump %P",
            "only coredumpctl finds them",
            "apt install systemd-coredump",
        ),
    ],
)
def test_the_doctor_knows_where_the_system_puts_core_files(monkeypatch, tmp_path, pattern, problem, remedy):
    (tmp_path / "pattern").write_text(pattern)
    monkeypatch.setattr(cores, "_PATTERN", tmp_path / "pattern")
    monkeypatch.setattr(cores.shutil, "which", lambda name: None)
    found = cores.core_problem()
    assert problem in found[0] and found[1] == remedy and bool(found[0]) is bool(problem)


@pytest.mark.parametrize("pattern", ["core", "core.%e.%p", "%p/../core-%t"])
def test_the_core_file_is_where_the_pattern_of_the_system_says(monkeypatch, tmp_path, pattern):
    (tmp_path / "pattern").write_text(pattern)
    monkeypatch.setattr(cores, "_PATTERN", tmp_path / "pattern")
    monkeypatch.setattr(cores, "_WITH_PID", tmp_path / "absent")
    core = cores.CoreFile(os.getpid(), is_ours=True)
    monkeypatch.setattr(core, "_folder", str(tmp_path))
    names = {"core": "core", "core.%e.%p": f"core.python3.{os.getpid()}", "%p/../core-%t": "core-1700000000"}
    (tmp_path / str(os.getpid())).mkdir()
    file = tmp_path / names[pattern]
    assert core._in_folder() is None
    file.touch()
    assert core._in_folder().resolve() == file
    core.discard()
    assert not file.exists()
