"""Settings of a run: options of the command line, and their defaults in pytest's configuration file."""

from __future__ import annotations

import sys
from dataclasses import dataclass
from pathlib import Path
from typing import Any, Callable, Dict, NamedTuple, Optional, Tuple

import pytest

from ..api.app import DEFAULT_WAIT
from ..launch.agent import QT_MAJORS
from ..launch.loading import LOAD_WAYS
from ..protocol.channel import DEFAULT_TIMEOUT
from ..report.results import RESULTS_FILE

TRACE_ON, TRACE_ON_FAILURE, TRACE_OFF = "on", "retain-on-failure", "off"
LINUX, WINDOWS = "linux", "windows"
OWN_DESKTOPS, PLAIN = "own-desktops", "plain"
OWN_HOME, KEEP_HOME = "own", "keep"
OWN_TMP, SHARED_TMP = "own", "shared"
REPORT_NAME = "report.html"


@dataclass(frozen=True)
class Settings:
    """How tests drive their applications, and what they leave behind.

    Attributes:
        build: the folder with the agents of each Qt; None for the checkout's.
        qt: the Qt version of applications whose files do not tell it.
        platform: what the applications are made for, "linux" or "windows"; a project's fixtures choose the program by it.
        load_by: how the agent gets into programs of Linux: "preload", "testability", None for the usual way.
        headless: whether applications appear on a desktop without a screen.
        timeout: seconds that calls wait for windows and widgets.
        request_timeout: seconds that a request may take before the application counts as hanging.
        start_timeout: seconds that an application may take until its agent is there.
        output: the folder for what is kept of tests.
        trace: which tests keep the record of their steps: "on", "retain-on-failure", "off".
        report: the HTML page of the run.
        workers: "own-desktops" gives each parallel worker a desktop and a network, "plain" leaves them without.
        home: "own" gives the applications of each test empty home and XDG folders, "keep" those of the user.
        tmp: "own" gives each parallel worker on a desktop of its own an empty /tmp, "shared" leaves them the one of all.
        history: the folder with the last passing run of each test, with which failures are compared; None for none.
        update: whether snapshots are written as they are now, in place of being compared.
        shard: the number of the shard that this run is, from 1, and that of all shards; None for a whole run.
        times: the results of an earlier run, by whose times tests are split among shards.
        pause: whether a test that fails is paused.
    """

    build: Optional[Path]
    qt: Optional[int]
    platform: str
    load_by: Optional[str]
    headless: bool
    timeout: float
    request_timeout: float
    start_timeout: float
    output: Path
    trace: str
    report: Path
    workers: str
    home: str
    tmp: str
    history: Optional[Path]
    update: bool
    shard: Optional[Tuple[int, int]]
    times: Path
    pause: bool = False


class _Option(NamedTuple):
    """A setting that takes a value.

    Attributes:
        name: its name without the prefix "qtdriver".
        value_name: the placeholder of the value in the help.
        default: the value where none is given.
        read: converts the text that was given; raises ValueError for one that does not fit.
        wanted: names the values that fit, for the error message.
        help: its line in the help.
    """

    name: str
    value_name: str
    default: object
    read: Callable[[str], object]
    wanted: str
    help: str


def _seconds(text: str) -> float:
    seconds = float(text)
    if not 0 <= seconds < float("inf"):
        raise ValueError
    return seconds


def _one_of(*words: str) -> Callable[[str], str]:
    def read(text: str) -> str:
        if text not in words:
            raise ValueError
        return text

    return read


def _major(text: str) -> int:
    if int(text) not in QT_MAJORS:
        raise ValueError
    return int(text)


def _shard(text: str) -> Tuple[int, int]:
    number, count = map(int, text.split("/"))
    if not 1 <= number <= count:
        raise ValueError
    return number, count


_SECONDS = "a number of seconds"
_TRACES = (TRACE_ON, TRACE_ON_FAILURE, TRACE_OFF)
_WORKERS = (OWN_DESKTOPS, PLAIN)
_PLATFORMS = (LINUX, WINDOWS)

