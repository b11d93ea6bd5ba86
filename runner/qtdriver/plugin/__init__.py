"""The pytest plugin: the fixture `qtdriver`, what is kept of failed tests, and workers on desktops of their own.

Installed with the package, it is loaded by itself; from a checkout by `-p qtdriver.plugin`, or by the line
`pytest_plugins = ["qtdriver.plugin"]` in the conftest.py of the tests.
"""

from __future__ import annotations

import os
from typing import Any, List

import pytest

from ..desktop.session import WAYLAND_NOTE, needs_x11
from ..errors.settingnames import IN_PYTEST, use_setting_names
from ..launch.progress import show_progress_on
from .fixtures import _qtdriver_shared, qtdriver, qtdriver_settings
from .hookimpl import hookimpl
from .hooks import RESULTS, TestHooks
from .pauses import register_pauses
from .parallel import Workers, prepare
from .remote import begin_sending
from .results import Results
from .settings import OWN_DESKTOPS, Settings, add_options, read_settings
from .shards import SHARDS, Shards
from .snapshots import WrittenSnapshots

__all__ = ["Settings", "_qtdriver_shared", "qtdriver", "qtdriver_settings"]

_NOTES = pytest.StashKey[List[str]]()


def pytest_addoption(parser: pytest.Parser) -> None:
    """Declares the options."""
    add_options(parser)


@hookimpl(tryfirst=True)
def pytest_configure(config: pytest.Config) -> None:
    """Reads the settings. Runs before pytest-xdist reads the number of workers, since prepare() may change that."""
    begin_sending(config)
    settings = read_settings(config)
    use_setting_names(IN_PYTEST)
    # Plugins that are registered later run later at the end of the session: TestHooks adds the result of an interrupted
    # test before Results writes the page.
    config.pluginmanager.register(TestHooks(), "qtdriver-tests")
    if settings.shard is not None:
        config.pluginmanager.register(Shards(config, settings), SHARDS)
    if settings.pause:
        register_pauses(config)
    if hasattr(config, "workerinput"):
        return
    notes = [
        prepare(config, settings),
        "" if settings.headless or not needs_x11(os.environ) else WAYLAND_NOTE,
    ]
    config.stash[_NOTES] = [note for note in notes if note]
    config.pluginmanager.register(WrittenSnapshots(), "qtdriver-snapshots")
    config.pluginmanager.register(Results(settings, config.invocation_params.dir), RESULTS)
    if settings.workers == OWN_DESKTOPS:
        config.pluginmanager.register(Workers(), "qtdriver-workers")


def pytest_sessionstart(session: pytest.Session) -> None:
    """Prints the notes on how the tests run, such as that there are no workers, and begins to show progress."""
    terminal = session.config.pluginmanager.getplugin("terminalreporter")
    if terminal is not None:
        _show_progress(session.config.get_terminal_writer())
    for note in session.config.stash.get(_NOTES, []):
        if terminal is not None:
            terminal.write_line(f"qtdriver: {note}", yellow=True)


def _show_progress(writer: Any) -> None:
    """Shows the progress of long work behind the current line of pytest's terminal, past pytest's capturing.

    The writer's own methods are not used: it would count the text, which is removed again, as a part of its line.
    """
    show_progress_on(getattr(writer, "_file", None), lambda: int(writer.width_of_current_line))


def pytest_unconfigure() -> None:
    """Stops showing progress on the terminal."""
    show_progress_on(None)
