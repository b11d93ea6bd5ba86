"""Runs clang-tidy over the sources of the agent that have changed since it last passed.

Sources that can share Qt's headers are put together and looked at as one, which takes a fraction of the time.
"""

import hashlib
import json
import shlex
import subprocess
import sys
from functools import lru_cache
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


class Tidy:
    """clang-tidy with the options of one build, and what it has passed there."""

    def __init__(self, build):
        self.build = build
        self.folder = ROOT / "build" / "clang-tidy" / build.name
        self.folder.mkdir(parents=True, exist_ok=True)
        commands = json.loads((build / "compile_commands.json").read_text())
        self.commands = {Path(entry["file"]): entry for entry in commands}

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
                found[head.split(":")[0]] = [Path(self.build, file.strip()).resolve() for file in files]
        return found

    def options(self, source):
        """The compiler's options for a source, with the folder of the source for its includes."""
        words = shlex.split(self.commands[source]["command"])
        end, start = words.index("-o"), next(i for i, word in enumerate(words) if word.startswith("-"))
        return [*words[start:end], f"-I{source.parent}"]

    def mark(self, source):
        """The file that is there when clang-tidy has passed this source as it is; None when that is unknown."""
        output = shlex.split(self.commands[source]["command"])
        files = self.dependencies().get(output[output.index("-o") + 1])
        if not files or not all(file.exists() for file in files):
            return None
        facts = [
            version(),
            stamp(CONFIGURATION),
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
        """The complaints about some sources that are looked at as one."""
        options = [*self.options(sources[0]), *(f"-I{source.parent}" for source in sources)]
        together = self.folder / f"{sources[0].stem}_and_{len(sources) - 1}_others.cpp"
        together.write_text("".join(source.read_text() for source in sources))
        complaints = self.run(together, options)
        together.unlink()
        return complaints

    def complaints(self, sources):
        """The complaints about some sources. Those that it had passed before are not looked at again."""
        marks = {source: self.mark(source) for source in sources}
        changed = [source for source, mark in marks.items() if not (mark and mark.exists())]
        return [
            complaint
            for members in groups(changed, MOST_TOGETHER)
            for complaint in self.complaints_about(members, marks)
        ]

    def complaints_about(self, members, marks):
        """The complaints about sources that can be looked at as one. They are looked for by halves: what counts, and tells
        the lines, is what it says of a source alone. Marks those that pass."""
        half = len(members) // 2
        if half and self.complaints_about_all(members):
            return [
                *self.complaints_about(members[:half], marks),
                *self.complaints_about(members[half:], marks),
            ]
        if not half:
            complaints = self.run(members[0], self.options(members[0]))
            if complaints:
                return [complaints]
        for mark in filter(None, map(marks.get, members)):
            mark.touch()
        return []
