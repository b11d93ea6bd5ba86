"""Drivers that come one after the other, with a server and a desktop that stay."""

import subprocess

import pytest

from qtdriver import Desktop, Driver, NoClientError, eventually


@pytest.fixture
def desktop():
    """A desktop that the test closes."""
    running = Desktop()
    yield running
    running.close()


def test_a_server_that_was_given_stays_for_the_next_driver(server, build, fake_agent):
    for _ in range(2):
        with Driver(qt=5, build=build, server=server) as driver:
            assert driver.launch(*fake_agent).windows()


def test_an_agent_that_nobody_asked_for_does_not_wait_for_the_next_driver(server, fake_agent):
    with Driver(server=server):
        stray = subprocess.Popen(fake_agent, stderr=subprocess.DEVNULL)
        wait_until_connected(stray)
    stray.wait(60)  # it ends when it has lost its connection
    with Driver(server=server) as driver, pytest.raises(NoClientError):
        driver.attach(start_timeout=0)


def wait_until_connected(process):
    """Waits until the process has an established connection to the port of agents."""
    peer = ":1092 01 "  # 4242, established

    def connected():
        with open(f"/proc/{process.pid}/net/tcp", encoding="ascii") as table:
            return any(peer in line for line in table)

    eventually(connected, timeout=60).is_true()


def test_a_desktop_that_was_given_stays_for_the_next_driver(server, build, desktop, fake_agent):
    displays = []
    for _ in range(2):
        with Driver(qt=5, build=build, headless=True, server=server, desktop=desktop) as driver:
            displays.append(driver.launch(*fake_agent).connection.check_window("env:DISPLAY"))
    assert displays == [desktop.environment["DISPLAY"]] * 2


def test_the_start_timeout_of_a_driver_is_that_of_its_launches(server, build):
    with Driver(qt=5, build=build, server=server, start_timeout=0.25) as driver:
        with pytest.raises(NoClientError, match="within 0.25 seconds"):
            driver.attach()


def test_what_waits_is_dropped_and_later_clients_are_not(server, fake_agent):
    early = subprocess.Popen(fake_agent, stderr=subprocess.DEVNULL)
    wait_until_connected(early)
    server.drop_waiting()
    early.wait(60)  # it ends when it has lost its connection
    late = subprocess.Popen(fake_agent)
    with server.accept(60) as connection:
        assert connection.greeting.pid == late.pid
    assert late.wait(60) == 0
