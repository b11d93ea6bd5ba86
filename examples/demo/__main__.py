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
from stage import Stage

from qtdriver import Driver

ACTS = [buttons, forms, views, menus]


def main(build, pictures):
    windows = build.name.startswith("windows-")
    with Driver(build=build.parent, start_timeout=120) as driver:
        differences = play_showcase(
            driver, build / "bin" / ("showcase.exe" if windows else "showcase"), pictures
        )
        if not windows:
            differences += play_calculator(driver, pictures)
    print()
    for difference in differences:
        print(f"DIFFERENT: {difference}")
    print("demo: " + ("all as expected" if not differences else f"{len(differences)} differences"))
    return 1 if differences else 0


def play_showcase(driver, program, pictures):
    """Plays all acts with the showcase, and returns what differed."""
    showcase = driver.launch(program)
    stage = Stage(showcase, "Widget:showcase", pictures)
    stage.expect_window("Widget:showcase")
    stage.expect("showcase", "isActiveWindow", True)
    stage.picture("before")
    for act in ACTS:
        act.play(stage)
    stage.picture("after")
    showcase.terminate()
    return stage.differences


def play_calculator(driver, pictures):
    """Calculates with SpeedCrunch, and returns what differed."""
    speedcrunch = driver.launch("speedcrunch", environment=calculator.environment(pictures))
    stage = Stage(speedcrunch, "SpeedCrunch", pictures)
    calculator.play(stage)
    stage.picture("speedcrunch")
    return stage.differences


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()))
