"""Reads the folder of a failure for programs: `qtdriver trace FOLDER --json`."""

from __future__ import annotations

import json
from pathlib import Path
from typing import Any, Dict, List, Optional

from ..errors.commandline import TraceError
from .differing import DIFFERS
from .trace import TRACE_FILE

SUMMARY_FORMAT = 1
"""Changes when what a program reads gets another meaning or goes; not when something is added."""

_STEP = ("title", "action", "file", "line", "start", "seconds", "error", "place")
_EXCHANGE = ("request", "asks", "reply", "answers", "start", "seconds", "error")
_FILES = ("screenshot", "windows", "transcript", "stdout", "stderr", "stack")


def read_summary(folder: Path) -> Dict[str, Any]:
    """The failure whose folder this is, in types of JSON; docs/commandline.md describes them.

    `folder` is that of the failure, or of its trace. Raises TraceError where neither is there.
    """
    trace_folder = folder if (folder / TRACE_FILE).is_file() else folder / "trace"
    bundle = trace_folder.parent if trace_folder.name == "trace" else trace_folder
    trace: Dict[str, Any] = {}
    if (trace_folder / TRACE_FILE).is_file():
        try:
            trace = json.loads((trace_folder / TRACE_FILE).read_text(encoding="utf-8"))
        except (OSError, ValueError) as error:
            raise TraceError(f"{trace_folder / TRACE_FILE} cannot be read: {error}") from None
    elif not (bundle / "error.txt").is_file():
        raise TraceError(
            f"{folder} holds neither a failure nor a trace: name a folder of test-results, such as "
            "test-results/test_order-test_milk-0a1b2c"
        )
    files = {name: sorted(map(str, bundle.absolute().glob(f"{name}*.*"))) for name in _FILES}
    return {
        "format": SUMMARY_FORMAT,
        "folder": str(bundle.absolute()),
        "error": _text(bundle / "error.txt"),
        "seconds": trace.get("seconds"),
        "began_at": trace.get("began_at"),
        "steps": _steps(trace, trace_folder.absolute()),
        "files": files,
        "notes": trace.get("notes", []),
        "differs": _differs(trace, trace_folder.absolute()),
    }


def describe_summary(summary: Dict[str, Any]) -> str:
    """A failure, as read_summary() has read it, in lines for a person: its steps and its error."""
    lines = [summary["folder"]]
    groups: List[str] = []
    for step in summary["steps"]:
        if step["groups"] != groups:
            groups = step["groups"]
            lines += [" > ".join(groups)] if groups else []
        lines.append(f"{step['start']:9.3f} s  {step['number']:3}. {step['title']}")
        if step["error"]:
            lines += [f"                  {line}" for line in step["error"].splitlines()]
    return "\n".join([*lines, "", summary["error"].rstrip()]).rstrip()


def _differs(trace: Dict[str, Any], folder: Path) -> Optional[Dict[str, Any]]:
    """The first step that differs from the last run that passed, with the paths of the pictures."""
    told = trace.get(DIFFERS)
    if told is None:
        return None
    paths = {name: str(folder / told[name]) if told[name] else None for name in ("picture", "passed_picture")}
    return {**told, **paths}


def _steps(trace: Dict[str, Any], folder: Path) -> List[Dict[str, Any]]:
    told = trace.get("steps", [])
    starts = [step["start"] for step in told[1:]] + [float("inf")]
    begins = [float("-inf")] + starts[:-1]
    steps = []
    for number, (step, begin, end) in enumerate(zip(told, begins, starts), 1):
        output = [line for line in trace.get("output", ()) if begin <= line["time"] < end]
        steps.append(
            {
                "number": number,
                **{name: step.get(name) for name in _STEP},
                "acts": not step["reads"],
                "groups": _titles(step.get("group"), trace.get("groups", [])),
                "before": str(folder / step["before"]) if step["before"] else None,
                "after": str(folder / step["after"]) if step["after"] else None,
                "comparison": {kind: str(folder / name) for kind, name in step.get("comparison", {}).items()},
                "widgets": trace["trees"].get(step["widgets"]),
                "requests": [{name: one[name] for name in _EXCHANGE} for one in step["exchanges"]],
                "left_out_requests": step["skipped"],
                "output": output,
            }
        )
    return steps


def _titles(group: Any, groups: List[Dict[str, Any]]) -> List[str]:
    """The names of the groups that a step is in, from the outside in."""
    if group is None:
        return []
    return [*_titles(groups[group]["parent"], groups), groups[group]["title"]]


def _text(file: Path) -> str:
    try:
        return file.read_text(encoding="utf-8", errors="replace")
    except OSError:
        return ""
