"""The versions that `qtdriver --version` prints."""

from __future__ import annotations

from pathlib import Path
from typing import Optional

from ..errors import AgentNotBuiltError, AgentPathError
from ..launch.agent import QT_MAJORS, agent_library

VERSION = "2.1.0"
"""The version of the runner, of the agents, and of their packages: CMake and setuptools read it here."""


def describe_versions(build: Optional[Path] = None) -> str:
    """The runner's version, and a line for each agent that is there, in words.

    `build` is the folder with the agents, by default the one that `qtdriver run` uses.
    """
    lines = [f"qtdriver {VERSION}"]
    for major in QT_MAJORS:
        try:
            lines.append(f"agent for Qt {major}: {agent_library(major, build)}")
        except (AgentNotBuiltError, AgentPathError):
            continue
    if len(lines) == 1:
        lines.append("no agent is built")
    return "\n".join(lines)
