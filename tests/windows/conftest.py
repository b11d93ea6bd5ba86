"""Programs for Windows, under a Wine that the tests of a run share."""

import sys
from pathlib import Path

import pytest

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "protocol"))

import hostplatform  # noqa: E402


@pytest.fixture(scope="session", autouse=True)
def wine():
    with hostplatform.wine():
        yield
