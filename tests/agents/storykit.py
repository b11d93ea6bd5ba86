"""Shared by the stories of language models: reading answers, saving the test, and the limits of the answers."""

import re
import shutil
import statistics
from pathlib import Path

import pytest

from mcpclient import ROOT

ROW = re.compile(r"^\| (\w+) \| \d+ \| \d+ \| (\d+) \| \d+ \| (\d+) \|$", re.MULTILINE)
LIMITS = {
    name: (int(median), int(most))
    for name, median, most in ROW.findall((ROOT / "docs" / "agents.md").read_text())
}
"""The limits of each story, as the document has them: tokens of the median answer, and of the longest one."""


def ref(text, pattern):
    """The number of the first widget in an answer whose line goes on like this."""
    return int(re.search(rf"\[(\d+)\] {pattern}", text, re.MULTILINE)[1])


def save(client, name):
    """Saves the test, which has to pass, and compares the answers so far with their limits."""
    client.call("close")
    assert "run once on a fresh start it passed: 1 passed" in client.call("save_test", path=f"test_{name}.py")
    tokens = client.tokens()
    print(
        f"{name}: {len(tokens)} answers, median {statistics.median(tokens):.0f}, most {tokens[-1]:.0f} tokens"
    )
    median, most = LIMITS[name]
    assert statistics.median(tokens) <= median and tokens[-1] <= most, tokens
    return Path(client.folder, f"test_{name}.py").read_text()


def require(program):
    """Skips a story whose program is not installed."""
    if not shutil.which(program):
        pytest.skip(f"{program} is not installed")
