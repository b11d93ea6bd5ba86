"""Fixtures for tests that talk to a real agent in a real application."""

import pytest

from hostapp import HostApp
from hostplatform import WINDOWS, wine
from keptprocesses import KeptProcesses, are_kept_for
import notunderwine
from sharedhost import SharedHost

_FAILED = pytest.StashKey[bool]()


def pytest_configure(config):
    config.addinivalue_line(
        "markers", "shared: the application is as it was after the test, and the next one uses it"
    )
    config.addinivalue_line(
        "markers", "own_process: the application has a process that was never another one's"
    )


def pytest_collection_modifyitems(config, items):
    """Within a file those that share an application come first, by their fixtures: so few applications have to start."""
    if WINDOWS:
        notunderwine.exclude(items, whole_files=not any("::" in argument for argument in config.args))
    files = {path: number for number, path in enumerate(dict.fromkeys(item.path for item in items))}

    def place(item):
        if not item.get_closest_marker("shared"):
            return files[item.path], True, [], []
        parameters = item.callspec.params if hasattr(item, "callspec") else {}
        kinds = [str(parameters.get(name)) for name in ("app", "style")]
        return files[item.path], False, kinds, [name for name in item.fixturenames if name not in parameters]

    items.sort(key=place)


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item):
    """Remembers whether the test failed."""
    report = (yield).get_result()
    item.stash[_FAILED] = item.stash.get(_FAILED, False) or report.failed


@pytest.fixture(scope="session", autouse=True)
def platform():
    """Wine, where the programs of the build are for Windows."""
    if not WINDOWS:
        yield
        return
    with wine():
        yield


@pytest.fixture(scope="module")
def shared_host():
    """The application that tests of a file share."""
    shared = SharedHost()
    yield shared
    shared.end()


@pytest.fixture(scope="module")
def kept_processes():
    """Processes that one test after the other has an application of its own in."""
    kept = KeptProcesses()
    yield kept
    kept.end()


@pytest.fixture
def launch(request, shared_host, kept_processes):
    """Starts host programs; at the end of the test each must end in order, with exit status 0, if the test has not seen
    it end. A test that is marked "shared" may get one that ran for others, and must leave it as it was."""
    if request.node.get_closest_marker("shared"):
        yield shared_host.take
        shared_host.give_back(failed=request.node.stash.get(_FAILED, False))
        return
    shared_host.end()  # two applications on one desktop take the focus from each other
    keeps = WINDOWS and are_kept_for(request.path.name) and not request.node.get_closest_marker("own_process")
    apps = []

    def start(program, *arguments, **options):
        begin = kept_processes.start if keeps else HostApp
        apps.append(begin(program, *arguments, **options))
        return apps[-1]

    yield start
    failed = request.node.stash.get(_FAILED, False)
    for app in apps:
        if keeps and not failed and not app.ends_as_expected():
            kept_processes.keep(app)
        else:
            app.end()
