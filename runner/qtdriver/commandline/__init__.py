"""The command line `qtdriver`."""
