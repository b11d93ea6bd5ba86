"""Text snapshots: outlines of windows and widgets, compared with files beside the tests."""

import pytest

from pytestrun import Project


@pytest.fixture
def project(tmp_path):
    return Project(tmp_path)


TESTS = """
ORDERED = "Brew a pot"

def test_window(app):
    window = app.window(name="showcase")
    eventually(window).looks_like("showcase at the start", ignoring=[r"Qt \\d[.\\d]*"])

def test_widget(app):
    window = app.window(name="showcase")
    window.widget("brewButton").click()
    eventually(window.widget("counterBox"), timeout=2).looks_like("counter", ignoring=r"nothing at all")
"""


@pytest.fixture
def written(project):
    """The project after a run that has written the snapshots; the folder in which they are."""
    project.write(TESTS)
    run = project.run("--qtdriver-update")
    assert run.outcomes == "2 passed"
    assert "qtdriver: snapshot written: snapshots/test_project/counter.txt\n" in run.output
    return project.folder / "snapshots" / "test_project"


def test_a_snapshot_is_written_by_the_option_and_compared_then(project, written):
    outline = (written / "showcase at the start.txt").read_text()
    assert 'button "Brew a cup" #brewButton' in outline
    run = project.run()
    assert run.outcomes == "2 passed" and "snapshot written" not in run.output
    assert project.run("--qtdriver-update").output.count("snapshot written") == 0, "they are right already"


def test_a_difference_is_told_line_by_line_in_the_terminal_and_in_the_page(project, written):
    file = written / "counter.txt"
    file.write_text(file.read_text().replace("'1'", "'3'"))
    run = project.run("-k", "test_widget")
    assert run.outcomes.startswith("1 failed")
    assert 'expected it to look like "counter", but after 2 s it differs (- expected, + shown):' in run.output
    lines = [line.removeprefix("E").strip() for line in run.output.splitlines()]
    removed, added = (
        next(line for line in lines if line[:1] == sign and "#clickCount" in line) for sign in "-+"
    )
    assert "'3'" in removed and "'1'" in added
    assert "--qtdriver-update writes snapshots/test_project/counter.txt anew, if it is right so" in run.output
    assert "it differs (- expected, + shown)" in (project.results / "report.html").read_text()


def test_a_missing_snapshot_is_a_failure_that_shows_what_would_be_written(project):
    project.write(TESTS)
    run = project.run("-k", "test_widget")
    assert run.outcomes.startswith("1 failed")
    assert (
        "there was no such snapshot: --qtdriver-update writes snapshots/test_project/counter.txt"
        in run.output
    )
    assert "#brewButton" in run.output
    assert not (project.folder / "snapshots").exists()


def test_what_differs_from_run_to_run_is_left_out_by_pattern(project):
    project.write(
        """
        def test_count(app):
            window = app.window(name="showcase")
            for _ in range(int(os.environ["CLICKS"])):
                window.widget("brewButton").click()
            eventually(window.widget("clickCount")).has(text=os.environ["CLICKS"])
            eventually(window.widget("clickCount")).looks_like("count", ignoring=r"'\\d+'")
        """
    )
    project.environment["CLICKS"] = "1"
    assert project.run("--qtdriver-update").outcomes == "1 passed"
    assert (
        project.folder / "snapshots/test_project/count.txt"
    ).read_text() == 'label "Cups waiting:" #clickCount with ***\n'
    project.environment["CLICKS"] = "2"
    assert project.run().outcomes == "1 passed"


def test_a_name_that_leads_elsewhere_is_an_error(project):
    project.write(
        """
        def test_name(app):
            with pytest.raises(ValueError, match="cannot be the name of a file"):
                eventually(app.window(name="showcase")).looks_like("../elsewhere")
            with pytest.raises(re.error, match="looks_like: ignoring: "):
                eventually(app.window(name="showcase")).looks_like("here", ignoring="(")
        """.replace(
            "def test", "import re\n\n        def test"
        )
    )
    assert project.run().outcomes == "1 passed"
