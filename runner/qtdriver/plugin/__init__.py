"""The pytest plugin: the fixture `qtdriver`, what is kept of failed tests, and workers on desktops of their own.

Installed with the package, it is loaded by itself; from a checkout by `-p qtdriver.plugin`, or by the line
`pytest_plugins = ["qtdriver.plugin"]` in the conftest.py of the tests.
"""

from __future__ import annotations

import pytest

from .fixtures import _qtdriver_place, qtdriver, qtdriver_settings
from .hookimpl import hookimpl
from .hooks import RESULTS, TestHooks
from .parallel import Workers, prepare
from .results import Results
from .settings import OWN_DESKTOPS, Settings, add_options, read_settings

__all__ = ["Settings", "_qtdriver_place", "qtdriver", "qtdriver_settings"]

_REFUSAL = pytest.StashKey[str]()


def pytest_addoption(parser: pytest.Parser) -> None:
    """Declares the options."""
    add_options(parser)


@hookimpl(tryfirst=True)
def pytest_configure(config: pytest.Config) -> None:
    """Comes before pytest-xdist, which starts from the number of workers that it finds."""
    settings = read_settings(config)
    # The results come after the hooks of the tests: at the end, too, where each adds what the other writes.
    config.pluginmanager.register(TestHooks(), "qtdriver-tests")
    if hasattr(config, "workerinput"):
        return
    config.stash[_REFUSAL] = prepare(config, settings)
    config.pluginmanager.register(Results(settings, config.invocation_params.dir), RESULTS)
    if settings.workers == OWN_DESKTOPS:
        config.pluginmanager.register(Workers(), "qtdriver-workers")


def pytest_sessionstart(session: pytest.Session) -> None:
    """Says why a run is slower than was asked for."""
    refusal = session.config.stash.get(_REFUSAL, "")
    terminal = session.config.pluginmanager.getplugin("terminalreporter")
    if refusal and terminal is not None:
        terminal.write_line(f"qtdriver: {refusal}", yellow=True)
