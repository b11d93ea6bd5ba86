"""scripts/test.sh and .ci/run, in a made-up checkout: what they run, what they say of it, and that a cut run fails."""

import os
import re
import shutil
import signal
import subprocess
import time
from pathlib import Path

import pytest

from test_sources import ROOT

CLOSING = re.compile(r"\d+ passed, \d+ failed(, \d+ skipped)?")
SCRIPTS = ("scripts/test.sh", "scripts/suites.py", "scripts/count_tests.py", ".ci/run")
# Configures a made-up build, whose one suite waits for the file "go on" where there is a file "wait".
BUILD = r"""#!/bin/bash
set -e
case $2 in --asan) flavour=qt$1-asan ;; --windows) flavour=windows-qt$1 ;; *) flavour=qt$1 ;; esac
mkdir -p build/$flavour
echo "QTDRIVER_QT_VERSION:INTERNAL=$1.9.9" >build/$flavour/CMakeCache.txt
cat >build/$flavour/CTestTestfile.cmake <<'END'
add_test(protocol/a ../../suite.sh)
END
"""
SUITE = r"""#!/bin/bash
echo "collected 2 items"
if [ -e ../../wait ]; then echo $$ >../../suite.pid; sleep 60; fi
echo "=== 2 passed in 0.01s ==="
"""


class Checkout:
    """A folder with the scripts, and stubs of what they need."""

    def __init__(self, folder):
        self.folder = folder / "checkout"
        for name in SCRIPTS:
            (self.folder / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, self.folder / name)
        self.write("scripts/setup.sh", "#!/bin/sh\n")
        self.write("scripts/build.sh", BUILD)
        self.write("suite.sh", SUITE)
        self.write("stubs/cmake", "#!/bin/sh\n")

    def write(self, name, text):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        path.chmod(0o755)
        return path

    def start(self, *command, **variables):
        environment = {
            name: value
            for name, value in os.environ.items()
            if name != "QMAKE4" and not name.endswith("_WINDOWS")
        }
        path = f"{self.folder / 'stubs'}:{environment['PATH']}"
        return subprocess.Popen(
            [self.folder / command[0], *command[1:]],
            env={**environment, "PATH": path, **variables},
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            start_new_session=True,
        )

    def run(self, *command, **variables):
        process = self.start(*command, **variables)
        output, _ = process.communicate(timeout=120)
        return process.returncode, output.splitlines()

    def wait_for_suite(self):
        path, end = self.folder / "suite.pid", time.monotonic() + 60
        while not (path.exists() and path.read_text().endswith("\n")):
            assert time.monotonic() < end, "the suite did not start"
            time.sleep(0.02)
        return int(path.read_text())


@pytest.fixture
def checkout(tmp_path):
    return Checkout(tmp_path)


def parent_of(pid):
    return int(Path(f"/proc/{pid}/stat").read_text().rpartition(") ")[2].split()[1])


def test_the_last_lines_say_which_qts_ran_and_how_many_tests(checkout):
    qmake = checkout.write("qt4/bin/qmake", "#!/bin/sh\n")
    status, lines = checkout.run("scripts/test.sh", QMAKE4=str(qmake))
    assert status == 0
    assert lines[-5:] == [
        "Qt 5.9.9: 2 passed, 0 failed",
        "Qt 6.9.9: 2 passed, 0 failed",
        "Qt 4.9.9: 2 passed, 0 failed",
        "Qt 5.9.9 with sanitizers: 2 passed, 0 failed",
        "8 passed, 0 failed",
    ]


def test_a_machine_without_qt_4_is_told_so_with_the_result(checkout):
    status, lines = checkout.run("scripts/test.sh")
    assert (status, lines[-1]) == (0, "6 passed, 0 failed")
    assert any(line.startswith("test: no Qt 4.8 here") for line in lines[-7:])


@pytest.fixture
def qt_for_windows(checkout):
    return str(checkout.write("windows/bin/qmake", "#!/bin/sh\n").parents[1])


def test_each_qt_for_windows_is_tested_where_that_is_asked_for(checkout, qt_for_windows):
    folders = {f"QT{major}_WINDOWS": qt_for_windows for major in (5, 6)}
    status, lines = checkout.run("scripts/test.sh", "--qt", "5", "--windows", **folders)
    assert status == 0
    assert lines[-4:] == [
        "Qt 5.9.9: 2 passed, 0 failed",
        "Qt 5.9.9 with sanitizers: 2 passed, 0 failed",
        "Qt 5.9.9 for Windows: 2 passed, 0 failed",
        "6 passed, 0 failed",
    ]


