"""The archive for Windows: unpacked into a folder, and a program driven with what is in it."""

import os
import re
import shutil
import stat
import zipfile
from pathlib import Path

import pytest

from making import ROOT, differing, make, make_elsewhere

MEGABYTE = 1_000_000
BUILD = Path(os.environ["QTDRIVER_BUILD"])
QT = Path(os.environ["QT4_WINDOWS"])
START_SECONDS = 120


@pytest.fixture(scope="module")
def made():
    return make("archive")


@pytest.fixture(scope="module")
def unpacked(made, tmp_path_factory):
    """The one folder of the archive."""
    folder = tmp_path_factory.mktemp("unpacked")
    (archive,) = made.glob("*-windows-qt4.zip")
    with zipfile.ZipFile(archive) as file:
        file.extractall(folder)
    (top,) = folder.iterdir()
    assert archive.name == f"{top.name}-windows-qt4.zip"
    return top


@pytest.fixture
def program(tmp_path):
    """The showcase with its Qt beside it, as a user of Windows has an application."""
    for source in [BUILD / "bin" / "showcase.exe", *QT.glob("bin/Qt*4.dll")]:
        shutil.copy(source, tmp_path)
    return tmp_path / "showcase.exe"


def test_a_program_is_driven_with_what_is_in_it(unpacked, program, monkeypatch):
    from qtdriver import Driver, eventually

    monkeypatch.delenv("QT4_WINDOWS")  # with it, the runner would add the folders of the compiler's libraries
    with Driver(build=unpacked, timeout=30, start_timeout=START_SECONDS) as driver:
        app = driver.launch(program)
        window = app.window(name="showcase")
        window.widget("brewButton").activate()
        eventually(window.widget("lastEvent")).has(text="clicked: brewButton")
        maps = Path(f"/proc/{app.pid}/maps").read_text()
    loaded = {Path(path) for path in re.findall(r" (/.*\.dll)$", maps, re.MULTILINE)}
    binaries = unpacked / "windows-qt4" / "bin"
    assert {path for path in loaded if binaries in path.parents} == set(binaries.iterdir())


def test_it_says_what_is_in_it(unpacked):
    text = (unpacked / "README.md").read_text()
    paths = [name.replace("qtN", "qt4") for name in re.findall(r"^\| `([^`]+)` \|", text, re.MULTILINE)]
    assert len(paths) > 4
    for name in [*paths, *re.findall(r"\]\(([^)]+)\)", text)]:
        assert (unpacked / name).exists(), name


def test_a_licence_comes_with_each_library_of_the_compiler(unpacked):
    folder = unpacked / "windows-qt4"
    libraries = {path.name for path in folder.glob("bin/*.dll")}
    own = {"qtdriver.dll", "qttestability.dll"}
    assert own < libraries
    assert {path.name for path in folder.glob("licences/*")} == {f"{name}.txt" for name in libraries - own}
    for path in folder.glob("licences/*"):
        assert "opyright" in path.read_text(errors="replace")
    assert (unpacked / "LICENSE").read_text() == (ROOT / "LICENSE").read_text()


def test_it_is_small(unpacked, made):
    (archive,) = made.glob("*-windows-qt4.zip")
    assert archive.stat().st_size < 3 * MEGABYTE
    assert (unpacked / "windows-qt4" / "bin" / "qtdriver.dll").stat().st_size < MEGABYTE


def test_two_folders_make_the_same_bytes(made, tmp_path):
    assert differing("*.zip", made, make_elsewhere("archive", tmp_path)) == []


def test_no_library_has_the_path_of_the_folder_that_made_it(made, unpacked):
    for path in unpacked.rglob("*"):
        assert not path.is_file() or str(made.parents[1]).encode() not in path.read_bytes(), path


def test_its_files_have_the_modes_of_files(made):
    (archive,) = made.glob("*-windows-qt4.zip")
    with zipfile.ZipFile(archive) as file:
        modes = {stat.S_IMODE(entry.external_attr >> 16) for entry in file.infolist()}
    assert modes <= {0o644, 0o755}
