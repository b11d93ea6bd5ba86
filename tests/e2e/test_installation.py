"""The installed agent, as the build of another application finds it."""

import os
import subprocess
from pathlib import Path

import pytest

from preloaded import BUILD, DEADLINE, QT, ROOT, qt_libraries, serves

PROJECT = ROOT / "tests" / "hosts" / "installed"


def run(*command):
    ended = subprocess.run(list(map(str, command)), capture_output=True, text=True, check=False)
    assert ended.returncode == 0, ended.stdout + ended.stderr


@pytest.fixture(scope="module")
def prefix(tmp_path_factory):
    folder = tmp_path_factory.mktemp("installed")
    run("cmake", "--install", BUILD, "--prefix", folder)
    return folder


def files_below(folder):
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file())


def test_the_libraries_the_public_headers_and_the_package_are_installed(prefix):
    files = files_below(prefix)
    assert [name for name in files if name.startswith("include/")] == [
        "include/qtdriver/agent/testclient.h",
        "include/qtdriver/bridge/nameprovider.h",
        "include/qtdriver/compat/export.h",
    ]
    libraries = [Path(name).name for name in files if name.endswith(".so")]
    assert libraries == ["libqtdriver-preload.so", "libqtdriver.so", "libqttestability.so"]
    assert any(name.endswith("cmake/qtdriver/qtdriverConfig.cmake") for name in files)


@pytest.mark.skipif("asan" in BUILD.name, reason="a host that links it would need the sanitizer's options")
def test_a_host_is_built_against_the_package_and_driven(prefix, tmp_path, server):
    options = [f"-DCMAKE_PREFIX_PATH={prefix}", "-DCMAKE_BUILD_TYPE=Debug"]
    if QT == 4:
        options.append(f"-DQT_QMAKE_EXECUTABLE={os.environ['QMAKE4']}")
    run("cmake", "-S", PROJECT, "-B", tmp_path, *options)
    run("cmake", "--build", tmp_path)
    # Where its Qt is no part of the system, the host has to find the libraries that the agent brings, too.
    folders = {str(path.parent) for path in qt_libraries(BUILD / "lib" / "libqtdriver.so").values()}
    environment = {**os.environ, "LD_LIBRARY_PATH": ":".join(sorted(folders))}
    process = subprocess.Popen([str(tmp_path / "linkinghost")], env=environment)
    try:
        with server.accept(DEADLINE) as connection:
            assert connection.greeting.pid == process.pid
            assert serves(connection)
            assert [window.title for window in connection.list_windows()] == ["Linked"]
        assert process.wait(DEADLINE) == 0
    finally:
        if process.poll() is None:
            process.kill()
            process.wait()
