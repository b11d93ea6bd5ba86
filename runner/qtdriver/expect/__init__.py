"""Checks: conditions that a test waits for, soft assertions, and what they compare with."""
