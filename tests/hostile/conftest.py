"""Makes the runner's package importable, whose wire forms the player uses."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "runner"))
