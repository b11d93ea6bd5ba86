"""Paused tests: a page with the application, the source of the test, and the line at which it stands."""
