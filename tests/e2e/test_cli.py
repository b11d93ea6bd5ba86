"""The command line as a user runs it: as a process of its own, against the fake agent."""

import json
import os
import pty
import re
import signal
import subprocess
from pathlib import Path

import pytest

from qtdriver import Server
from qtdriver.commandline.arguments import parse_arguments
from qtdriver.commandline.outcome import EXIT_STATUSES
from qtdriver.commandline.versions import VERSION, describe_versions

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")


@pytest.fixture
def run(build, fake_agent):
    """Runs `qtdriver run` for Qt 5 with requests from a pipe; answers the finished process."""

    def call(requests="", *options, application=fake_agent, qt=("--qt", "5")):
        command = [
            QTDRIVER,
            "run",
            *qt,
            "--build",
            str(build),
            "--timeout",
            "10",
            *options,
            "--",
            *application,
        ]
        return subprocess.run(command, input=requests, capture_output=True, text=True, timeout=60)

    return call


def one_message(finished):
    """The single line on standard error of a run that failed."""
    assert finished.returncode == 1
    assert "Traceback" not in finished.stderr
    assert finished.stderr.startswith("qtdriver: ")
    return finished.stderr


def test_messages_name_the_options_of_the_command_line(run):
    assert "name the Qt version with --qt N" in one_message(run(application=["/bin/true"], qt=()))
    assert "another build folder with --build DIR" in one_message(run(qt=("--qt", "6")))


def test_without_a_screen_the_agent_is_loaded_as_was_asked_for(run):
    message = one_message(run("", "--headless", "--load-by", "testability"))
    assert "qt5/lib/libqttestability.so" in message


def test_replies_are_printed_in_readable_form(run):
    requests = ["1", "2,Bare", "3", "7,Editor,ok,,enabled,", "7,Editor,ok,,text,", "7,Editor,ok,,geometry,"]
    finished = run("\n".join([*requests, "7,Editor,ok,,icon,", "2,None", "8,typed", "8,two lines"]))
    assert finished.stdout.splitlines() == [
        "> 1",
        'QMainWindow : "Editor"',
        'QDialog (M) : "Save"',
        "> 2,Bare",
        "(empty list)",
        "> 3",
        "class: QPushButton",
        "same name: 2, visible 1",
        "path: main/a,b/ok",
        "window name: main",
        "window: Editor",
        "> 7,Editor,ok,,enabled,",
        "true",
        "> 7,Editor,ok,,text,",
        "ä€",
        "> 7,Editor,ok,,geometry,",
        "rectangle: left 10, top 20, right 39, bottom 59 (30 x 40 pixels)",
        "> 7,Editor,ok,,icon,",
        "picture: 2 x 1 pixels, 1 colours, 58 bytes of XPM",
        "> 2,None",
        "error 2: Window (None) not found",
        "> 8,typed",
        "b:true",
        "> 8,two lines",
        "first",
        "second",
    ]
    assert (finished.returncode, finished.stderr) == (0, "")


def test_a_script_skips_comments_and_blank_lines_and_ends_at_quit(run, tmp_path):
    script = tmp_path / "requests"
    script.write_text("# comment\n\n  \n5,Main,dlg/ok,,=b:true,\nquit\n1\n")
    finished = run("13\n", "--script", str(script))
    assert finished.stdout == "> 5,Main,dlg/ok,,=b:true,\n5,Main,dlg/ok,,623a74727565,\n"
    assert finished.returncode == 0


def test_help_in_the_dialogue_lists_all_commands_with_their_sections(run):
    output = run("help\n").stdout
    assert "4,window,path " in output
    assert "5,window,path,class,[value],[option]  " in output
    assert "12,ignored,name" in output


def test_a_line_that_cannot_be_sent_is_reported_and_the_next_one_is_run(run):
    finished = run("8,€\n1\n")
    assert "not sent" in one_message(finished) and "U+20AC" in finished.stderr
    assert 'QMainWindow : "Editor"' in finished.stdout


def test_a_command_with_wrong_arguments_is_reported_and_the_next_one_is_run(run):
    finished = run("get\n1\n")
    assert "not sent: the following arguments are required: WINDOW, PATH\nusage: get" in one_message(finished)
    assert 'QMainWindow : "Editor"' in finished.stdout


