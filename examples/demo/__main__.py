"""The demonstration: drives the showcase and SpeedCrunch for a person to see. Run by scripts/demo.sh.

Arguments: the build folder, the folder for screenshots. The build folder is build/qt5, or build/windows-qt5 for the showcase
alone, under Wine. Exits with 1 when anything differs.
"""

import sys
from pathlib import Path

import buttons
import calculator
import forms
import menus
import views
from demonstration import Demonstration

from qtdriver import Driver

PARTS = [buttons, forms, views, menus]


def main(build, pictures):
    windows = build.name.startswith("windows-")
    with Driver(build=build.parent, start_timeout=120) as driver:
        differences = drive_showcase(
            driver, build / "bin" / ("showcase.exe" if windows else "showcase"), pictures
        )
        if not windows:
            differences += drive_calculator(driver, pictures)
    print()
    for difference in differences:
        print(f"DIFFERENT: {difference}")
    print("demo: " + ("all as expected" if not differences else f"{len(differences)} differences"))
    return 1 if differences else 0


def drive_showcase(driver, program, pictures):
    """Runs all parts with the showcase, and returns what differed."""
    showcase = driver.launch(program)
    demo = Demonstration(showcase, "Widget:showcase", pictures)
    demo.expect_window("Widget:showcase")
    demo.expect("showcase", "isActiveWindow", True)
    demo.picture("before")
    for part in PARTS:
        part.run(demo)
    demo.picture("after")
    showcase.terminate()
    return demo.differences


def drive_calculator(driver, pictures):
    """Calculates with SpeedCrunch, and returns what differed."""
    speedcrunch = driver.launch("speedcrunch", environment=calculator.environment(pictures))
    demo = Demonstration(speedcrunch, "SpeedCrunch", pictures)
    calculator.run(demo)
    demo.picture("speedcrunch")
    return demo.differences


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()))
