"""A desktop without a screen: the class that starts it, the script that runs a command on it, the program that keeps it."""
