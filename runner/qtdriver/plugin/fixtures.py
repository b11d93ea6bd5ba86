"""The fixtures of tests."""

from __future__ import annotations

from contextlib import ExitStack
from typing import Iterator, NamedTuple, Optional

import pytest

from ..api.driver import Driver
from ..desktop.desktop import Desktop
from ..errors import PortInUseError
from ..expect.baselines import use_baselines
from ..launch.wine import WineDesktops
from ..protocol.server import HOST, PORT, Server
from .artifacts import TestArtifacts
from .hooks import ARTIFACTS, ATTEMPT
from .parallel import has_own_desktop
from .settings import OWN_HOME, Settings, read_settings
from .snapshots import baselines_of, tell_written

_WAY_OUT = "run with -n 1 (pytest-xdist)"


class _SharedResources(NamedTuple):
    """The server, the desktop and the Wine that the drivers of a run use one after the other."""

    server: Server
    desktop: Optional[Desktop]
    wine: WineDesktops


@pytest.fixture(scope="session")
def qtdriver_settings(pytestconfig: pytest.Config) -> Settings:
    """The settings of the run.

    A project that computes settings overrides this fixture:

        @pytest.fixture(scope="session")
        def qtdriver_settings(qtdriver_settings):
            return dataclasses.replace(qtdriver_settings, timeout=20.0)
    """
    return read_settings(pytestconfig)


@pytest.fixture(scope="session")
def _qtdriver_shared(pytestconfig: pytest.Config, qtdriver_settings: Settings) -> Iterator[_SharedResources]:
    """Holds the port for the whole run, so that a second run fails at once, and not in some of its tests."""
    with ExitStack() as stack:
        try:
            server = stack.enter_context(Server())
        except PortInUseError:
            raise PortInUseError(HOST, PORT, _WAY_OUT) from None
        desktop = None
        if qtdriver_settings.headless and not has_own_desktop(pytestconfig):
            desktop = Desktop()
            stack.callback(desktop.close)
            # Programs that tests start themselves, such as xclip, look at the same screen, as they do in a worker.
            patch = stack.enter_context(pytest.MonkeyPatch.context())
            patch.setenv("DISPLAY", desktop.environment["DISPLAY"])
        wine = WineDesktops()
        stack.callback(wine.close)
        yield _SharedResources(server, desktop, wine)


@pytest.fixture
def qtdriver(
    request: pytest.FixtureRequest, qtdriver_settings: Settings, _qtdriver_shared: _SharedResources
) -> Iterator[Driver]:
    """A qtdriver.Driver for one test. It starts applications, or waits for them, and ends them after the test."""
    settings = qtdriver_settings
    driver = Driver(
        qt=settings.qt,
        build=settings.build,
        headless=_qtdriver_shared.desktop is not None,
        timeout=settings.timeout,
        request_timeout=settings.request_timeout,
        start_timeout=settings.start_timeout,
        server=_qtdriver_shared.server,
        desktop=_qtdriver_shared.desktop,
        wine=_qtdriver_shared.wine,
        load_by=settings.load_by,
        isolated=settings.home == OWN_HOME,
    )
    with driver:
        attempt = request.node.stash.get(ATTEMPT, 1)
        artifacts = TestArtifacts(driver, settings, request.node.nodeid, attempt)
        request.node.stash[ARTIFACTS] = artifacts
        baselines = baselines_of(request.node, settings, artifacts.make_pictures_folder)
        with use_baselines(baselines):
            yield driver
        tell_written(request.node, baselines)
        unexpected = artifacts.close_driver()
        if unexpected is not None:
            pytest.fail(f"{type(unexpected).__name__}: {unexpected}", pytrace=False)
