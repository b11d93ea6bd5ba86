"""The results of a run as a JUnit XML file, with the names that pytest gives the tests in its own."""

from __future__ import annotations

import os
import re
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from typing import Iterable, Tuple

from .results import FLAKY, TestResult

_NOT_IN_XML = re.compile("[^\t\n\r -\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]")
_ELEMENT_OF = {"failed": "failure", "error": "error", "skipped": "skipped"}
_COUNTS = {"failed": "failures", "error": "errors", "skipped": "skipped"}


def write_junit(results: Iterable[TestResult], file: Path) -> None:
    """Writes the file. Raises OSError."""
    suites = ElementTree.Element("testsuites")
    suite = ElementTree.SubElement(suites, "testsuite", name="pytest")
    counts = {name: 0 for name in ("tests", *_COUNTS.values())}
    seconds = 0.0
    for result in results:
        suite.append(_case(result))
        seconds += result.total_seconds()
        counts["tests"] += 1
        if result.outcome in _COUNTS:
            counts[_COUNTS[result.outcome]] += 1
    for name, count in counts.items():
        suite.set(name, str(count))
    suite.set("time", f"{seconds:.3f}")
    unfinished = file.with_name(f"{file.name}.part")
    ElementTree.ElementTree(suites).write(unfinished, encoding="utf-8", xml_declaration=True)
    os.replace(unfinished, file)


def _case(result: TestResult) -> ElementTree.Element:
    class_name, name = _names(result.node_id)
    case = ElementTree.Element(
        "testcase", classname=_text(class_name), name=_text(name), time=f"{result.total_seconds():.3f}"
    )
    attempts = (*result.earlier, result)
    properties = [*result.properties]
    properties += [("qtdriver_bundle", str(one.bundle.absolute())) for one in attempts if one.bundle]
    properties += [("qtdriver_trace", str(one.trace.absolute())) for one in attempts if one.trace]
    if result.outcome == FLAKY:
        properties.append(("qtdriver_attempts", str(len(attempts))))
    if properties:
        told = ElementTree.SubElement(case, "properties")
        for name, value in properties:
            ElementTree.SubElement(told, "property", name=_text(name), value=_text(value))
    if result.outcome in _ELEMENT_OF:
        complaint = ElementTree.SubElement(
            case, _ELEMENT_OF[result.outcome], message=_text(_complaint(result.message))
        )
        complaint.text = _text(result.message)
    return case


def _names(node_id: str) -> Tuple[str, str]:
    """The name of the class, which is that of the file with points where it has slashes, and the name of the test."""
    path, bracket, parameters = node_id.partition("[")
    file, *names = path.split("::")
    parts = [re.sub(r"\.py$", "", file.replace("/", ".")), *names]
    return ".".join(parts[:-1]), f"{parts[-1]}{bracket}{parameters}"


def _complaint(message: str) -> str:
    """The line that says what was wrong, without the source around it."""
    lines = message.strip().splitlines()
    marked = [line[1:].strip() for line in lines if re.match(r"E {2,}", line)]
    return (marked or lines[-1:] or [""])[0]


def _text(text: str) -> str:
    """The text without the characters that XML cannot hold, which are written as numbers."""
    return _NOT_IN_XML.sub(lambda found: f"#x{ord(found[0]):02X}", text)
