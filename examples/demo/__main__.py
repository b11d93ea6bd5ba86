"""The demonstration: drives the showcase and SpeedCrunch for a person to see. Run by scripts/demo.sh.

Arguments: the build folder (build/qt5), the folder for screenshots. Exits with 1 when anything differs.
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
    major = int(build.name[len("qt") :])
    differences = []
    with Driver(build=build.parent) as driver:
        showcase = driver.launch(build / "bin" / "showcase", qt=major)
        stage = Stage(showcase, "Widget:showcase", pictures)
        stage.expect_window("Widget:showcase")
        stage.expect("showcase", "isActiveWindow", True)
        stage.picture("before")
        for act in ACTS:
            act.play(stage)
        stage.picture("after")
        differences += stage.differences
        showcase.terminate()
        speedcrunch = driver.launch("speedcrunch", environment=calculator.environment(pictures))
        stage = Stage(speedcrunch, "SpeedCrunch", pictures)
        calculator.play(stage)
        stage.picture("speedcrunch")
        differences += stage.differences
    print()
    for difference in differences:
        print(f"DIFFERENT: {difference}")
    print("demo: " + ("all as expected" if not differences else f"{len(differences)} differences"))
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()))
