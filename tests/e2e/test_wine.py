"""Wine's prefixes and servers, with a program in the place of Wine that only makes files and waits."""

import os
import subprocess
import sys

import pytest

import winestandin
from qtdriver import Driver, errors, eventually
from qtdriver.launch import linux, wine
from qtdriver.launch.dlls import windows_path
from qtdriver.launch.loading import start_of
from windowsprograms import Workshop, agents


@pytest.fixture
def place(tmp_path, monkeypatch):
    """A machine whose only Wine is the stand-in."""
    winestandin.install(tmp_path, monkeypatch)
    return tmp_path


@pytest.fixture
def desktops():
    made = wine.WineDesktops()
    yield made
    made.close()


def made_in(place):
    """A line for each prefix that was made."""
    return (place / "made").read_text().splitlines()


def test_the_pattern_is_named_after_the_version_and_made_once(place):
    folder = wine.make_pattern()
    assert folder == place / "cache" / "qtdriver" / "wine-9.9-Test-9.9-1"
    assert wine.make_pattern() == folder
    assert len(made_in(place)) == 1


def test_processes_that_need_the_pattern_at_the_same_time_make_it_once(place, monkeypatch):
    monkeypatch.setenv("SLOWLY", "1")
    program = "from qtdriver.launch import wine; print(wine.make_pattern())"
    environment = {**os.environ, "PYTHONPATH": os.pathsep.join(sys.path)}
    runs = [
        subprocess.Popen([sys.executable, "-c", program], env=environment, stdout=subprocess.PIPE, text=True)
        for _ in range(4)
    ]
    told = {run.communicate()[0].strip() for run in runs}
    assert told == {str(place / "cache" / "qtdriver" / "wine-9.9-Test-9.9-1")}
    assert len(made_in(place)) == 1


def test_the_pattern_is_made_without_a_screen_and_leads_to_no_folder_of_the_user(place, monkeypatch):
    monkeypatch.setenv("DISPLAY", ":77")
    folder = wine.make_pattern()
    assert made_in(place)[0].split()[1] == "none"
    documents = folder / "drive_c" / "users" / "ada" / "Documents"
    assert documents.is_dir() and not documents.is_symlink()
    assert "ShowCrashDialog" in (folder / "user.reg").read_text()


def test_a_pattern_that_cannot_be_made_is_told_and_leaves_nothing(place, monkeypatch):
    monkeypatch.setenv("REFUSING", "1")
    with pytest.raises(errors.WineError, match="no room on this disk"):
        wine.make_pattern()
    assert [path.name for path in (place / "cache" / "qtdriver").iterdir()] == ["wine.lock"]


def test_a_cache_that_cannot_be_written_is_told_with_the_way_out(place):
    (place / "cache").write_text("a file\n")
    with pytest.raises(errors.WineError, match="(?s)cannot be made.*WINEPREFIX"):
        wine.make_pattern()


def test_a_machine_without_wine_is_told_what_to_install(place, desktops):
    (place / "bin" / "wine").unlink()
    if wine.shutil.which("wine") or wine.shutil.which("wine64"):
        os.environ["PATH"] = str(place / "bin")  # the fixture puts the old one back
    with pytest.raises(errors.WineError, match="needs Wine, which is not installed"):
        desktops.on(dict(os.environ))


def test_each_desktop_has_its_own_settings_and_user_files_and_the_same_system(place, desktops):
    prefixes = [desktops.on({**os.environ, "DISPLAY": name}).prefix for name in (":1", ":2")]
    assert len(set(prefixes)) == 2 and len(made_in(place)) == 1
    for prefix in prefixes:
        assert prefix.parent == place / "run"
        assert (prefix / "dosdevices" / "c:" / "windows").resolve() == (
            wine.pattern_folder() / "drive_c/windows"
        )
    (prefixes[0] / "drive_c" / "users" / "ada" / "Documents" / "note.txt").write_text("mine\n")
    (prefixes[0] / "user.reg").write_text("mine\n")
    assert list((prefixes[1] / "drive_c" / "users" / "ada" / "Documents").iterdir()) == []
    assert (prefixes[1] / "user.reg").read_text() != "mine\n"


def test_programs_on_one_desktop_share_its_server(desktops, place):
    environment = {**os.environ, "DISPLAY": ":1"}
    assert desktops.on(environment) is desktops.on(environment)


def test_the_server_and_the_prefix_go_with_the_desktop(place, desktops):
    desktop = desktops.on(dict(os.environ))
    keeper = desktop._keeper.pid
    assert linux.session_of(keeper) == keeper
    desktops.close()
    assert linux.session_of(keeper) is None
    assert list((place / "run").iterdir()) == []


