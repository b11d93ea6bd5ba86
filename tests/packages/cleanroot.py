"""A Debian of its own in a folder, without compiler and checkout, in which packages are installed and removed."""

import hashlib
import os
import re
import shutil
import subprocess
from pathlib import Path

import pytest

from making import ROOT, run

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
OWN_SPACES = ["unshare", "--mount", "--pid", "--fork", "--kill-child"]
NO_RESTARTS = "#!/bin/sh\nexit 101\n"


def fields(package, *names):
    """Fields of a package, in their order."""
    return [run("dpkg-deb", "--field", package, name).strip() for name in names]


def recommended(package):
    """The names of the packages that a package recommends."""
    (text,) = fields(package, "Recommends")
    return re.findall(r"[a-z0-9][a-z0-9.+-]+", re.sub(r"\([^)]*\)", "", text))


class CleanRoot:
    """One such system; the commands in it have no network but that of their own."""

    def __init__(self, folder):
        self.folder = folder

    def run(self, *command, network=False):
        """The output of a command in it, which has to end well."""
        return run(*OWN_SPACES, *([] if network else ["--net"]), "sh", "-c", ENTER, self.folder, *command)

    def apt(self, *command, packages, network=False):
        """Runs a command of apt for these files, all that they recommend, and an application.

        What others recommend stays away: it is for desktops that people look at, and twice as much to install.
        """
        names = ["speedcrunch"]
        for package in packages:
            if not (self.folder / "opt" / package.name).exists():
                shutil.copy(package, self.folder / "opt")
            names.append(f"/opt/{package.name}")
            names += [name for name in recommended(package) if not name.startswith("qtdriver")]
        options = ("-y", "-q", "--no-install-recommends")
        return self.run("apt-get", *options, *command, "install", *names, network=network)

    def install(self, *packages):
        """Installs files with what they need and recommend, which has been downloaded."""
        return self.apt(packages=packages)

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
        pytest.skip("mmdebstrap is missing, which makes a system in a folder")
    allowed = subprocess.run([*OWN_SPACES, "--net", "true"], capture_output=True, text=True)
    if allowed.returncode != 0:
        pytest.skip(f"no network and no processes of its own for a system: {allowed.stderr.strip()}")
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
    shutil.copy("/etc/resolv.conf", unfinished / "etc" / "resolv.conf")
    root = CleanRoot(unfinished)
    root.apt("--simulate", packages=packages)  # fails for what Debian does not have
    try:
        root.apt("--download-only", packages=packages, network=True)
    except AssertionError as error:
        pytest.skip(f"what the packages need cannot be downloaded here: {str(error)[-500:]}")
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
    run("dpkg-deb", "--root-owner-group", "-Znone", "--build", contents, result)
    return result
