"""The DLLs, as programs for Windows find them."""

import os
import re
import subprocess

import pefile
import pytest
from agentserver import listen
from hostapp import DEADLINE
from hostplatform import BUILD, QT, ROOT, environment, windows_path


def library(name):
    return pefile.PE(str(BUILD / "bin" / name))


def demangled(name):
    return subprocess.run(["c++filt", name], check=True, capture_output=True, text=True).stdout.strip()


def test_the_agent_exports_its_factory_its_class_and_the_name_provider_and_nothing_else():
    names = [
        demangled(symbol.name.decode()) for symbol in library("qtdriver.dll").DIRECTORY_ENTRY_EXPORT.symbols
    ]
    of_the_class = re.compile(r"(TestClient::.*|(vtable|typeinfo|typeinfo name) for TestClient)")
    others = [name for name in names if not of_the_class.match(name.replace("non-virtual thunk to ", ""))]
    assert sorted(others) == [
        "LmSquishProxy::setNameProvider(LmSquishProxy::NameProvider*)",
        "createTestClient",
    ]
    assert "TestClient::TestClient()" in names


def test_the_library_that_qt_loads_exports_one_function_and_links_neither_qt_nor_the_compiler():
    testability = library("qttestability.dll")
    assert [symbol.name for symbol in testability.DIRECTORY_ENTRY_EXPORT.symbols] == [b"qt_testability_init"]
    linked = {entry.dll.decode().lower() for entry in testability.DIRECTORY_ENTRY_IMPORT}
    assert linked <= {"kernel32.dll", "user32.dll", "msvcrt.dll"}


@pytest.mark.parametrize("name", ["qtdriver", "qtdriver.dll"])
def test_the_agent_is_found_on_the_path_by_its_bare_name(name):
    process = subprocess.Popen(
        ["wine", str(BUILD / "bin" / "emptyhost.exe"), "--agent", name, "--late"],
        env={**os.environ, **environment()},
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        bufsize=0,
    )
    process.stdin.write(b"do loadAgent\n")
    answer = process.stdout.readline()
    process.stdin.close()
    process.stdout.read()
    assert (process.wait(120), answer) == (0, b"agent loaded\n")


def test_a_host_is_built_against_the_installed_package_and_driven(tmp_path):
    prefix, build = tmp_path / "installed", tmp_path / "build"
    qt = os.environ[f"QT{QT}_WINDOWS"]
    options = {
        "CMAKE_TOOLCHAIN_FILE": ROOT / "cmake" / "windows.cmake",
        "CMAKE_BUILD_TYPE": "Debug",
        "QTDRIVER_WINDOWS_QT": qt,
        "QT_QMAKE_EXECUTABLE": f"{qt}/bin/qmake",
        "QT_HOST_PATH": "/usr",
        "QT_HOST_PATH_CMAKE_DIR": "/usr/lib/x86_64-linux-gnu/cmake",
        "qtdriver_DIR": prefix / "lib" / "cmake" / "qtdriver",
    }
    project = ROOT / "tests" / "hosts" / "installed"
    for command in (
        ["cmake", "--install", BUILD, "--prefix", prefix],
        ["cmake", "-S", project, "-B", build, *(f"-D{name}={value}" for name, value in options.items())],
        ["cmake", "--build", build],
    ):
        subprocess.run(list(map(str, command)), check=True, stdout=subprocess.DEVNULL)
    assert {path.name for path in (prefix / "bin").iterdir()} == {"qtdriver.dll", "qttestability.dll"}
    host = pefile.PE(str(build / "linkinghost.exe"))
    assert b"qtdriver.dll" in {entry.dll for entry in host.DIRECTORY_ENTRY_IMPORT}
    assert_is_driven(build / "linkinghost.exe", prefix / "bin")


def assert_is_driven(host, agent):
    """Starts the host with the agent of this folder. Without a connection it ends."""
    variables = {**os.environ, **environment()}
    folders = variables["WINEPATH"].split(";")
    assert folders[0] == windows_path(BUILD / "bin")
    variables["WINEPATH"] = ";".join([windows_path(agent), *folders[1:]])
    with listen() as server:
        server.settimeout(DEADLINE)
        process = subprocess.Popen(["wine", str(host)], env=variables)
        try:
            connection, _ = server.accept()
            connection.settimeout(DEADLINE)
            with connection, connection.makefile("rwb") as lines:
                assert lines.readline().startswith(b"+client+ ")
                lines.write(b"8,Linked\n")
                lines.flush()
                assert lines.readline() == b"0,Linked\n"
            assert process.wait(DEADLINE) == 0
        finally:
            if process.poll() is None:
                process.kill()
                process.wait()
