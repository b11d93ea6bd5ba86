"""Loads the agent into a program that runs already."""
