"""Runs clang-tidy over the sources of the agent that have changed since it last passed.

Sources that can share Qt's headers are put together and looked at as one, which takes a fraction of the time.
"""

import hashlib
import json
import re
import shlex
import subprocess
import sys
from bisect import bisect_left
from functools import lru_cache
from itertools import accumulate
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))

from together import groups  # noqa: E402

CONFIGURATION = ROOT / ".clang-tidy"
MOST_TOGETHER = 100
"""Qt's headers, which clang-tidy checks with each run, cost as much as ten sources."""
ANALYZER_OPTIONS = ["-Xclang", "-analyzer-config", "-Xclang", "max-nodes=75000"]
"""How many states the static analyzer explores in one function. Most functions that call Qt exhaust any limit: its default,
225,000, takes three times as long and has found nothing more."""

PRECOMPILED = re.compile("pch|^-include$")
"""Options for precompiled headers, without which clang-tidy sees whether a source includes what it uses."""


@lru_cache(maxsize=None)
def version():
    return subprocess.run(["clang-tidy", "--version"], check=True, capture_output=True, text=True).stdout


@lru_cache(maxsize=None)
def stamp(path):
    """Tells whether a file has changed: by its content where it is ours, by its date where a package brings it."""
    if path.is_relative_to(ROOT):
        return hashlib.sha256(path.read_bytes()).hexdigest()
    status = path.stat()
    return f"{path} {status.st_size} {status.st_mtime_ns}"


def compiled_with(entry):
    """The sources that a command of the build compiles: one, or several that another file includes."""
    file = Path(entry["file"])
    if file.parent.name != "Unity":
        return [file]
    return [Path(name) for name in re.findall(r'^#include "(.*\.cpp)"$', file.read_text(), re.MULTILINE)]


class Tidy:
    """clang-tidy with the options of one build, and what it has passed there."""

    def __init__(self, build):
        self.build = build
        self.folder = ROOT / "build" / "clang-tidy" / build.name
        self.folder.mkdir(parents=True, exist_ok=True)
        commands = json.loads((build / "compile_commands.json").read_text())
        self.commands = {source: entry for entry in commands for source in compiled_with(entry)}

    @lru_cache(maxsize=None)
    def dependencies(self):
        """The files that each object was made of, as the last build knows them."""
        listing = subprocess.run(
            ["ninja", "-C", str(self.build), "-t", "deps"], check=True, capture_output=True, text=True
        ).stdout
        found = {}
        for paragraph in listing.split("\n\n"):
            head, *files = paragraph.splitlines() or [""]
            if "(VALID)" in head:
                found[head.split(":")[0]] = [
                    Path(self.build, file.strip()).resolve() for file in files if not file.endswith(".gch")
                ]
        return found

    def options(self, source):
        """The compiler's options for a source, with the folder of the source for its includes."""
        words = shlex.split(self.commands[source]["command"])
        end, start = words.index("-o"), next(i for i, word in enumerate(words) if word.startswith("-"))
        return [*(word for word in words[start:end] if not PRECOMPILED.search(word)), f"-I{source.parent}"]

    def mark(self, source):
        """The file that is there when clang-tidy has passed this source as it is; None when that is unknown."""
        output = shlex.split(self.commands[source]["command"])
        files = self.dependencies().get(output[output.index("-o") + 1])
        if not files or not all(file.exists() for file in files):
            return None
        facts = [
            version(),
            stamp(CONFIGURATION),
            str(source),
            str(self.options(source)),
            str(ANALYZER_OPTIONS),
            *map(stamp, files),
        ]
        return self.folder / hashlib.sha256("\n".join(facts).encode()).hexdigest()

    def run(self, source, options):
        """The complaints about a file, "" for none."""
        command = [
            "clang-tidy",
            "--quiet",
            f"--config-file={CONFIGURATION}",
            str(source),
            "--",
            *options,
            *ANALYZER_OPTIONS,
        ]
        result = subprocess.run(command, cwd=self.build, capture_output=True, text=True)
        return "" if result.returncode == 0 else result.stdout + result.stderr

    def complaints_about_all(self, sources):
        """The complaints about some sources that are checked as one, and those of the sources in whose lines they are."""
        options = [*self.options(sources[0]), *(f"-I{source.parent}" for source in sources)]
        together = self.folder / f"{sources[0].stem}_and_{len(sources) - 1}_others.cpp"
        texts = [source.read_text() for source in sources]
        together.write_text("".join(texts))
        complaints = self.run(together, options)
        together.unlink()
        ends = list(accumulate(text.count("\n") for text in texts))
        pattern = rf"^{re.escape(str(together))}:(\d+):.*(?:warning|error):"
        lines = map(int, re.findall(pattern, complaints, re.MULTILINE))
        blamed = {sources[bisect_left(ends, line)] for line in lines if line <= ends[-1]}
        return complaints, [source for source in sources if source in blamed]

    def complaints(self, sources):
        """The complaints about some sources. Sources that passed before are not checked again."""
        marks = {source: self.mark(source) for source in sources}
        changed = [source for source, mark in marks.items() if not (mark and mark.exists())]
        return [
            complaint
            for members in groups(changed, MOST_TOGETHER)
            for complaint in self.complaints_about(members, marks)
        ]

    def complaints_about(self, members, marks):
        """The complaints about sources that can be checked as one. Marks the sources that pass.

        Where there are complaints about all, the blamed sources are checked alone, which is what counts, and the others
        once more without them: an error of the compiler hides other complaints. Complaints that blame no source, such as
        one about a header, have each half checked.
        """
        if len(members) == 1:
            complaints, parts = self.run(members[0], self.options(members[0])), []
        else:
            complaints, blamed = self.complaints_about_all(members)
            half = len(members) // 2
            parts = [[source] for source in blamed] or [members[:half], members[half:]]
            others = [source for source in members if source not in blamed]
            parts += [others] if blamed and others else []
        if not complaints:
            for mark in filter(None, map(marks.get, members)):
                mark.touch()
            return []
        if not parts:
            return [complaints]
        return [complaint for part in parts for complaint in self.complaints_about(part, marks)]
