"""Runs clang-tidy over the sources of the agent that have changed since it last passed.

Most of its time goes to Qt's headers, which each source includes. So sources that have no names in common are put together,
and looked at as one.
"""

import hashlib
import json
import re
import shlex
import subprocess
from functools import lru_cache
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
CONFIGURATION = ROOT / ".clang-tidy"
MOST_TOGETHER = 12

# A name that begins at the start of a line is declared for the whole file: namespaces are not indented.
FILE_SCOPE = re.compile(r"^(?![#/ }])[^\n;(={]*?\b(\w+) ?(?:\[[^\]\n]*\] ?)*(?:[;(={:]|$)", re.MULTILINE)


def names(text):
    """All names that a source may declare at the scope of its file; some more do no harm."""
    return set(FILE_SCOPE.findall(text)) - {"namespace"}


def groups(sources):
    """Lists of sources that can be compiled as one: those of a list declare nothing by the same name."""
    found = []
    for source in sources:
        declared = names(source.read_text())
        for members, taken in found:
            if len(members) < MOST_TOGETHER and not declared & taken:
                members.append(source)
                taken |= declared
                break
        else:
            found.append(([source], declared))
    return [members for members, _ in found]


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
        facts = [version(), stamp(CONFIGURATION), str(self.options(source)), *map(stamp, files)]
        return self.folder / hashlib.sha256("\n".join(facts).encode()).hexdigest()

    def run(self, source, options):
        """The complaints about a file, "" for none."""
        command = ["clang-tidy", "--quiet", f"--config-file={CONFIGURATION}", str(source), "--", *options]
        result = subprocess.run(command, cwd=self.build, capture_output=True, text=True)
        return "" if result.returncode == 0 else result.stdout + result.stderr

    def complaints_about_all(self, sources):
        """The complaints about some sources that are looked at as one."""
        options = dict.fromkeys(option for source in sources for option in self.options(source))
        together = self.folder / f"{sources[0].stem}_and_{len(sources) - 1}_others.cpp"
        together.write_text("".join(source.read_text() for source in sources))
        complaints = self.run(together, options)
        together.unlink()
        return complaints

    def complaints(self, sources):
        """The complaints about some sources. Those that it had passed before are not looked at again."""
        marks = {source: self.mark(source) for source in sources}
        changed = [source for source, mark in marks.items() if not (mark and mark.exists())]
        found = []
        for members in groups(changed):
            if len(members) > 1 and not self.complaints_about_all(members):
                passed = members
            else:  # one by one, which is what counts, and tells the lines
                outputs = {source: self.run(source, self.options(source)) for source in members}
                found += filter(None, outputs.values())
                passed = [source for source in members if not outputs[source]]
            for mark in filter(None, map(marks.get, passed)):
                mark.touch()
        return found
