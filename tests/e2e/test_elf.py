"""Finding out which Qt a program links, with programs that are compiled here and programs of the system."""

import os
import shutil
from pathlib import Path

import pytest

from qtdriver import errors
from qtdriver.launch import agent, program
from qtdriver.launch.qtversion import qt_major

MAIN = "int main(void) { return 0; }"


@pytest.fixture
def fake_library(tmp_path, compile_c):
    """Makes an empty library with a file name that is also its soname, in a folder below tmp_path."""

    def make(name, *options, folder="lib", source=""):
        path = tmp_path / folder / name
        path.parent.mkdir(exist_ok=True)
        return compile_c(
            path, "-shared", f"-Wl,-soname,{name}", "-Wl,--no-as-needed", *options, source=source
        )

    return make


@pytest.fixture
def program_linking(tmp_path, compile_c):
    """Compiles a program that links the given libraries, with further options."""

    def make(*options, source=MAIN):
        path = tmp_path / "bin" / "program"
        path.parent.mkdir(exist_ok=True)
        return compile_c(path, "-Wl,--no-as-needed", *options, source=source)

    return make


@pytest.mark.parametrize(
    "name, major", [("libQtGui.so.4", 4), ("libQt5Widgets.so.5", 5), ("libQt6Widgets.so.6", 6)]
)
def test_the_widgets_library_tells_the_version_even_where_it_is_not_found(
    fake_library, program_linking, name, major
):
    library = fake_library(name)
    path = program_linking(library)
    library.unlink()
    assert qt_major(path, {}) == major


def test_a_program_of_the_system_is_recognised():
    speedcrunch = shutil.which("speedcrunch")
    if speedcrunch is None:
        pytest.skip("speedcrunch is not installed")
    assert qt_major(program.find_program("speedcrunch")) == 5


@pytest.mark.parametrize("tag", ["--enable-new-dtags", "--disable-new-dtags"])
def test_qt_is_found_behind_a_private_library_beside_the_program(fake_library, program_linking, tag):
    fake_library("libprivate.so.1", fake_library("libQt6Widgets.so.6"))
    path = program_linking(
        "-L", path_of(fake_library), "-l:libprivate.so.1", f"-Wl,{tag},-rpath,$ORIGIN/../lib"
    )
    assert qt_major(path, {}) == 6


def path_of(fake_library):
    """The folder that fake_library writes into."""
    return fake_library("libempty.so").parent


def test_a_library_uses_the_rpath_of_the_program_but_not_its_runpath(fake_library, program_linking):
    inner = fake_library("libinner.so.1", fake_library("libQt5Widgets.so.5"))
    outer = fake_library("libouter.so.1", inner)
    assert qt_major(program_linking(outer, "-Wl,--disable-new-dtags,-rpath,$ORIGIN/../lib"), {}) == 5
    runpath = program_linking(
        outer, "-Wl,--enable-new-dtags,-rpath,$ORIGIN/../lib", f"-Wl,-rpath-link,{inner.parent}"
    )
    with pytest.raises(errors.NoQtError):
        qt_major(runpath, {})


def test_libraries_are_looked_for_under_the_environment_of_the_application(fake_library, program_linking):
    private = fake_library("libprivate.so.1", fake_library("libQt5Widgets.so.5"))
    path = program_linking(private)
    assert qt_major(path, {"LD_LIBRARY_PATH": f"/nowhere:{private.parent}"}) == 5
    with pytest.raises(errors.NoQtError):
        qt_major(path, {})


def test_a_program_behind_a_symbolic_link_finds_libraries_beside_the_real_file(
    fake_library, program_linking, tmp_path
):
    private = fake_library("libprivate.so.1", fake_library("libQt5Widgets.so.5"))
    link = tmp_path / "link"
    link.symlink_to(program_linking(private, "-Wl,-rpath,$ORIGIN/../lib"))
    assert qt_major(link, {}) == 5


def test_libraries_that_link_each_other_are_each_read_once(fake_library, program_linking):
    first = fake_library("libfirst.so.1")
    second = fake_library("libsecond.so.1", first, "-Wl,-rpath,$ORIGIN")
    fake_library("libfirst.so.1", second, "-Wl,-rpath,$ORIGIN")
    path = program_linking("-L", first.parent, "-l:libfirst.so.1", "-Wl,-rpath,$ORIGIN/../lib")
    with pytest.raises(errors.NoQtError):
        qt_major(path, {})


