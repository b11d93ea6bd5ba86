"""Finding out which Qt a Windows program links and what it lacks, with programs that are compiled here. None of them runs."""

import os

import pytest

from qtdriver import errors, qt_major
from qtdriver.launch import program
from qtdriver.launch.agent import windows_agent
from qtdriver.launch.dlls import windows_path
from qtdriver.launch.windowsqt import require_same_kind
from windowsprograms import GCC_NAME, MICROSOFT_NAME, Workshop, agents, with_machine

X86 = 0x014C


@pytest.fixture
def workshop(tmp_path):
    return Workshop(tmp_path / "bin")


@pytest.fixture(autouse=True)
def folder(tmp_path):
    (tmp_path / "bin").mkdir()


@pytest.mark.parametrize(
    "name, major",
    [("QtGui4.dll", 4), ("Qt5Widgets.dll", 5), ("Qt6Widgets.dll", 6), ("QT5WIDGETS.DLL", 5)],
)
def test_the_widgets_library_tells_the_version_even_where_it_is_not_found(workshop, name, major):
    assert qt_major(workshop.program(workshop.import_library(name)), {}) == major


def test_qt_is_found_behind_a_library_beside_the_program_whatever_the_case_of_its_name(workshop):
    workshop.library("PRIVATE.DLL", workshop.import_library("Qt6Widgets.dll"))
    linked = workshop.program(workshop.import_library("private.dll"))
    assert qt_major(linked, {}) == 6


def test_qt_is_found_behind_a_library_in_the_search_path(workshop, tmp_path):
    elsewhere = Workshop(tmp_path / "other folder")
    elsewhere.folder.mkdir()
    elsewhere.library("private.dll", workshop.import_library("Qt5Widgets.dll"))
    linked = workshop.program(workshop.import_library("private.dll"))
    assert qt_major(linked, {"WINEPATH": f"C:\\windows;{windows_path(elsewhere.folder)}"}) == 5
    with pytest.raises(errors.NoQtError):
        qt_major(linked, {})


def test_libraries_that_link_each_other_are_each_read_once(workshop):
    workshop.library("one.dll", workshop.import_library("two.dll"))
    workshop.library("two.dll", workshop.import_library("one.dll"))
    with pytest.raises(errors.NoQtError):
        qt_major(workshop.program(workshop.import_library("one.dll")), {})


def test_a_program_without_qt_is_refused(workshop):
    with pytest.raises(
        errors.NoQtError, match=r"(?s)program.exe links no Qt \(\d+ libraries looked through\).*qt=N"
    ):
        qt_major(workshop.program(), {})


def test_qt_without_widgets_has_its_own_message(workshop):
    linked = workshop.program(workshop.import_library("Qt5Core.dll"))
    with pytest.raises(errors.NoWidgetsError, match="(?s)links Qt5Core.dll, but not Qt's widgets.*qt=N"):
        qt_major(linked, {})


def test_qt_inside_the_program_is_refused(workshop):
    linked = workshop.program(text="QWidget: Must construct a QApplication before a QWidget")
    with pytest.raises(errors.StaticQtError, match="(?s)statically.*with Qt's DLLs"):
        qt_major(linked, {})


@pytest.mark.parametrize("name", ["QtGuid4.dll", "Qt5Widgetsd.dll", "Qt6Widgetsd.dll"])
def test_a_debug_build_of_qt_is_refused(workshop, name):
    with pytest.raises(errors.CompilerError, match=f"(?s)links {name}, a debug build of Qt.*release build"):
        qt_major(workshop.program(workshop.import_library(name)), {})


def test_a_library_is_no_program(workshop):
    library = workshop.library("private.dll", workshop.import_library("Qt5Widgets.dll"))
    with pytest.raises(errors.UnknownFormatError, match="library of Windows\nName the program that loads it"):
        qt_major(library, {})


@pytest.mark.parametrize("content", [b"MZ", b"MZ" + bytes(200), b"MZ" + b"\xff" * 500])
def test_a_damaged_program_is_refused(tmp_path, content):
    damaged = tmp_path / "damaged.exe"
    damaged.write_bytes(content)
    with pytest.raises(errors.UnknownFormatError, match="damaged.exe is no readable program of Windows"):
        qt_major(damaged, {})


def test_a_program_changed_on_disk_is_read_again(workshop):
    assert qt_major(workshop.program(workshop.import_library("Qt5Widgets.dll")), {}) == 5
    changed = workshop.program(workshop.import_library("Qt6Widgets.dll"), text="longer than before")
    assert qt_major(changed, {}) == 6


def test_an_agent_for_another_processor_is_refused(workshop, tmp_path):
    build = agents(workshop, tmp_path / "build", 5)
    linked = with_machine(workshop.program(workshop.import_library("Qt5Widgets.dll")), X86)
    with pytest.raises(
        errors.ArchitectureError, match="is made for x86, but the agent .*qtdriver.dll for x86-64"
    ):
        require_same_kind(linked, windows_agent(5, build))


def test_an_agent_of_another_compiler_is_refused(workshop, tmp_path):
    agent = Workshop(tmp_path / "agent")
    agent.folder.mkdir()
    of_gcc = agent.import_library("Qt5Core.dll", exports=GCC_NAME)
    made = agent.program(of_gcc, calls=GCC_NAME, name="agent.exe")
    same = workshop.program(of_gcc, calls=GCC_NAME, name="same.exe")
    require_same_kind(same, made)
    of_microsoft = workshop.import_library("Qt5Widgets.dll", exports=MICROSOFT_NAME)
    other = workshop.program(of_microsoft, calls=MICROSOFT_NAME, name="other.exe")
    with pytest.raises(errors.CompilerError, match="made by Microsoft's compiler, but the agent .* by MinGW"):
        require_same_kind(other, made)


def test_an_agent_that_is_not_built_is_told_with_the_command_that_builds_it(tmp_path):
    with pytest.raises(errors.AgentNotBuiltError, match="scripts/build.sh 6 --windows"):
        windows_agent(6, tmp_path)


def test_the_library_that_loads_the_agent_belongs_to_it(workshop, tmp_path):
    build = agents(workshop, tmp_path / "build", 4)
    (build / "windows-qt4" / "bin" / "qttestability.dll").unlink()
    with pytest.raises(errors.AgentNotBuiltError, match="at .*qttestability.dll"):
        windows_agent(4, build)


def test_a_windows_program_need_not_be_executable(workshop):
    made = workshop.program()
    made.chmod(0o644)
    assert program.find_program(str(made)) == made


def test_a_windows_program_is_found_in_the_current_folder_by_its_name(workshop, monkeypatch):
    made = workshop.program(name="Editor.EXE")
    monkeypatch.chdir(made.parent)
    assert program.find_program("Editor.EXE") == made
    with pytest.raises(errors.ProgramNotFoundError):
        program.find_program("Writer.EXE")


def test_a_program_of_linux_is_not_found_in_the_current_folder(tmp_path, monkeypatch):
    (tmp_path / "tool.exe").write_text("#!/bin/sh\n")
    monkeypatch.chdir(tmp_path)
    with pytest.raises(errors.ProgramNotFoundError):
        program.find_program("tool.exe")


def test_what_cannot_be_read_is_told(workshop, monkeypatch):
    made = workshop.program()
    if os.geteuid() == 0:
        monkeypatch.setattr(type(made), "open", _refuse)
    else:
        made.chmod(0o111)
    with pytest.raises(errors.ProgramNotExecutableError, match="cannot be read"):
        qt_major(made, {})


def _refuse(*_):
    raise PermissionError(13, "Permission denied")
