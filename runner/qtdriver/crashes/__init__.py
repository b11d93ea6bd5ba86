"""The stacks of applications that have crashed or hang."""
