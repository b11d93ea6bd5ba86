"""Makes packages, from this checkout and from a copy of it."""

import os
import shutil
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def run(*command, **options):
    """The output of a command, which has to end well."""
    ended = subprocess.run(
        list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options
    )
    assert ended.returncode == 0, ended.stdout
    return ended.stdout


def make(kind, checkout=ROOT, **variables):
    """Has a checkout make packages. Returns the folder with them."""
    run(checkout / "scripts" / "package.sh", kind, env={**os.environ, **variables})
    return checkout / "build" / "packages"


def make_elsewhere(kind, folder):
    """The same from a copy of the sources in a folder: later, by a user with other habits, without a history or a cache."""
    checkout = folder / "elsewhere"
    tracked = run("git", "-C", ROOT, "ls-files", "--cached", "--others", "--exclude-standard").splitlines()
    for name in reversed(tracked):
        if (ROOT / name).is_file():  # those that git knows, and somebody has removed, are not
            (checkout / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(ROOT / name, checkout / name)
            (checkout / name).chmod(0o775 if os.access(ROOT / name, os.X_OK) else 0o664)
    date = run("git", "-C", ROOT, "log", "-1", "--format=%ct").strip()
    cache = str(folder / "cache")
    return make(
        kind, checkout, SOURCE_DATE_EPOCH=date, TZ="Asia/Tokyo", LANG="C", USER="somebody", CCACHE_DIR=cache
    )


def differing(pattern, first, second):
    """The names of the files that two folders do not have with the same bytes; at least one has to be there."""
    names = {path.name for folder in (first, second) for path in folder.glob(pattern)}
    assert names
    return [name for name in sorted(names) if not _same(first / name, second / name)]


def _same(first, second):
    return first.is_file() and second.is_file() and first.read_bytes() == second.read_bytes()
