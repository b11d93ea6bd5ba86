"""An application that nobody here wrote: Debian's SpeedCrunch, driven without its cooperation."""

import os
import shutil
import subprocess

from demonstration import eventually


# Its keypad is switched on, and each result goes to the clipboard, where another program can read it: the widget that
# shows results has no name, nor have its neighbours, so no path is only its own.
SETTINGS = r"""[SpeedCrunch]
General\AutoResultToClipboard=true
Layout\KeypadVisible=true
"""


def environment(folder):
    """The environment for a run with settings of its own, below this folder."""
    home = folder / "speedcrunch-home"
    shutil.rmtree(home, ignore_errors=True)
    settings = home / ".config" / "SpeedCrunch"
    settings.mkdir(parents=True)
    for name in ("SpeedCrunch.ini", "SpeedCrunch.conf"):
        (settings / name).write_text(SETTINGS)
    return {**os.environ, "HOME": str(home), "XDG_CONFIG_HOME": str(home / ".config")}


def clipboard():
    """The text on the clipboard, None when there is none."""
    result = subprocess.run(["xclip", "-o", "-selection", "clipboard"], capture_output=True, text=True)
    return result.stdout if result.returncode == 0 else None


def run(demo):
    demo.title("SpeedCrunch: 12 times 34")
    demo.expect_window("SpeedCrunch")
    # Its multiplication key is labelled with a character beyond Latin-1, which no path can carry. It multiplies by
    # brackets, too: 12(34).
    for key in "12(34)=":
        demo.activate(f"Press the key {key}", f"{key}_dialog_button")
    result = eventually(clipboard, lambda text: text == "408")
    demo.check("the result", result, "408")
