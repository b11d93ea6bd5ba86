"""The line of the test that made a call."""