def test_a_file_that_cannot_be_written_is_reported_and_the_next_line_is_run(run):
    finished = run("screenshot /proc/x.png\n1\n")
    assert "screenshot: [Errno 2] No such file or directory" in finished.stdout
    assert 'QMainWindow : "Editor"' in finished.stdout
    assert (finished.returncode, finished.stderr) == (0, "")


def test_the_application_gets_the_environment_of_the_user(run):
    finished = run("8,env:PYTHONPATH\n8,env:HOME\n")
    assert finished.stdout.splitlines() == [
        "> 8,env:PYTHONPATH",
        "",
        "> 8,env:HOME",
        os.environ.get("HOME", ""),
    ]


def test_an_application_that_ends_well_after_its_last_reply_is_a_success(run):
    finished = run("8,quit\n")
    assert finished.returncode == 0
    assert finished.stdout.startswith("> 8,quit\nbye\n")


def test_an_application_that_ends_before_the_requests_do_is_a_failure(run):
    message = one_message(run("8,quit\n1\n"))
    assert message == "qtdriver: the application ended (exit status 0) with a request unanswered\n"


def test_an_application_that_ends_during_a_request_is_reported_with_its_last_output(run, fake_agent):
    message = one_message(run("8,vanish\n", application=[*fake_agent, "--status", "7", "--print", "oh no"]))
    assert "ended (exit status 7) with a request unanswered" in message
    assert message.endswith("its last output:\noh no\n")


def test_a_request_that_is_not_answered_in_time_is_reported(run):
    finished = run("8,slow\n", "--timeout", "2")
    assert "no reply to '8,slow' within 2 seconds" in one_message(finished)


def test_a_taken_port_is_reported(run):
    with Server():
        assert "127.0.0.1:4242 is taken" in one_message(run())


def test_an_early_exit_is_reported(run):
    message = one_message(run(application=["/bin/sh", "-c", "echo no display >&2; exit 3"]))
    assert "exit status 3" in message and message.endswith("no display\n")


def test_a_missing_greeting_is_reported(run):
    message = one_message(run("", "--timeout", "0.3", application=["/bin/sleep", "100"]))
    assert "within 0.3 seconds" in message and "--timeout" in message


@pytest.mark.parametrize(
    "application, part",
    [
        ("no-such-program-anywhere", "no such program in PATH"),
        ("./no/such/file", "no such file"),
        ("/etc/passwd", "not an executable file"),
        ("/bin/true", "links no Qt"),
        (QTDRIVER, "is a script"),
    ],
)
def test_a_program_that_cannot_be_driven_is_reported(run, application, part):
    assert part in one_message(run(application=[application], qt=()))


def test_a_qt_without_an_agent_is_reported_with_the_command_that_builds_it(run, fake_agent):
    assert "scripts/build.sh 6" in one_message(run(qt=("--qt", "6")))


def test_a_missing_script_and_one_that_is_no_text_are_reported(run, tmp_path):
    assert "cannot read the script" in one_message(run("", "--script", str(tmp_path / "missing")))
    (tmp_path / "binary").write_bytes(b"\xff\xfe")
    assert "not UTF-8" in one_message(run("", "--script", str(tmp_path / "binary")))


@pytest.mark.parametrize(
    "arguments", [["--"], ["run"], ["run", "--qt", "3", "--", "x"], ["run", "--timeout", "-1", "x"]]
)
def test_a_wrong_command_line_shows_the_usage(arguments):
    finished = subprocess.run([QTDRIVER, *arguments], capture_output=True, text=True)
    assert finished.returncode == 2
    assert finished.stderr.startswith("qtdriver: ") and "\nusage: qtdriver" in finished.stderr


def test_without_a_word_the_first_five_commands_are_told():
    finished = subprocess.run([QTDRIVER], capture_output=True, text=True)
    assert (finished.returncode, finished.stderr) == (0, "")
    told = re.findall(r"^  qtdriver (\w+)", finished.stdout, re.MULTILINE)
    assert told == ["doctor", "run", "tree", "activate", "stop"]


def test_the_version_names_the_agents_that_are_there(build):
    finished = subprocess.run([QTDRIVER, "--version"], capture_output=True, text=True)
    assert (finished.returncode, finished.stdout.splitlines()[0]) == (0, f"qtdriver {VERSION}")
    agent = build / "qt5" / "lib" / "libqtdriver-preload.so"
    assert describe_versions(build).splitlines() == [f"qtdriver {VERSION}", f"agent for Qt 5: {agent}"]
    assert describe_versions(build / "none").splitlines() == [f"qtdriver {VERSION}", "no agent is built"]


