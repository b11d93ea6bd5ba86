"""The settings that messages name, in the words of the tool in use: a test in Python, pytest, the command line."""

from __future__ import annotations

from typing import NamedTuple


class SettingNames(NamedTuple):
    """The words for each setting, as they are written by the user of that tool.

    Attributes:
        qt: the Qt version of the application.
        build: the folder with the agents.
        start_timeout: how long an application may take to start.
    """

    qt: str
    build: str
    start_timeout: str


IN_PYTHON = SettingNames("qt=N", "build=DIR", "start_timeout=S")
IN_PYTEST = SettingNames(
    "--qtdriver-qt N or launch(..., qt=N)", "--qtdriver-build DIR", "--qtdriver-start-timeout S"
)
ON_COMMAND_LINE = SettingNames("--qt N", "--build DIR", "--timeout S")

_in_use = IN_PYTHON


def setting_names() -> SettingNames:
    """The words of the tool in use."""
    return _in_use


def use_setting_names(names: SettingNames) -> None:
    """Makes messages use these words from now on."""
    global _in_use
    _in_use = names
