"""The processes of one launch on Windows, and how they are ended: a job object, which the system keeps.

What the started process starts in turn belongs to its job, and a job ends with the process that has made it, however that
ends. The counterpart of `linux` and of LaunchedProcesses in `supervision`. It can be imported everywhere.
"""

from __future__ import annotations

import ctypes
import os
from pathlib import Path
from typing import Any, Dict, List, Mapping, Optional, Sequence

from ..protocol.peers import load_psutil

__tracebackhide__ = True  # pytest shows the line of the test, not the runner's own

CREATION_FLAGS = 0x00000004
"""CREATE_SUSPENDED: a program must not start others before it belongs to its job."""

_KILL_ON_JOB_CLOSE = 0x00002000
_BASIC_PROCESS_ID_LIST = 3
_EXTENDED_LIMIT_INFORMATION = 9
_PROCESS_SET_QUOTA_AND_TERMINATE = 0x0101
_ENDED_BY_TEST = 1
_FIRST_COUNT = 64
_SEARCH_PATH = "PATH"


class _BasicLimits(ctypes.Structure):
    _fields_ = [
        ("PerProcessUserTimeLimit", ctypes.c_int64),
        ("PerJobUserTimeLimit", ctypes.c_int64),
        ("LimitFlags", ctypes.c_uint32),
        ("MinimumWorkingSetSize", ctypes.c_size_t),
        ("MaximumWorkingSetSize", ctypes.c_size_t),
        ("ActiveProcessLimit", ctypes.c_uint32),
        ("Affinity", ctypes.c_size_t),
        ("PriorityClass", ctypes.c_uint32),
        ("SchedulingClass", ctypes.c_uint32),
    ]


class _ExtendedLimits(ctypes.Structure):
    _fields_ = [
        ("BasicLimitInformation", _BasicLimits),
        ("IoInfo", ctypes.c_uint64 * 6),
        ("ProcessMemoryLimit", ctypes.c_size_t),
        ("JobMemoryLimit", ctypes.c_size_t),
        ("PeakProcessMemoryUsed", ctypes.c_size_t),
        ("PeakJobMemoryUsed", ctypes.c_size_t),
    ]


def _load_kernel() -> Any:
    """The library kernel32, with the types of its handles, which are pointers."""
    kernel = getattr(ctypes, "WinDLL")("kernel32", use_last_error=True)
    handle, number, flag, pointer = ctypes.c_void_p, ctypes.c_uint32, ctypes.c_int, ctypes.c_void_p
    for name, result, arguments in (
        ("CreateJobObjectW", handle, (pointer, pointer)),
        ("SetInformationJobObject", flag, (handle, flag, pointer, number)),
        ("QueryInformationJobObject", flag, (handle, flag, pointer, number, pointer)),
        ("AssignProcessToJobObject", flag, (handle, handle)),
        ("TerminateJobObject", flag, (handle, number)),
        ("OpenProcess", handle, (number, flag, number)),
        ("CloseHandle", flag, (handle,)),
    ):
        function = getattr(kernel, name)
        function.restype, function.argtypes = result, list(arguments)
    return kernel


class Job:
    """A job object: the processes that are added, and all that they start."""

    def __init__(self, kernel: Any = None) -> None:
        """Makes the job. `kernel` stands for the library kernel32. Raises OSError."""
        self._kernel = _load_kernel() if kernel is None else kernel
        self._handle = self._checked(self._kernel.CreateJobObjectW(None, None))
        limits = _ExtendedLimits()
        limits.BasicLimitInformation.LimitFlags = _KILL_ON_JOB_CLOSE
        self._checked(
            self._kernel.SetInformationJobObject(
                self._handle, _EXTENDED_LIMIT_INFORMATION, ctypes.byref(limits), ctypes.sizeof(limits)
            )
        )

    def add(self, pid: int) -> None:
        """Adds a process to the job. Raises OSError."""
        process = self._checked(self._kernel.OpenProcess(_PROCESS_SET_QUOTA_AND_TERMINATE, 0, pid))
        try:
            self._checked(self._kernel.AssignProcessToJobObject(self._handle, process))
        finally:
            self._kernel.CloseHandle(process)

    def processes(self) -> List[int]:
        """Ids of the living processes of the job. Raises OSError."""
        count = _FIRST_COUNT
        while True:
            numbers, ids = ctypes.c_uint32 * 2, ctypes.c_size_t * count
            # The structure is two counts, of all processes and of those that follow, and their ids.
            listing = type("_List", (ctypes.Structure,), {"_fields_": [("counts", numbers), ("ids", ids)]})()
            self._kernel.QueryInformationJobObject(
                self._handle, _BASIC_PROCESS_ID_LIST, ctypes.byref(listing), ctypes.sizeof(listing), None
            )
            assigned, listed = listing.counts
            if assigned <= count:
                return [int(pid) for pid in listing.ids[:listed]]
            count = 2 * assigned

    def terminate(self) -> None:
        """Ends all processes of the job at once."""
        self._kernel.TerminateJobObject(self._handle, _ENDED_BY_TEST)

    def close(self) -> None:
        """Closes the job, which ends its processes that still run."""
        self._kernel.CloseHandle(self._handle)

    @staticmethod
    def _checked(result: Any) -> Any:
        if not result:
            raise OSError(f"Windows refuses a job: error {getattr(ctypes, 'get_last_error', lambda: 0)()}")
        return result


class LaunchedProcesses:
    """The processes of one launch: those of a job."""

    def __init__(self, kernel: Any = None) -> None:
        self._job: Optional[Job] = Job(kernel)

    def __repr__(self) -> str:
        return "<processes of a job>"

    def environment(self, environment: Mapping[str, str]) -> Dict[str, str]:
        """`environment`: the job needs no mark."""
        return dict(environment)

    def set_session_leader(self, leader: int) -> None:
        """Adds the started process, which is suspended, to the job, and lets it run."""
        assert self._job is not None
        self._job.add(leader)
        load_psutil().Process(leader).resume()

    def owns(self, pid: int) -> bool:
        """Whether this living process belongs to the launch."""
        return self._job is not None and pid in self._job.processes()

    def has_any(self) -> bool:
        """Whether any living process belongs to the launch."""
        return self._job is not None and bool(self._job.processes())

    def end(self, grace: float) -> None:
        """Ends every process of the launch. Windows asks no process to end, so `grace` has no meaning."""
        if self._job is not None:
            self._job.terminate()
            self._job.close()
            self._job = None


def with_search_path(environment: Mapping[str, str], folders: Sequence[Path]) -> Dict[str, str]:
    """`environment` with folders behind those in which Windows looks for libraries."""
    entries = [environment.get(_SEARCH_PATH, ""), *map(str, folders)]
    return {**environment, _SEARCH_PATH: ";".join(filter(None, entries))}


def search_path(environment: Mapping[str, str]) -> List[Path]:
    """The folders in which Windows looks for libraries that are not beside a program."""
    return [Path(entry) for entry in environment.get(_SEARCH_PATH, "").split(";") if entry]


def system_folder() -> Path:
    """The folder with the libraries of Windows itself."""
    return Path(os.environ.get("SystemRoot", "C:\\Windows")) / "System32"
