"""The line with which an agent announces itself."""

from __future__ import annotations

import re
from dataclasses import dataclass

from ..errors import ProtocolError

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

_GREETING = re.compile(r"\+client\+ (\S+) (\d{1,10}) (-?\d{1,10}) (\S*)", re.ASCII)


@dataclass(frozen=True)
class Greeting:
    """An agent as it introduces itself.

    Attributes:
        version: the agent's protocol version, for example "2.1.0".
        pid: process id of the application, as that process sees it.
        hook_port: port of the outside test tool's hook; -1 without one, 0 while it is not initialised.
        build_tag: the agent's build tag, "qt486_vs2015_x64" whatever it was built for.
    """

    version: str
    pid: int
    hook_port: int
    build_tag: str

    @classmethod
    def parse(cls, line: str) -> "Greeting":
        """Reads a greeting line. Raises ProtocolError when it is none."""
        match = _GREETING.fullmatch(line)
        if match is None:
            raise ProtocolError(f"not an agent's greeting: {line[:200]!r}")
        return cls(match[1], int(match[2]), int(match[3]), match[4])