def test_a_wine_that_does_not_start_is_told_and_leaves_nothing(place, desktops):
    with pytest.raises(errors.WineError, match="Wine does not start: it ends at once"):
        desktops.on({**os.environ, "BROKEN": "1"})
    assert list((place / "run").iterdir()) == []


def test_the_server_goes_when_the_test_is_killed(place):
    program = (
        "import os, time; from qtdriver.launch import wine; "
        "print(wine.WineDesktop(dict(os.environ))._keeper.pid, flush=True); time.sleep(1000)"
    )
    environment = {**os.environ, "PYTHONPATH": os.pathsep.join(sys.path)}
    with subprocess.Popen(
        [sys.executable, "-c", program], env=environment, stdout=subprocess.PIPE, text=True
    ) as run:
        keeper = int(run.stdout.readline())
        run.kill()
    eventually(lambda: linux.session_of(keeper), timeout=60).equals(None)


def test_a_prefix_that_the_user_names_is_used_as_it_is(place, desktops, tmp_path):
    own = tmp_path / "own"
    own.mkdir()
    desktop = desktops.on({**os.environ, "WINEPREFIX": str(own)})
    assert desktop.prefix == own
    assert not (place / "made").exists() and list(own.iterdir()) == []
    desktops.close()
    assert own.is_dir()


@pytest.fixture
def started(place, desktops):
    """How a Windows program of Qt 5 is started, with further variables and options."""
    (place / "app").mkdir()
    workshop = Workshop(place / "app")
    program = workshop.program(workshop.import_library("Qt5Widgets.dll"))
    workshop.library("Qt5Widgets.dll")
    build = agents(workshop, place / "build", 5)

    def start(*arguments, load_by=None, **variables):
        environment = {**os.environ, **variables}
        return program, start_of(program, arguments, environment, wine=desktops, build=build, load_by=load_by)

    return start


def test_a_windows_program_is_started_by_wine_with_the_option_behind_its_arguments(place, started):
    program, start = started("file.txt", "-v")
    assert start.command == [str(place / "bin" / "wine"), str(program), "file.txt", "-v", "-testability"]


def test_the_search_path_gets_the_agents_folder_behind_that_of_the_user(place, started):
    _, start = started(WINEPATH="Z:\\opt\\lib")
    assert start.environment["WINEPATH"] == "Z:\\opt\\lib;" + windows_path(place / "build/windows-qt5/bin")


def test_wine_is_quiet_unless_the_user_wants_otherwise(started):
    assert started()[1].environment["WINEDEBUG"] == "-all"
    assert started(WINEDEBUG="+seh")[1].environment["WINEDEBUG"] == "+seh"


@pytest.mark.parametrize(
    "value, kept",
    [("xcb", False), ("wayland;xcb", False), ("offscreen", True), ("windows:dpiawareness=0", True)],
)
def test_the_platform_plugin_of_linux_is_none_of_the_programs(started, value, kept):
    assert ("QT_QPA_PLATFORM" in started(QT_QPA_PLATFORM=value)[1].environment) == kept


def test_libraries_come_from_the_qt_that_the_user_names(place, started):
    (place / "app" / "Qt5Widgets.dll").unlink()
    qt = Workshop(place / "qt" / "bin")
    qt.library("qt5widgets.dll")
    _, start = started(QT5_WINDOWS=str(place / "qt"))
    assert start.environment["WINEPATH"].split(";")[1] == windows_path(qt.folder)
    assert start.environment["QT_PLUGIN_PATH"] == windows_path(place / "qt" / "plugins")


def test_libraries_that_are_nowhere_are_told(place, started):
    (place / "app" / "Qt5Widgets.dll").unlink()
    with pytest.raises(
        errors.LibraryMissingError, match="(?s)needs Qt5Widgets.dll, which is neither.*QT5_WINDOWS"
    ):
        started(QT5_WINDOWS="")


def test_nothing_can_be_preloaded_into_a_windows_program(started):
    with pytest.raises(errors.LoadingError, match="nothing can be preloaded"):
        started(load_by="preload")


def test_an_unknown_way_of_loading_is_refused(started):
    with pytest.raises(ValueError, match="'magic', and not one of preload, testability"):
        started(load_by="magic")


def test_a_driver_ends_its_wine(place, started):
    with Driver() as driver:
        keeper = driver._wine.on(dict(os.environ))._keeper.pid
    assert linux.session_of(keeper) is None
