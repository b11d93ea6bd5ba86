"""Finds the first step in which a failed run of a test differs from the last one that passed."""

from __future__ import annotations

import json
import re
import time
import zipfile
from pathlib import Path
from typing import Any, Dict, List, Mapping, Optional, Tuple

from .trace import TRACE_FILE, write_trace

DIFFERS = "differs"
"""The key in a trace of what differs."""

_KEPT_WIDGETS = 50
_HIDDEN = " hidden"
_READING = re.compile(r"\+?7,")
"""Requests that read a property. Other answers differ from run to run without a reason to be told, by their reference
numbers for example."""

_VARYING = re.compile(r"/tmp/[^\s\"']+|0x[0-9a-fA-F]+")
"""Parts of calls that differ from run to run."""

_Step = Mapping[str, Any]
_Trace = Mapping[str, Any]


def first_difference(trace: _Trace, passed: _Trace) -> Optional[Dict[str, Any]]:
    """The first step that differs, in types of JSON, without pictures; None where no step does.

    Args:
        trace: the failed run, as its file has it.
        passed: the run that passed.
    """
    steps, others = trace["steps"], passed["steps"]
    for number, step in enumerate(steps):
        other = others[number] if number < len(others) else None
        gone, new = ([], []) if other is None else _changed_widgets(trace, step, passed, other)
        reasons = _reasons(step, other)
        if gone or new:
            count = len(gone) + len(new)
            reasons.append("a widget differs" if count == 1 else f"{count} widgets differ")
        if reasons:
            return _difference(number, reasons, step, other, gone, new)
    if steps and len(others) > len(steps):
        reason = f"the run that passed went on with {others[len(steps)]['title']}"
        return _difference(len(steps) - 1, [reason], steps[-1], others[len(steps) - 1], [], [])
    return None


def _difference(
    number: int, reasons: List[str], step: _Step, other: Optional[_Step], gone: List[str], new: List[str]
) -> Dict[str, Any]:
    return {
        "step": number + 1,
        "title": step["title"],
        "passed_title": None if other is None else other["title"],
        "reasons": reasons,
        "gone": gone[:_KEPT_WIDGETS],
        "new": new[:_KEPT_WIDGETS],
    }


def _reasons(step: _Step, other: Optional[_Step]) -> List[str]:
    if other is None:
        return ["the run that passed had no such step: it had ended"]
    if _stable(step["title"]) != _stable(other["title"]):
        return [f"another call: the run that passed made {other['title']}"]
    reasons = []
    if bool(step["error"]) != bool(other["error"]):
        reasons.append(
            f"it failed: {_first_line(step['error'])}"
            if step["error"]
            else f"it failed in the run that passed: {_first_line(other['error'])}"
        )
    read, read_then = _read_value(step), _read_value(other)
    if read is not None and read_then is not None and read != read_then:
        reasons.append(f'it read "{read}", in the run that passed "{read_then}"')
    return reasons


def _stable(title: str) -> str:
    return _VARYING.sub("***", title)


def _first_line(text: str) -> str:
    return text.split("\n", 1)[0]


def _read_value(step: _Step) -> Optional[str]:
    """The value of a property that a step has read at last; None where it has read none, or in vain."""
    last = step["exchanges"][-1] if step["exchanges"] else None
    if last is None or not _READING.match(last["request"]) or not (last["reply"] or "").startswith("0,"):
        return None
    return str(last["answers"])


def _changed_widgets(trace: _Trace, step: _Step, passed: _Trace, other: _Step) -> Tuple[List[str], List[str]]:
    """The widgets that could be seen after the step only in the run that passed, and those only in this one.

    Widgets that are inside one of these are left out.
    """
    if not step["widgets"] or not other["widgets"]:
        return [], []
    now = _seen(trace["trees"].get(step["widgets"], ""))
    then = _seen(passed["trees"].get(other["widgets"], ""))
    gone = [f"{path[-1]}{', which is hidden now' if path in now else ''}" for path in _outermost(then, now)]
    new = [f"{path[-1]}{', which was hidden' if path in then else ''}" for path in _outermost(now, then)]
    return gone, new


_Seen = Dict[Tuple[str, ...], bool]
"""Widgets by their names and those of what they are in, and whether each is visible."""


def _seen(tree: str) -> _Seen:
    """The widgets of a listing."""
    seen: _Seen = {}
    chain: List[str] = []
    for line in tree.split("\n"):
        name = line.lstrip()
        del chain[(len(line) - len(name)) // 2 :]
        plain = name[: -len(_HIDDEN)] if name.endswith(_HIDDEN) else name
        path, same = (*chain, plain), 1
        while path in seen:
            same += 1
            path = (*chain, f"{plain} ({same})")
        seen[path] = not name.endswith(_HIDDEN)
        chain.append(path[-1])
    return seen


def _outermost(seen: _Seen, other: _Seen) -> List[Tuple[str, ...]]:
    """The visible widgets that are not visible in the other listing, without those in others of them."""
    found: Dict[Tuple[str, ...], bool] = {}
    for path, visible in seen.items():
        if path[:-1] in found:
            found[path] = False
        elif visible and not other.get(path, False):
            found[path] = True
    return [path for path, is_outermost in found.items() if is_outermost]


def add_difference(folder: Path, run: Path, branch: str) -> str:
    """Compares the trace in a folder with that of a run that passed, and adds the first difference to it.

    Args:
        folder: that of the trace.
        run: the file of the run that passed.
        branch: its branch.

    Returns a line for a person; empty where nothing differs. Raises OSError, ValueError, LookupError and
    zipfile.BadZipFile where one of them cannot be read.
    """
    trace = json.loads((folder / TRACE_FILE).read_text(encoding="utf-8"))
    with zipfile.ZipFile(run) as archive:
        passed = json.loads(archive.read(TRACE_FILE))
        told = first_difference(trace, passed)
        if told is None:
            return ""
        told["branch"] = branch
        told["passed_at"] = time.strftime("%Y-%m-%d %H:%M", time.localtime(passed["began_at"]))
        number = told["step"] - 1
        told["picture"] = _picture(trace["steps"][number])
        told["passed_picture"] = ""
        name = _picture(passed["steps"][number]) if number < len(passed["steps"]) else ""
        if name and Path(name).name == name and name in archive.namelist():
            (folder / name).write_bytes(archive.read(name))
            told["passed_picture"] = name
    write_trace(folder, {**trace, DIFFERS: told})
    return (
        f"the first step that differs from the last run that passed ({branch}, {told['passed_at']}) is {told['step']}. "
        f"{told['title']}: {'; '.join(told['reasons'])}"
    )


def _picture(step: _Step) -> str:
    """The picture after a step; before it where the application has ended or hangs, so that it cannot be seen any more."""
    is_gone = step["error"] and not step["widgets"]
    return str((step["before"] if is_gone else "") or step["after"] or step["before"])