def test_a_part_is_tested_with_qt_4_for_windows_anyway(checkout, qt_for_windows):
    folders = {f"QT{major}_WINDOWS": qt_for_windows for major in (4, 5)}
    status, lines = checkout.run("scripts/test.sh", "--qt", "4", "--qt", "5", **folders)
    assert status == 0
    assert [line for line in lines if "for Windows:" in line] == ["Qt 4.9.9 for Windows: 2 passed, 0 failed"]
    assert any(line.startswith("test: as Windows programs only a part is tested") for line in lines[-7:])


def test_one_qt_runs_with_its_sanitizers(checkout):
    _, lines = checkout.run("scripts/test.sh", "--qt", "6")
    assert lines[-3:-1] == ["Qt 6.9.9: 2 passed, 0 failed", "Qt 6.9.9 with sanitizers: 2 passed, 0 failed"]


def test_a_part_says_that_it_is_one(checkout):
    status, lines = checkout.run("scripts/test.sh", "--qt", "5", "--only", "qt5/")
    assert (status, lines[-1]) == (0, "2 passed, 0 failed")
    assert lines[-3] == "test: this is a part of the suites, those named like qt5/"


def test_a_part_without_any_suite_fails(checkout):
    status, lines = checkout.run("scripts/test.sh", "--only", "no such suite")
    assert (status, lines[-1]) == (1, "0 passed, 1 failed")


@pytest.mark.parametrize("stage", ["scripts/setup.sh", "scripts/build.sh", "scripts/suites.py"])
def test_a_run_that_is_killed_as_it_begins_fails_without_a_closing_line(checkout, stage):
    interpreter = "/usr/bin/python3" if stage.endswith(".py") else "/bin/sh"
    kill = "import os\nos.kill(os.getpid(), 9)\n" if stage.endswith(".py") else "kill -9 $$\n"
    checkout.write(stage, f"#!{interpreter}\n{kill}")
    status, lines = checkout.run("scripts/test.sh", "--qt", "5")
    assert status != 0
    assert not [line for line in lines if CLOSING.fullmatch(line)]


def test_a_build_that_is_killed_fails_with_its_suites(checkout):
    checkout.write("stubs/cmake", "#!/bin/sh\nkill -9 $$\n")
    status, lines = checkout.run("scripts/test.sh", "--qt", "5")
    assert (status, lines[-1]) == (1, "0 passed, 4 failed")


@pytest.mark.parametrize("whom", ["suite", "ctest"])
def test_a_run_whose_worker_is_killed_fails(checkout, whom):
    (checkout.folder / "wait").touch()
    process = checkout.start("scripts/test.sh", "--qt", "5", "--only", "qt5/")
    suite = checkout.wait_for_suite()
    os.kill(suite if whom == "suite" else parent_of(suite), signal.SIGKILL)
    output, _ = process.communicate(timeout=120)
    assert process.returncode == 1
    closing = output.splitlines()[-1]
    assert CLOSING.fullmatch(closing) and " 0 failed" not in closing


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGKILL])
def test_a_run_that_is_ended_fails(checkout, number):
    (checkout.folder / "wait").touch()
    process = checkout.start("scripts/test.sh", "--qt", "5", "--only", "qt5/")
    checkout.wait_for_suite()
    os.killpg(process.pid, number)
    output, _ = process.communicate(timeout=120)
    assert process.returncode != 0
    closing = output.splitlines()[-1]
    assert not CLOSING.fullmatch(closing) or " 0 failed" not in closing


def test_continuous_integration_unpacks_the_qt_that_lies_beside_the_checkout(checkout):
    checkout.write("scripts/test.sh", '#!/bin/sh\necho "$QMAKE4" "$QT5_WINDOWS"\n')
    unpack = '#!/bin/sh\nmkdir -p "$1"\necho "QMAKE4=/a b/qmake"\necho "QT5_WINDOWS=$1/w"\n'
    checkout.write("../shared/qt/unpack.sh", unpack)
    assert checkout.run(".ci/run") == (0, ["/a b/qmake build/qt/w"])
    assert (checkout.folder / "build/qt").is_dir()
    checkout.write("../shared/qt/unpack.sh", "#!/bin/sh\necho QMAKE4=half\nexit 1\n")
    assert checkout.run(".ci/run") == (1, [])


def test_continuous_integration_goes_on_without_that_qt_and_says_so(checkout):
    checkout.write("scripts/test.sh", "#!/bin/sh\necho tested\n")
    status, lines = checkout.run(".ci/run")
    assert (status, lines[-1]) == (0, "tested")
    assert "no Qt beside the checkout" in lines[0]