def test_a_wrong_command_line_is_told_in_json_to_who_asks_for_it():
    finished = subprocess.run([QTDRIVER, "get", "--json"], capture_output=True, text=True)
    failure = json.loads(finished.stdout)
    assert (finished.returncode, finished.stderr) == (2, "")
    assert (failure["error"], failure["code"]) == ("UsageError", None)
    assert failure["message"].startswith("the following arguments are required: WINDOW, PATH")


def test_the_documentation_tells_every_exit_status():
    text = (Path(QTDRIVER).parents[1] / "docs" / "commandline.md").read_text()
    assert [int(row) for row in re.findall(r"^\| (\d+) \|", text, re.MULTILINE)] == [
        status for status, _ in EXIT_STATUSES
    ]


@pytest.mark.parametrize(
    "arguments, part", [(["--help"], "qtdriver run"), (["run", "--help"], "exit status:")]
)
def test_help_explains_the_command_line(arguments, part):
    finished = subprocess.run([QTDRIVER, *arguments], capture_output=True, text=True)
    assert finished.returncode == 0
    assert part in finished.stdout


def test_everything_behind_the_application_is_an_argument_of_it(run):
    script = 'echo "$@" >&2; exit 4'
    finished = run(application=["/bin/sh", "-c", script, "sh", "--headless", "--", "--qt"])
    assert one_message(finished).endswith("\n--headless -- --qt\n")


@pytest.mark.parametrize(
    "arguments, command",
    [
        (["run", "--qt", "5", "--", "app", "--qt", "--", "x"], ["app", "--qt", "--", "x"]),
        (["run", "--qt", "5", "app", "--qt", "7", "x"], ["app", "--qt", "7", "x"]),
        (["run", "--qt", "5", "app", "--", "x"], ["app", "--", "x"]),
    ],
)
def test_the_application_is_named_with_or_without_two_dashes(arguments, command):
    parsed = parse_arguments(arguments)
    assert (parsed.qt, parsed.command) == (5, command)


def test_a_terminal_gets_a_prompt_and_no_echo(build, fake_agent):
    ours, theirs = pty.openpty()
    command = [QTDRIVER, "run", "--qt", "5", "--build", str(build), "--", *fake_agent]
    environment = {**os.environ, "TERM": "dumb"}
    with subprocess.Popen(command, stdin=theirs, stdout=subprocess.PIPE, env=environment) as process:
        os.close(theirs)
        output = read_until(process.stdout, b"qtdriver> ")
        os.write(ours, b"2,Bare\n")
        output += read_until(process.stdout, b"qtdriver> ")
        os.write(ours, b"quit\n")
        process.stdout.read()
    os.close(ours)
    assert process.returncode == 0
    assert b"connected to process" in output
    assert b"(empty list)\n" in output
    assert b"> 2,Bare" not in output.replace(b"qtdriver> 2,Bare", b"")


def read_until(stream, end):
    """Reads a pipe until its text ends with `end`."""
    text = b""
    while not text.endswith(end):
        byte = stream.read(1)
        assert byte, text
        text += byte
    return text


def test_a_terminated_run_ends_its_application(build, fake_agent):
    command = [QTDRIVER, "run", "--qt", "5", "--build", str(build), "--", *fake_agent, "--print", "x"]
    pipe = subprocess.PIPE
    with subprocess.Popen(command, stdin=pipe, stdout=pipe) as process:
        process.stdin.write(b"8,env:HOME\n")
        process.stdin.flush()
        read_until(process.stdout, b"> 8,env:HOME\n")
        children = children_of(process.pid)
        process.send_signal(signal.SIGTERM)
        assert process.wait(20) == 128 + signal.SIGTERM
    assert children and not any(os.path.exists(f"/proc/{child}") for child in children)


def children_of(pid):
    """The ids of the child processes, of all threads."""
    tasks = Path(f"/proc/{pid}/task").iterdir()
    return [int(child) for task in tasks for child in (task / "children").read_text().split()]


def test_headless_runs_on_a_desktop_of_its_own(run):
    finished = run("8,env:DISPLAY\n", "--headless")
    assert finished.returncode == 0, finished.stderr
    display = finished.stdout.splitlines()[1]
    assert display.startswith(":") and display != os.environ.get("DISPLAY")
