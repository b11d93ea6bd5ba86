"""Round trips to the application as a program for Windows, which Wine runs."""

import os
import subprocess
import sys
from pathlib import Path
from typing import Any, Dict, List

import roundtrips

ROOT = Path(__file__).resolve().parents[1]


def version() -> str:
    """Wine's own name of its version, such as "wine-8.0"."""
    told = subprocess.run(["wine", "--version"], stdout=subprocess.PIPE, check=True, text=True).stdout
    return told.split()[0]


def measure(build: Path, major: str, quick: bool) -> List[Dict[str, Any]]:
    """The results of roundtrips.measure(), with names of their own. The heap is not looked at."""
    os.environ.update({"QTDRIVER_BUILD": str(build), "QTDRIVER_QT": major})
    sys.path[:0] = [str(ROOT / "tests" / "protocol"), str(ROOT / "runner")]
    from hostplatform import environment, windows_path
    from qtdriver.launch.wine import WineDesktop

    desktop = WineDesktop(os.environ)
    try:
        os.environ.update(desktop.environment(environment()))
        command = ["wine", str(build / "bin" / "benchhost.exe"), windows_path(build / "bin" / "qtdriver.dll")]
        results = roundtrips.measure(command, quick, counts_memory=False)
    finally:
        desktop.close()
    return [{**result, "name": f"wine_{result['name']}"} for result in results]
