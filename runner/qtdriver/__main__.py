"""Runs the command line: python3 -m qtdriver."""

import sys

from .commandline.cli import main

sys.exit(main())
