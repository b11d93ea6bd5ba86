"""A desktop without a screen: who starts it, the script that runs a command on it, and the program that keeps it."""
