"""A Debian of its own in a folder, without compiler and checkout, in which packages are installed and removed."""

import hashlib
import os
import shutil
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
PACKAGES = ROOT / "build" / "packages"
SUITE = "bookworm"
# The loopback interface of the network of its own, and what programs need of a system.
ENTER = """
set -e
ip link set lo up
mount --make-rprivate /
mount -t proc proc "$0/proc"
mount -t tmpfs tmpfs "$0/dev/shm"
exec chroot "$0" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
"""
NO_RESTARTS = "#!/bin/sh\nexit 101\n"


def run(*command, **options):
    """The output of a command, which has to end well."""
    ended = subprocess.run(
        list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options
    )
    assert ended.returncode == 0, ended.stdout
    return ended.stdout


def fields(package, *names):
    """Fields of a package, in their order."""
    return [run("dpkg-deb", "--field", package, name).strip() for name in names]


class CleanRoot:
    """One such system; the commands in it have no network but that of their own."""

    def __init__(self, folder):
        self.folder = folder

    def run(self, *command, network=False):
        """The output of a command in it, which has to end well."""
        own = ["unshare", "--mount", "--pid", "--fork", "--kill-child"] + ([] if network else ["--net"])
        return run(*own, "sh", "-c", ENTER, self.folder, *command)

    def install(self, *packages):
        """Installs files with the packages that they need and recommend, which have been downloaded."""
        names = []
        for package in packages:
            shutil.copy(package, self.folder / "opt")
            names.append(f"/opt/{package.name}")
        return self.run("apt-get", "-y", "-q", "install", *names, "speedcrunch")

    def files(self):
        """All paths of the system that are on its disk."""
        skipped = ("proc", "sys", "dev", "tmp", "opt", "run")
        found = set()
        for place, folders, names in os.walk(self.folder):
            if Path(place) == self.folder:
                folders[:] = [name for name in folders if name not in skipped]
            here = os.path.relpath(place, self.folder)
            found.update(os.path.join(here, name) for name in [*folders, *names])
        return found


def make(tmp_path_factory, packages):
    """A system with all that these packages want, downloaded and not installed. One is kept for the next run.

    Skips the test where no such system can be made, and fails where the packages want what there is not.
    """
    if os.geteuid() != 0:
        pytest.skip("a system in a folder can be entered by root alone")
    if shutil.which("mmdebstrap") is None:
        pytest.skip("mmdebstrap is missing")
    wanted = "\n".join(text for package in packages for text in fields(package, "Depends", "Recommends"))
    kept = PACKAGES / f"root-{hashlib.sha256(wanted.encode()).hexdigest()[:12]}"
    if not kept.is_dir():
        _make_anew(kept, packages)
    folder = tmp_path_factory.mktemp("clean") / "root"
    run("cp", "-a", "--reflink=auto", kept, folder)
    return CleanRoot(folder)


def _make_anew(kept, packages):
    for old in PACKAGES.glob("root-*"):
        shutil.rmtree(old)
    unfinished = PACKAGES / "root-unfinished"
    command = ["mmdebstrap", "--mode=root", "--variant=apt", "--skip=cleanup/apt", "--format=directory"]
    command += ["--dpkgopt=force-unsafe-io", "--aptopt=Acquire::Languages none", SUITE, str(unfinished)]
    made = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if made.returncode != 0:
        pytest.skip(f"mmdebstrap cannot make a system here: {made.stdout[-500:]}")
    (unfinished / "usr/sbin/policy-rc.d").write_text(NO_RESTARTS)
    (unfinished / "usr/sbin/policy-rc.d").chmod(0o755)
    for package in packages:
        shutil.copy(package, unfinished / "opt")
    names = [f"/opt/{package.name}" for package in packages]
    shutil.copy("/etc/resolv.conf", unfinished / "etc" / "resolv.conf")
    download = ["apt-get", "-y", "-q", "--download-only", "install", *names, "speedcrunch"]
    CleanRoot(unfinished).run(*download, network=True)
    unfinished.rename(kept)


def with_version(package, version, folder):
    """The same package with another version, and with a file that the next one does not have."""
    contents = folder / "contents"
    shutil.rmtree(contents, ignore_errors=True)
    run("dpkg-deb", "--raw-extract", package, contents)
    control = contents / "DEBIAN" / "control"
    (own,) = fields(package, "Version")
    control.write_text(control.read_text().replace(own, version))
    (name,) = fields(package, "Package")
    (contents / "usr" / "share" / "doc" / name / "only-in-the-earlier-version").write_text("")
    result = folder / package.name.replace(own, version)
    run("dpkg-deb", "--root-owner-group", "--build", contents, result)
    return result
