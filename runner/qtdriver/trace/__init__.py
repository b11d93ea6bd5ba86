"""The record of a test: its steps with pictures of the screen and the widgets, in memory and as a trace."""
