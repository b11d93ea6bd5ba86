"""Makes importable the runner's package, whose wire forms the player uses, and what the protocol's tests have."""

import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "runner"))
sys.path.append(str(ROOT / "tests" / "protocol"))
