"""For shells: completion of command lines, and the manual page. Both read the parser of the command line."""
