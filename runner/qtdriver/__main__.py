"""Runs the command line: python3 -m qtdriver."""

import sys

from .cli import main

sys.exit(main())
