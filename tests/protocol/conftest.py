"""Fixtures for tests that talk to a real agent in a real application."""

import pytest

from hostapp import HostApp


@pytest.fixture
def launch():
    """Starts host programs; at the end of the test each must end in order, with exit status 0, if the
    test has not waited for its end."""
    apps = []

    def start(program, *arguments, **options):
        app = HostApp(program, *arguments, **options)
        apps.append(app)
        return app

    yield start
    for app in apps:
        app.end()
