"""Programs for Windows, under Wine, with a prefix that the tests of a run share."""

import sys
from pathlib import Path

import pytest

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "protocol"))

from hostplatform import wine_prefix  # noqa: E402


@pytest.fixture(scope="session", autouse=True)
def wine(tmp_path_factory):
    with wine_prefix(tmp_path_factory.mktemp("wine")):
        yield