_OPTIONS = (
    _Option("build", "DIR", None, Path, "a folder", "folder with the agents, as scripts/build.sh makes it"),
    _Option(
        "qt", "N", None, _major, "4, 5 or 6", "Qt version of the applications, where they do not tell it"
    ),
    _Option(
        "platform",
        "NAME",
        LINUX,
        _one_of(*_PLATFORMS),
        "linux or windows",
        "what the applications are made for: linux, or windows, whose programs run under Wine",
    ),
    _Option(
        "load-by",
        "WAY",
        None,
        _one_of(*LOAD_WAYS),
        "preload or testability",
        "how the agent gets into programs of Linux: preload, or testability, where they drop LD_PRELOAD",
    ),
    _Option(
        "timeout",
        "S",
        DEFAULT_WAIT,
        _seconds,
        _SECONDS,
        "seconds that a call waits for its window and widget",
    ),
    _Option(
        "request-timeout",
        "S",
        DEFAULT_TIMEOUT,
        _seconds,
        _SECONDS,
        "seconds after which an application hangs",
    ),
    _Option(
        "start-timeout",
        "S",
        DEFAULT_TIMEOUT,
        _seconds,
        _SECONDS,
        "seconds until an application has to be there",
    ),
    _Option(
        "output", "DIR", Path("test-results"), Path, "a folder", "folder for what is kept of failed tests"
    ),
    _Option(
        "trace",
        "WHEN",
        TRACE_ON_FAILURE,
        _one_of(*_TRACES),
        "on, retain-on-failure or off",
        "which tests keep their steps and pictures: on, retain-on-failure, off",
    ),
    _Option(
        "report",
        "FILE",
        None,
        Path,
        "a file",
        f"the HTML page of the run (default: {REPORT_NAME} in the output)",
    ),
    _Option(
        "workers",
        "KIND",
        OWN_DESKTOPS,
        _one_of(*_WORKERS),
        "own-desktops or plain",
        "workers of -n: own-desktops gives each a desktop and a network of its own, plain leaves them alone",
    ),
    _Option(
        "history",
        "DIR",
        None,
        Path,
        "a folder",
        "folder for the last passing run of each test, with which the page compares a failure (default: none)",
    ),
    _Option(
        "home",
        "KIND",
        OWN_HOME,
        _one_of(OWN_HOME, KEEP_HOME),
        "own or keep",
        "folders of applications: own gives each test empty home, XDG and temporary folders, keep those of the user",
    ),
    _Option(
        "tmp",
        "KIND",
        OWN_TMP,
        _one_of(OWN_TMP, SHARED_TMP),
        "own or shared",
        "/tmp of workers of -n: own gives each an empty one, which keeps only what the run itself uses, shared that of all",
    ),
    _Option(
        "shard",
        "K/N",
        None,
        _shard,
        "a shard such as 2/5",
        "run only the K-th of N parts of the tests, which take about as long as each other",
    ),
    _Option(
        "times",
        "FILE",
        None,
        Path,
        "a file",
        f"the results of an earlier run, by which shards are split (default: {RESULTS_FILE} in the output)",
    ),
)
_HEADED = "qtdriver_headed"
_UPDATE = "qtdriver_update"
_PAUSE = "qtdriver_pause_on_failure"

OUTPUT = pytest.StashKey[Path]()
"""The key of the output folder that the run has taken, in the stash of its configuration."""

OUTPUT_OF_WORKERS = "qtdriver_output"
"""The key of the same in what a worker is told."""


def add_options(parser: pytest.Parser) -> None:
    """Declares the options, each with the name qtdriver_... in the configuration file."""
    group = parser.getgroup("qtdriver", "Qt applications (qtdriver)")
    for option in _OPTIONS:
        destination = _destination(option)
        default = "" if option.default is None else f" (default: {option.default})"
        group.addoption(
            f"--qtdriver-{option.name}",
            dest=destination,
            metavar=option.value_name,
            help=option.help + default,
        )
        parser.addini(destination, f"default of --qtdriver-{option.name}", default="")
    group.addoption(
        "--qtdriver-headless",
        dest=_HEADED,
        action="store_false",
        default=None,
        help="applications appear on a desktop without a screen (the default)",
    )
    group.addoption(
        "--qtdriver-headed",
        dest=_HEADED,
        action="store_true",
        help="applications appear on the screen, to be watched",
    )
    group.addoption(
        "--qtdriver-update",
        dest=_UPDATE,
        action="store_true",
        default=False,
        help="write the snapshots of looks_like() and matches_picture() as they are now, in place of comparing",
    )
    group.addoption(
        "--qtdriver-pause-on-failure",
        dest=_PAUSE,
        action="store_true",
        default=False,
        help="open a page with the application when a test fails, and go on from there; needs a terminal, and no -n",
    )
    parser.addini(_HEADED, "default of --qtdriver-headed", type="bool", default=False)


def read_settings(config: pytest.Config) -> Settings:
    """The settings of this run. Raises pytest.UsageError for a value that does not fit.

    A relative path counts from the current folder, in the configuration file from the folder of that file.
    """
    values: Dict[str, Any] = {option.name.replace("-", "_"): _read(config, option) for option in _OPTIONS}
    headed = config.getoption(_HEADED)
    values["headless"] = sys.platform != "win32" and not (
        config.getini(_HEADED) if headed is None else headed
    )
    told = getattr(config, "workerinput", {}).get(OUTPUT_OF_WORKERS)
    values["output"] = config.stash.get(OUTPUT, Path(told) if told else values["output"])
    if values["times"] is None:
        values["times"] = values["output"] / RESULTS_FILE
    if values["report"] is None:
        values["report"] = values["output"] / REPORT_NAME
    return Settings(**values, update=config.getoption(_UPDATE), pause=config.getoption(_PAUSE))


def _read(config: pytest.Config, option: _Option) -> object:
    text, base, name = _given(config, option)
    value = option.default
    if text:
        try:
            value = option.read(text)
        except ValueError:
            raise pytest.UsageError(f'{name}: "{text}" is not {option.wanted}') from None
    return base / value if isinstance(value, Path) else value


def _given(config: pytest.Config, option: _Option) -> Tuple[str, Path, str]:
    """The text that was given, the folder it counts from, and where it was given."""
    destination = _destination(option)
    here = config.invocation_params.dir
    typed: Optional[str] = config.getoption(destination)
    if typed is not None:
        return typed, here, f"--qtdriver-{option.name}"
    configured: str = config.getini(destination)
    return configured, (config.rootpath if configured else here), destination


def _destination(option: _Option) -> str:
    return f"qtdriver_{option.name.replace('-', '_')}"
