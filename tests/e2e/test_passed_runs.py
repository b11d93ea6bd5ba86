"""The comparison with the last run that passed, without an application: of traces, and the runs that are kept."""

import json
import os
import subprocess
import zipfile

import pytest

from qtdriver.plugin import passed_runs
from qtdriver.plugin.passed_runs import PassedRuns, current_branch
from qtdriver.trace.differing import first_difference, add_difference

TREE = """window "Order"
  QFrame "bar"
    QPushButton "ok"
    QPushButton
    QPushButton
  QLabel "status" hidden
    QLabel hidden"""


def step(title="click()", error="", read=None, widgets="", before="", after=""):
    exchanges = []
    if read is not None:
        exchanges = [{"request": "+7,aa,bb,cc", "reply": "0,s:dd", "answers": read}]
    return {
        "title": title,
        "error": error,
        "exchanges": exchanges,
        "widgets": widgets,
        "before": before,
        "after": after,
    }


def trace(*steps, **trees):
    return {"began_at": 1e9, "steps": list(steps), "trees": trees}


@pytest.fixture
def on_branch(monkeypatch):
    def choose(name):
        monkeypatch.setenv("QTDRIVER_BRANCH", name)
        current_branch.cache_clear()

    choose("main")
    yield choose
    current_branch.cache_clear()


def written(folder, told, **pictures):
    """A folder with this trace and these pictures."""
    folder.mkdir(exist_ok=True)
    (folder / "trace.json").write_text(json.dumps(told))
    for name, content in pictures.items():
        (folder / f"{name}.png").write_bytes(content)
    return folder


def test_equal_runs_do_not_differ():
    run = trace(step("a()", read="5", widgets="t"), step("b()", "it failed"), t=TREE)
    assert first_difference(run, run) is None


@pytest.mark.parametrize(
    "now, then, reason",
    [
        (step("b()"), step("c()"), "another call: the run that passed made c()"),
        (step(error="too late\nwaited 5 s"), step(), "it failed: too late"),
        (step(), step(error="expected"), "it failed in the run that passed: expected"),
        (step(read="12"), step(read="13"), 'it read "12", in the run that passed "13"'),
    ],
)
def test_the_first_step_that_differs_is_told_with_the_reason(now, then, reason):
    told = first_difference(trace(step("a()"), now, step("x()")), trace(step("a()"), then, step("y()")))
    assert (told["step"], told["reasons"]) == (2, [reason])


def test_widgets_that_are_gone_and_new_are_told():
    now = TREE.replace(" hidden", "").replace("ok", "oK").replace("    QPushButton\n", "", 1)
    told = first_difference(trace(step(widgets="n"), n=now), trace(step(widgets="t"), t=TREE))
    assert told["gone"] == ['QPushButton "ok"', "QPushButton (2)"]
    assert told["new"] == ['QPushButton "oK"', 'QLabel "status", which was hidden']
    assert told["reasons"] == ["4 widgets differ"]


def test_of_widgets_in_each_other_the_outermost_is_told():
    bar, status = TREE.split('  QLabel "status"')
    hidden = (
        bar.replace("\n", " hidden\n").replace('"Order" hidden', '"Order"') + '  QLabel "status"' + status
    )
    told = first_difference(trace(step(widgets="n"), n=hidden), trace(step(widgets="t"), t=TREE))
    assert (told["gone"], told["new"]) == (['QFrame "bar", which is hidden now'], [])
    assert told["reasons"] == ["a widget differs"]


def test_widgets_that_are_hidden_in_both_runs_are_no_difference():
    now = TREE.replace('"status" hidden', '"state" hidden')
    assert first_difference(trace(step(widgets="n"), n=now), trace(step(widgets="t"), t=TREE)) is None


def test_widgets_that_one_run_has_not_listed_are_no_difference():
    assert first_difference(trace(step(widgets="t"), t=TREE), trace(step())) is None


def test_temporary_folders_and_addresses_in_calls_are_no_difference():
    now, then = (trace(step(f"open('/tmp/run-{run}/a', 0x{run}f)")) for run in (1, 2))
    assert first_difference(now, then) is None


def test_a_run_that_ended_early_differs_in_its_last_step():
    told = first_difference(trace(step("a()")), trace(step("a()"), step("b()")))
    assert (told["step"], told["reasons"]) == (1, ["the run that passed went on with b()"])


