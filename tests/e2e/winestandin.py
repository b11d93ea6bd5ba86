"""A program in the place of Wine that only makes files and waits, for tests of what is around Wine."""

WINE = """#!/bin/sh
case "$1" in
--version) echo "wine-9.9 (Test 9.9~1)" ;;
wineboot)
    echo "$$ ${DISPLAY-none} $QTDRIVER_LAUNCH" >>"$MADE"
    sleep "${SLOWLY-0}"
    [ -z "$REFUSING" ] || { echo "no room on this disk"; exit 3; }
    mkdir -p "$WINEPREFIX/drive_c/windows/system32" "$WINEPREFIX/drive_c/users/ada" "$WINEPREFIX/dosdevices"
    ln -s "$HOME" "$WINEPREFIX/drive_c/users/ada/Documents"
    ln -s ../drive_c "$WINEPREFIX/dosdevices/c:"
    touch "$WINEPREFIX/drive_c/windows/system32/KERNEL32.dll" "$WINEPREFIX/drive_c/windows/system32/msvcrt.dll"
    echo "WINE REGISTRY Version 2" >"$WINEPREFIX/user.reg" ;;
*cmd.exe)
    [ -z "$BROKEN" ] || exit 1
    printf "C:>"
    exec cat ;;
esac
"""


def install(folder, monkeypatch):
    """Makes it the Wine of this machine, with a cache and a runtime folder of its own in `folder`. Each prefix that it
    makes is a line in the file `made` there: its process, its display, its mark."""
    program = folder / "bin" / "wine"
    program.parent.mkdir()
    program.write_text(WINE)
    program.chmod(0o755)
    (folder / "run").mkdir()
    monkeypatch.setenv("PATH", f"{program.parent}:/usr/bin:/bin")
    monkeypatch.setenv("XDG_CACHE_HOME", str(folder / "cache"))
    monkeypatch.setenv("XDG_RUNTIME_DIR", str(folder / "run"))
    monkeypatch.setenv("MADE", str(folder / "made"))
    monkeypatch.delenv("WINEPREFIX", raising=False)
