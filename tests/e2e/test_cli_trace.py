"""`qtdriver trace`: what is kept of a failure, for a person and for programs."""

import json
import subprocess
from pathlib import Path

import pytest

QTDRIVER = str(Path(__file__).resolve().parents[2] / "scripts" / "qtdriver")

EXCHANGE = dict(
    request="7,Main,ok,,text,",
    asks="readProperty",
    reply="0,u:4f4b",
    answers="OK",
    start=0.2,
    seconds=0.1,
    error="",
)
STEP = dict(
    title='window("Main").widget("ok").click()',
    action="",
    file="test_order.py",
    line=12,
    group=1,
    place=[1, 2, 30, 40],
    reads=False,
    pid=7,
    start=0.2,
    seconds=0.5,
    error="",
    exchanges=[EXCHANGE],
    skipped=3,
    before="one.webp",
    after="",
    widgets="key",
)
TRACE = dict(
    format=2,
    began_at=1700000000.5,
    seconds=2.5,
    notes=["a note"],
    steps=[
        STEP,
        {**STEP, "start": 1.0, "group": None, "error": "no milk\nnowhere", "reads": True, "widgets": ""},
    ],
    groups=[
        dict(title="Order", parent=None, start=0, seconds=1, error=""),
        dict(title="Pay", parent=0, start=0, seconds=1, error=""),
    ],
    output=[
        dict(time=0.1, pid=7, stream="stdout", text="early"),
        dict(time=0.3, pid=7, stream="stderr", text="clicked"),
        dict(time=1.0, pid=7, stream="stdout", text="late"),
    ],
    trees={"key": 'window "Main"'},
)


@pytest.fixture
def failure(tmp_path):
    """The folder of a failure."""
    (tmp_path / "trace").mkdir()
    (tmp_path / "trace" / "trace.json").write_text(json.dumps(TRACE))
    (tmp_path / "error.txt").write_text("error in call:\nno milk\n")
    for name in ("screenshot.png", "stderr.txt", "stderr-2.txt"):
        (tmp_path / name).touch()
    return tmp_path


def trace(*arguments):
    return subprocess.run([QTDRIVER, "trace", *map(str, arguments)], capture_output=True, text=True)


@pytest.mark.parametrize("part", [".", "trace"])
def test_a_program_reads_all_that_is_kept(failure, part):
    told = json.loads(trace(failure / part, "--json").stdout)
    del told["steps"]
    assert told == {
        "format": 1,
        "folder": str(failure),
        "error": "error in call:\nno milk\n",
        "seconds": 2.5,
        "began_at": 1700000000.5,
        "files": {
            "screenshot": [str(failure / "screenshot.png")],
            "windows": [],
            "transcript": [],
            "stdout": [],
            "stderr": [str(failure / "stderr-2.txt"), str(failure / "stderr.txt")],
            "stack": [],
        },
        "notes": ["a note"],
        "differs": None,
    }


def test_a_program_reads_all_that_is_kept_of_a_step(failure):
    first, second = json.loads(trace(failure, "--json").stdout)["steps"]
    assert first == {
        "number": 1,
        "title": 'window("Main").widget("ok").click()',
        "action": "",
        "file": "test_order.py",
        "line": 12,
        "groups": ["Order", "Pay"],
        "acts": True,
        "start": 0.2,
        "seconds": 0.5,
        "error": "",
        "before": str(failure / "trace" / "one.webp"),
        "after": None,
        "place": [1, 2, 30, 40],
        "comparison": {},
        "widgets": 'window "Main"',
        "requests": [EXCHANGE],
        "left_out_requests": 3,
        "output": TRACE["output"][:2],
    }
    assert (second["groups"], second["widgets"], second["acts"]) == ([], None, False)
    assert second["output"] == TRACE["output"][2:]


def test_a_person_reads_the_steps_and_the_error(failure):
    lines = trace(failure).stdout.splitlines()
    assert lines[1:3] == ["Order > Pay", '    0.200 s    1. window("Main").widget("ok").click()']
    assert [line.strip() for line in lines[4:6]] == ["no milk", "nowhere"]
    assert lines[-2:] == ["error in call:", "no milk"]


def test_a_failure_without_a_trace_has_no_steps(failure):
    (failure / "trace" / "trace.json").unlink()
    told = json.loads(trace(failure, "--json").stdout)
    assert (told["steps"], told["seconds"], told["error"][:5]) == ([], None, "error")


def test_another_folder_is_an_error(tmp_path):
    done = trace(tmp_path, "--json")
    told = json.loads(done.stdout)
    assert (done.returncode, told["error"]) == (1, "TraceError")
    assert told["message"].startswith(f"{tmp_path} holds neither a failure nor a trace")


def test_the_fields_are_those_that_the_document_promises(failure):
    document = (Path(__file__).resolve().parents[2] / "docs" / "commandline.md").read_text()
    section = document.partition("### A failure, for programs")[2].partition("\n## ")[0]
    rows = [line.split("|")[1] for line in section.splitlines() if line.startswith("| `")]
    promised = {name.strip(" `") for row in rows for name in row.split(",")}
    told = json.loads(trace(failure, "--json").stdout)
    assert promised == {*told, *told["steps"][0]}