def test_a_program_changed_on_disk_is_read_again(fake_library, program_linking):
    assert qt_major(program_linking(fake_library("libQt5Widgets.so.5")), {}) == 5
    assert qt_major(program_linking(fake_library("libQt6Widgets.so.6"), "-lm"), {}) == 6


def test_qt_without_widgets_has_its_own_message(fake_library, program_linking):
    path = program_linking(fake_library("libQt5Core.so.5"), fake_library("libQt5Gui.so.5"))
    with pytest.raises(errors.NoWidgetsError, match="(?s)links libQt5Core.so.5, but not Qt's widgets.*qt=N"):
        qt_major(path, {})


def test_a_program_without_qt_is_told_of_plugins():
    with pytest.raises(errors.NoQtError, match="(?s)/bin/true links no Qt.*plugin.*qt=N"):
        qt_major(program.find_program("/bin/true"))


def test_a_static_program_is_told_that_nothing_can_be_loaded(program_linking):
    with pytest.raises(errors.StaticProgramError, match="statically linked") as caught:
        qt_major(program_linking("-static"))
    assert not isinstance(caught.value, errors.StaticQtError)


@pytest.mark.parametrize("options", [(), ("-static",), ("-rdynamic", "-s")])
def test_qt_inside_the_program_is_found_by_its_symbols(program_linking, options):
    source = "const char *qVersion(void) { return 0; } " + MAIN
    with pytest.raises(errors.StaticQtError, match="Qt is linked into .*/program statically"):
        qt_major(program_linking(*options, source=source))


def test_qt_inside_a_stripped_program_is_found_by_a_text_of_its_own(program_linking):
    text = "QWidget: Must construct a QApplication before a QWidget"
    source = f'#include <stdio.h>\nint main(void) {{ puts("{text}"); }}'
    with pytest.raises(errors.StaticQtError):
        qt_major(program_linking("-s", source=source))


def test_a_program_that_asks_for_qt_by_name_has_no_qt_inside(program_linking):
    source = '#include <stdio.h>\nint main(void) { puts("qVersion"); }'
    with pytest.raises(errors.NoQtError):
        qt_major(program_linking(source=source))


def test_a_script_is_told_to_name_its_binary(tmp_path):
    script = tmp_path / "start"
    script.write_text("#!/bin/sh\nexec true\n")
    with pytest.raises(errors.ScriptProgramError, match=r"(?s)script \(run by /bin/sh\).*qt=N"):
        qt_major(script)


@pytest.mark.parametrize("content", [b"", b"hello", b"\x7fELF", b"\x7fELF\x02\x01\x01" + bytes(200)])
def test_a_file_that_is_no_program_is_refused(tmp_path, content):
    path = tmp_path / "file"
    path.write_bytes(content)
    with pytest.raises(errors.UnknownFormatError):
        qt_major(path)


def test_a_truncated_program_is_refused(tmp_path, program_linking):
    path = tmp_path / "half"
    path.write_bytes(program_linking().read_bytes()[:700])
    with pytest.raises(errors.ProgramError):
        qt_major(path)


def test_programs_are_looked_up_in_the_path_and_as_files(tmp_path, monkeypatch):
    tool = tmp_path / "tool"
    tool.write_text("")
    tool.chmod(0o755)
    monkeypatch.setenv("PATH", str(tmp_path))
    monkeypatch.chdir(tmp_path)
    assert program.find_program("tool") == program.find_program("./tool") == tool


def test_a_missing_program_and_one_that_cannot_be_executed_are_told_apart(tmp_path):
    (tmp_path / "text").write_text("")
    with pytest.raises(errors.ProgramNotFoundError, match="in PATH"):
        program.find_program("no-such-program-anywhere")
    with pytest.raises(errors.ProgramNotFoundError, match="no such file"):
        program.find_program(f"{tmp_path}/missing")
    for path in (tmp_path / "text", tmp_path):
        with pytest.raises(errors.ProgramNotExecutableError):
            program.find_program(str(path))


