"""The runner on Windows, as far as it can be tried elsewhere: its imports, its jobs with a stand-in for the system, its errors.

Nothing here runs on Windows: what it does there is type-checked only (tests/checks).
"""

import ctypes
import subprocess
import sys
from pathlib import Path

import pytest

from qtdriver.launch import windows

ROOT = Path(__file__).resolve().parents[2]
PID_LIST, LIMITS = 3, 9
KILL_ON_JOB_CLOSE = 0x2000
LINUX_MODULES = ("fcntl", "pwd", "grp", "resource", "termios", "tty", "pty")


class Kernel:
    """Keeps the calls, and has the processes of one job."""

    def __init__(self, pids=(), refuses=()):
        self.pids = list(pids)
        self.refuses = refuses
        self.calls = []
        self.limit_flags = None

    def __getattr__(self, name):
        def call(*arguments):
            self.calls.append(name)
            return 0 if name in self.refuses else 77

        return call

    def OpenProcess(self, access, inherit, pid):
        self.calls.append(("OpenProcess", pid))
        return 0 if "OpenProcess" in self.refuses else 99

    def SetInformationJobObject(self, job, kind, data, size):
        assert kind == LIMITS
        self.limit_flags = ctypes.cast(data, ctypes.POINTER(ctypes.c_uint32))[4]
        return 1

    def QueryInformationJobObject(self, job, kind, data, size, _):
        assert kind == PID_LIST
        room = (size - 8) // ctypes.sizeof(ctypes.c_size_t)
        counts = ctypes.cast(data, ctypes.POINTER(ctypes.c_uint32))
        counts[0], counts[1] = len(self.pids), min(room, len(self.pids))
        address = ctypes.addressof(counts.contents) + 8
        for number, pid in enumerate(self.pids[:room]):
            ctypes.c_size_t.from_address(address + number * ctypes.sizeof(ctypes.c_size_t)).value = pid
        return 1 if len(self.pids) <= room else 0


def test_a_job_ends_with_the_process_that_made_it():
    kernel = Kernel()
    windows.Job(kernel)
    assert kernel.limit_flags == KILL_ON_JOB_CLOSE


@pytest.mark.parametrize("count", [0, 1, 64, 65, 1000])
def test_all_processes_of_a_job_are_told(count):
    pids = [1000 + number for number in range(count)]
    assert windows.Job(Kernel(pids)).processes() == pids


def test_a_process_is_added_and_its_handle_given_back():
    kernel = Kernel()
    windows.Job(kernel).add(4711)
    assert kernel.calls[-3:] == [("OpenProcess", 4711), "AssignProcessToJobObject", "CloseHandle"]


@pytest.mark.parametrize("refused", ["CreateJobObjectW", "OpenProcess", "AssignProcessToJobObject"])
def test_what_windows_refuses_is_an_error(refused):
    with pytest.raises(OSError, match="Windows refuses a job"):
        windows.Job(Kernel(refuses=[refused])).add(1)


def test_a_launch_owns_what_is_in_its_job_and_ends_it_once():
    kernel = Kernel([5, 6])
    launched = windows.LaunchedProcesses(kernel)
    assert launched.owns(6) and not launched.owns(7) and launched.has_any()
    launched.end(5.0)
    launched.end(5.0)
    assert kernel.calls.count("TerminateJobObject") == 1
    assert kernel.calls[-1] == "CloseHandle" and not launched.has_any() and not launched.owns(6)


def test_the_search_path_gets_folders_behind_those_that_are_there():
    environment = windows.with_search_path({"PATH": "C:\\app", "TEMP": "C:\\t"}, ["D:\\agent"])
    assert environment == {"PATH": "C:\\app;D:\\agent", "TEMP": "C:\\t"}
    assert windows.search_path(environment) == [Path("C:\\app"), Path("D:\\agent")]
    assert windows.with_search_path({}, ["D:\\agent"]) == {"PATH": "D:\\agent"}


def test_the_package_imports_nothing_that_windows_does_not_have():
    """All modules but the program that keeps a desktop without a screen, which nothing imports."""
    program = f"""
import importlib, pathlib, sys
for name in {LINUX_MODULES!r}:
    sys.modules[name] = None
root = pathlib.Path({str(ROOT / "runner")!r})
sys.path.insert(0, str(root))
for path in sorted((root / "qtdriver").rglob("*.py")):
    name = ".".join(path.relative_to(root).with_suffix("").parts)
    if not name.endswith(("__main__", "desktop_keeper")):
        importlib.import_module(name.removesuffix(".__init__"))
"""
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
