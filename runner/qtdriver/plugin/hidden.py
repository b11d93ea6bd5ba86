"""Leaves passwords that a test has typed out of the report of its failure."""

from __future__ import annotations

from typing import Any, Set

import pytest

from ..protocol.secrets import Secrets


def hide_secrets(report: pytest.TestReport, secrets: Secrets) -> None:
    """Changes every text of the report: the lines of the traceback, the message, what was captured."""
    if any(True for _ in secrets):
        report.longrepr = _hidden(report.longrepr, secrets, set())
        report.sections = [(name, secrets.hide(text)) for name, text in report.sections]


def _hidden(value: Any, secrets: Secrets, seen: Set[int]) -> Any:
    """The value with all texts in it changed; objects of pytest and lists are changed themselves."""
    if isinstance(value, str):
        return secrets.hide(value)
    if isinstance(value, tuple):
        return tuple(_hidden(part, secrets, seen) for part in value)
    if id(value) in seen:
        return value
    seen.add(id(value))
    if isinstance(value, list):
        value[:] = [_hidden(part, secrets, seen) for part in value]
    elif type(value).__module__.startswith("_pytest."):
        for name, part in vars(value).items():
            object.__setattr__(value, name, _hidden(part, secrets, seen))
    return value
