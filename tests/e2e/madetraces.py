"""Traces that are written by hand, for tests of the page."""

import json

import pytest

_STEP = dict(
    reads=False,
    pid=1,
    start=0.1,
    seconds=0.1,
    error="",
    exchanges=[],
    skipped=0,
    before="",
    after="",
    widgets="",
)


def make_trace(folder, steps, **more):
    """Writes a trace with these steps into the folder, as a Recorder does, and answers the folder."""
    folder.mkdir(parents=True)
    data = dict(
        format=1, began_at=0, seconds=1.0, notes=[], trees={}, steps=[{**_STEP, **step} for step in steps]
    )
    text = json.dumps({**data, **more})
    (folder / "trace.json").write_text(text)
    (folder / "trace.js").write_text(f"qtdriverTrace({text});")
    return folder


@pytest.fixture
def made(tmp_path):
    """make_trace() in the folder of the test."""
    return lambda steps, name="trace", **more: make_trace(tmp_path / name, steps, **more)