def test_a_missing_agent_is_told_with_its_place_and_the_command_that_builds_it(tmp_path):
    with pytest.raises(errors.AgentNotBuiltError) as caught:
        agent.agent_library(6, tmp_path)
    for part in ("Qt 6", f"{tmp_path}/qt6/lib/libqtdriver-preload.so", "scripts/build.sh 6"):
        assert part in str(caught.value)


@pytest.fixture
def installed(monkeypatch):
    """The runner as if it did not run from a checkout."""
    monkeypatch.setattr(agent, "checkout_file", lambda relative: None)


def test_agents_that_came_with_the_runner_are_used(tmp_path, monkeypatch, installed):
    assert agent.default_build() == Path.cwd() / "build"
    monkeypatch.setattr(agent, "_OF_WHEEL", tmp_path)
    assert agent.default_build() == tmp_path


def test_the_runner_of_the_debian_package_tells_which_package_has_the_agent(tmp_path, monkeypatch, installed):
    monkeypatch.setattr(agent, "_DEBIAN_PACKAGES", Path(agent.__file__).resolve().parents[2])
    monkeypatch.setattr(agent, "_OF_DEBIAN", tmp_path)
    assert agent.default_build() == tmp_path
    with pytest.raises(errors.AgentNotBuiltError, match="'apt install qtdriver-agent-qt6'"):
        agent.agent_library(6)
    with pytest.raises(errors.AgentNotBuiltError, match="scripts/build.sh 4"):
        agent.agent_library(4)


def test_the_folder_of_the_agents_may_be_a_text(build):
    assert agent.agent_library(5, str(build)) == agent.agent_library(5, build)


def test_an_agent_whose_path_the_loader_cannot_take_is_refused(tmp_path, build):
    shutil.copytree(build, tmp_path / "my build")
    with pytest.raises(errors.AgentPathError, match="blank"):
        agent.agent_library(5, tmp_path / "my build")


def test_a_program_for_another_processor_is_refused(tmp_path, build, program_linking):
    path = program_linking()
    content = bytearray(path.read_bytes())
    content[18:20] = (243).to_bytes(2, "little")
    other = tmp_path / "other"
    other.write_bytes(content)
    with pytest.raises(errors.ArchitectureError, match="EM_RISCV"):
        agent.require_same_architecture(other, agent.agent_library(5, build))
    agent.require_same_architecture(path, agent.agent_library(5, build))


def test_a_qt_that_is_older_than_the_agents_is_refused(tmp_path, compile_c):
    """Qt 5.12 has the versions of its symbols up to its own; the agent asks for Qt_5.15."""

    def qt(folder, *versions):
        script = tmp_path / "versions"
        nodes = zip(versions, ("", *versions))
        script.write_text("\n".join(f"{version} {{ }} {before};" for version, before in nodes))
        (tmp_path / folder).mkdir()
        source = "\n".join(
            f'void f{n}(void) {{}} __asm__(".symver f{n}, used{n}@@{v}");' for n, v in enumerate(versions)
        )
        options = ["-shared", "-fPIC", f"-Wl,--version-script={script}", "-Wl,-soname,libQt5Core.so.5"]
        return compile_c(tmp_path / folder / "libQt5Core.so.5", *options, source=source)

    old, new = qt("old", "Qt_5", "Qt_5.12"), qt("new", "Qt_5", "Qt_5.12", "Qt_5.15")
    (tmp_path / "agents").mkdir()
    using = "extern void used2(void); void start(void) { used2(); }"
    compile_c(tmp_path / "agents" / "libqtdriver.so", "-shared", "-fPIC", new, source=using)
    library = tmp_path / "agents" / "libqtdriver-preload.so"
    path = compile_c(tmp_path / "editor", "-Wl,--no-as-needed", new, source=MAIN)
    agent.require_recent_qt(path, library, {"LD_LIBRARY_PATH": str(new.parent)})
    with pytest.raises(errors.OldQtError, match="Qt 5.15 or newer") as caught:
        agent.require_recent_qt(path, library, {"LD_LIBRARY_PATH": str(old.parent)})
    assert str(old) in str(caught.value)


def test_every_error_is_one_that_the_command_line_reports():
    kinds = (errors.ProgramError, errors.AgentNotBuiltError, errors.AgentPathError)
    assert all(issubclass(kind, errors.QtDriverError) for kind in kinds)
    assert os.path.isabs(agent.default_build())
