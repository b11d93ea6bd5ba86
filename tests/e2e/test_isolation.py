"""Folders of their own for the applications of a test, and settings that they find there."""

import os
import subprocess
from pathlib import Path

import pytest

from qtdriver import Driver
from qtdriver.surroundings.home import write_settings
from qtdriver.surroundings.inifile import ini_text

FOLDERS = ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "TMPDIR")
READ = """
import sys
from PyQt5.QtCore import QSettings
kind = QSettings.IniFormat if sys.argv[1] == "ini" else QSettings.NativeFormat
settings = QSettings(kind, QSettings.UserScope, "Maker", "Editor")
for key in settings.allKeys():
    print(ascii((key, settings.value(key))))
"""


@pytest.fixture
def isolated(build):
    """A driver whose applications have folders of their own."""
    with Driver(qt=5, build=build, isolated=True) as driver:
        yield driver


def folders_of(app):
    """The folders that an application is told by its environment."""
    return {name: app.connection.request(f"8,env:{name}").payload for name in FOLDERS}


def test_applications_of_a_test_share_empty_folders_that_are_removed_with_it(isolated, fake_agent):
    folders = folders_of(isolated.launch(*fake_agent))
    home = Path(folders["HOME"])
    assert home != Path.home() and home.stat().st_mode & 0o777 == 0o700
    assert all(
        Path(folder).is_dir() and home in (Path(folder), *Path(folder).parents) for folder in folders.values()
    )
    assert not [file for file in home.rglob("*") if file.is_file()]
    assert (
        folders_of(isolated.launch(*fake_agent)) == folders
    ), "a program that is started again finds its settings"
    isolated.close()
    assert not home.exists()


def test_the_users_own_folders_can_be_kept(isolated, fake_agent):
    folders = folders_of(isolated.launch(*fake_agent, keep_home=True))
    assert folders == {name: os.environ.get(name, "") for name in FOLDERS}


def test_without_isolation_an_application_has_the_users_folders(driver, fake_agent):
    assert folders_of(driver.launch(*fake_agent))["HOME"] == os.environ.get("HOME", "")


def test_the_environment_of_a_launch_has_the_last_word(isolated, fake_agent, tmp_path):
    app = isolated.launch(
        *fake_agent, environment={"XDG_CONFIG_HOME": str(tmp_path)}, settings={"A/B": "[x]\n"}
    )
    assert folders_of(app)["XDG_CONFIG_HOME"] == str(tmp_path)
    assert (tmp_path / "A" / "B.conf").read_text() == "[x]\n"


def test_the_permission_for_the_users_screen_is_still_found(isolated, fake_agent, tmp_path, monkeypatch):
    (tmp_path / ".Xauthority").touch()
    monkeypatch.setenv("HOME", str(tmp_path))
    monkeypatch.delenv("XAUTHORITY", raising=False)
    app = isolated.launch(*fake_agent)
    assert app.connection.request("8,env:XAUTHORITY").payload == str(tmp_path / ".Xauthority")


@pytest.mark.parametrize("suffix", ["", ".ini"])
def test_settings_are_read_by_the_library_of_qt(tmp_path, suffix):
    settings = {
        "window/width": 800,
        "window/nested/zoom": 1.5,
        "tips": False,
        "General/name": 'Ada; "L" \\ a, b=c',
        "a key %/ü€😀": "Grüße€\n😀f00\t@home",
        "@at": "@at",
        "recent": ["a, b.txt", "ü"],
    }
    write_settings({f"Maker/Editor{suffix}": settings}, {"XDG_CONFIG_HOME": str(tmp_path)})
    told = subprocess.run(
        ["/usr/bin/python3", "-c", READ, suffix.lstrip(".")],
        env={**os.environ, "XDG_CONFIG_HOME": str(tmp_path)},
        capture_output=True,
        text=True,
        check=True,
    )
    read = dict(map(eval, told.stdout.splitlines()))
    assert read == {
        **settings,
        "window/width": "800",
        "window/nested/zoom": "1.5",
        "tips": "false",
    }


def test_an_application_finds_its_settings(isolated, fake_agent):
    isolated.launch(*fake_agent, settings={"Maker/Editor": {"tips": False}})
    (file,) = Path(folders_of(isolated.apps[0])["HOME"]).rglob("*.conf")
    assert file.read_text() == "[General]\ntips=false\n"
    assert file.parent.parent.name == ".config"


@pytest.mark.parametrize(
    "settings, error, words",
    [
        ({"A/B": {"x": None}}, TypeError, "settings: x: None (NoneType) is none of a text,"),
        ({"../B": {}}, ValueError, "settings: '../B' is not \"Organisation/Application\""),
        ({"/etc/B": {}}, ValueError, "settings: '/etc/B' is not"),
    ],
)
def test_settings_that_cannot_be_written_are_an_error_that_names_them(tmp_path, settings, error, words):
    with pytest.raises(error) as caught:
        write_settings(settings, {"HOME": str(tmp_path)})
    assert str(caught.value).startswith(words)
    assert list(tmp_path.rglob("*.conf")) == []


def test_settings_never_go_into_the_users_own_folder(isolated, fake_agent):
    with pytest.raises(ValueError, match="^settings would be written into the user's own folder"):
        isolated.launch(*fake_agent, settings={"A/B": {}}, keep_home=True)


def test_an_empty_list_and_groups_have_the_form_of_qt():
    assert (
        ini_text({"x/none": [], "General/a": 1, "b": 2})
        == "[x]\nnone=@Invalid()\n\n[%General]\na=1\n\n[General]\nb=2\n"
    )
