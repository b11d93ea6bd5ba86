"""The surroundings of an application, apart from the test: its home folder, its settings, its look."""
