#!/usr/bin/env bash
# Sets up, builds, and drives two applications for a person to see: scripts/demo.sh [windows] [QT], by default Qt 5.
# Shows each request with its reply and its effect, saves screenshots in build/demo, and fails when anything differs.
# With "windows" it drives the showcase for Windows under Wine, with the first Qt that QT5_WINDOWS, QT4_WINDOWS or
# QT6_WINDOWS names, and saves the screenshots in build/demo-windows.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" = windows ]; then
    major=${2:-}
    for candidate in 5 4 6; do
        named=QT${candidate}_WINDOWS
        [ -n "$major" ] || [ -z "${!named:-}" ] || major=$candidate
    done
    [ -n "$major" ] || { echo "demo: set QT5_WINDOWS to the folder of a Qt 5 for Windows, or one of the others" >&2; exit 2; }
    scripts/setup.sh
    echo "demo: building for Qt $major for Windows"
    scripts/build.sh "$major" --windows
    build=build/windows-qt$major pictures=build/demo-windows
else
    major=${1:-5}
    scripts/setup.sh
    # SpeedCrunch is an application of Qt 5, whatever the showcase is built for.
    for needed in $(printf '%s\n' "$major" 5 | sort -u); do
        echo "demo: building for Qt $needed"
        scripts/build.sh "$needed"
    done
    build=build/qt$major pictures=build/demo
fi
mkdir -p "$pictures"
PYTHONPATH=runner scripts/with-desktop.sh /usr/bin/python3 examples/demo "$build" "$pictures"
