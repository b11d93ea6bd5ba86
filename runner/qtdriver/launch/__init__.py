"""Starting an application with the agent inside, and ending it with everything that it has started."""