def test_a_run_that_went_on_differs_in_the_step_that_the_other_had_not():
    told = first_difference(trace(step("a()"), step("b()")), trace(step("a()")))
    assert (told["step"], told["passed_title"]) == (2, None)
    assert told["reasons"] == ["the run that passed had no such step: it had ended"]


def test_a_kept_run_is_found_again_with_its_pictures(tmp_path, on_branch):
    runs = PassedRuns(tmp_path / "history")
    runs.keep("t.py::test_a", written(tmp_path / "one", trace(step(after="p.png")), p=b"old"))
    runs.keep("t.py::test_a", written(tmp_path / "two", trace(step(after="p.png")), p=b"new"))
    file, branch = runs.find("t.py::test_a")
    assert branch == "main" and zipfile.ZipFile(file).read("p.png") == b"new"
    assert runs.find("t.py::test_b") is None
    assert len(list((tmp_path / "history" / "main").iterdir())) == 1, "the one before has been replaced"


def test_a_branch_has_its_own_runs_and_until_then_those_of_main(tmp_path, on_branch):
    runs = PassedRuns(tmp_path / "history")
    folder = written(tmp_path / "one", trace(step()))
    runs.keep("test_a", folder)
    on_branch("feature/x")
    assert runs.find("test_a")[1] == "main"
    runs.keep("test_a", folder)
    assert runs.find("test_a")[1] == "feature/x"
    on_branch("feature-x")
    assert runs.find("test_a")[1] == "main", "another branch, although the names are alike"


def test_the_branch_is_that_of_git_where_nothing_else_names_it(tmp_path, monkeypatch):
    for variable in passed_runs._BRANCHES:
        monkeypatch.delenv(variable, raising=False)
    subprocess.run(["git", "init", "-q", "-b", "topic", tmp_path], check=True)
    monkeypatch.chdir(tmp_path)
    current_branch.cache_clear()
    assert current_branch() == "topic"
    current_branch.cache_clear()


def test_pictures_of_a_run_have_a_bound(tmp_path, on_branch, monkeypatch):
    monkeypatch.setattr(passed_runs, "RUN_BYTES", 10)
    runs = PassedRuns(tmp_path / "history")
    told = trace(step(after="a.png"), step(after="b.png"))
    runs.keep("test_a", written(tmp_path / "one", told, a=b"12345678", b=b"12345678"))
    assert zipfile.ZipFile(runs.find("test_a")[0]).namelist() == ["trace.json", "a.png"]


def test_the_oldest_runs_are_removed_beyond_the_bound_of_all(tmp_path, on_branch):
    runs = PassedRuns(tmp_path / "history")
    folder = written(tmp_path / "one", trace(step()))
    for age, name in enumerate(("new", "older", "oldest")):
        runs.keep(name, folder)
        os.utime(runs.find(name)[0], (1e9 - age, 1e9 - age))
    size = runs.find("new")[0].stat().st_size
    runs.prune(2 * size)
    assert [runs.find(name) is not None for name in ("new", "older", "oldest")] == [True, True, False]


def test_the_difference_is_written_beside_the_trace_with_the_picture_of_then(tmp_path, on_branch):
    runs = PassedRuns(tmp_path / "history")
    runs.keep("test_a", written(tmp_path / "then", trace(step(read="5", after="p.png")), p=b"then"))
    now = written(tmp_path / "now", trace(step(read="6", after="q.png")), q=b"now")
    line = add_difference(now, *runs.find("test_a"))
    assert line.startswith("the first step that differs from the last run that passed (main, ")
    assert line.endswith('is 1. click(): it read "6", in the run that passed "5"')
    told = json.loads((now / "trace.json").read_text())["differs"]
    assert (told["picture"], told["passed_picture"]) == ("q.png", "p.png")
    assert (now / "p.png").read_bytes() == b"then"


def test_an_application_that_has_ended_is_shown_as_it_was_before(tmp_path, on_branch):
    """The screen without it tells nothing."""
    runs = PassedRuns(tmp_path / "history")
    runs.keep("test_a", written(tmp_path / "then", trace(step(after="p.png")), p=b"then"))
    pictures = dict(before="before.png", after="after.png")
    for widgets, shown in (("", "before.png"), ("tree", "after.png")):
        failed = trace(step(error="it ended", widgets=widgets, **pictures), tree="window")
        now = written(tmp_path / f"now {shown}", failed)
        add_difference(now, *runs.find("test_a"))
        assert json.loads((now / "trace.json").read_text())["differs"]["picture"] == shown
