"""The conversation in the documents is what a client sees."""

import json
import re

from mcpclient import BUILD, ROOT, McpClient


def conversation():
    """The calls of the document, each with the lines of its answer."""
    chapter = (
        (ROOT / "docs" / "agents.md").read_text().partition("\n## A conversation\n")[2].partition("\n## ")[0]
    )
    text = "\n".join(line[4:] for line in chapter.splitlines() if line.startswith("    ") or not line)
    for part in re.split(r"^> ", text, flags=re.MULTILINE)[1:]:
        call, _, answer = part.strip().partition("\n")
        tool, _, arguments = call.partition(" ")
        yield tool, json.loads(arguments), answer.splitlines()


def pattern_of(lines):
    """A pattern for lines of the document.

    Numbers of widgets, processes and seconds are any, and so are lines for "...". A window may get the focus later.
    """
    patterns = []
    for line in lines:
        if line.strip() == "...":
            patterns.append(r"(?:.*\n)*?")
            continue
        pattern = re.sub(r"\\\[\d+\\\]", r"\\[(\\d+)\\]", re.escape(line))
        pattern = pattern.replace(r"\ \(focused\)", r"(?:\ \(focused\))?")
        pattern = re.sub(r"process\\ \d+", r"process\\ \\d+", pattern)
        patterns.append(re.sub(r"\d+\\\.\d+s", r"[\\d.]+s", pattern) + r"\n")
    return "".join(patterns)


def test_the_conversation_of_the_documents_goes_as_they_tell(tmp_path):
    (tmp_path / "build").mkdir()
    (tmp_path / "build" / "qt5").symlink_to(BUILD)
    numbers, tools = {}, []
    with McpClient("--build", BUILD / "agents", folder=tmp_path) as client:
        client.initialize()
        for tool, arguments, lines in conversation():
            if "target" in arguments:
                arguments["target"] = numbers[arguments["target"]]
            told = client.call(tool, **arguments)
            found = re.match(pattern_of(lines), told + "\n")
            assert found, f"{tool} {arguments} answered\n{told}\nand not\n" + "\n".join(lines)
            named = [int(number) for line in lines for number in re.findall(r"\[(\d+)\]", line)]
            numbers.update(zip(named, map(int, found.groups())))
            tools.append(tool)
    assert tools == ["launch", "click", "type", "click", "wait", "save_test"]
