"""Fixtures that all tests of packages share."""

import pytest

import making


@pytest.fixture(scope="session")
def made():
    """The folder with the Debian packages and the wheel, made anew from this checkout."""
    return making.make("wheel")
