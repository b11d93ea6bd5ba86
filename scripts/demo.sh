#!/usr/bin/env bash
# Sets up, builds, and drives two applications for a person to see: scripts/demo.sh [windows] [QT], by default Qt 5.
# Installs and builds only what it shows, and no tests; says when each step begins.
# Shows each request with its reply and its effect, saves screenshots in build/demo, and fails when anything differs.
# With "windows" it drives the showcase for Windows under Wine, with the first Qt that QT5_WINDOWS, QT4_WINDOWS or
# QT6_WINDOWS names, and saves the screenshots in build/demo-windows.
set -euo pipefail
cd "$(dirname "$0")/.."

# step TEXT: says how many seconds have passed, and what comes.
step() { printf 'demo: %3d s  %s\n' "$SECONDS" "$1"; }
# lean QT: the options that build only what is shown. A build that was configured with tests keeps them.
lean() { grep -qs '^BUILD_TESTING:BOOL=ON' "build/qt$1/CMakeCache.txt" || echo --lean --together; }

if [ "${1:-}" = windows ]; then
    major=${2:-}
    for candidate in 5 4 6; do
        named=QT${candidate}_WINDOWS
        [ -n "$major" ] || [ -z "${!named:-}" ] || major=$candidate
    done
    [ -n "$major" ] || { echo "demo: set QT5_WINDOWS to the folder of a Qt 5 for Windows, or one of the others" >&2; exit 2; }
    step "installing what is missing"
    scripts/setup.sh
    step "building for Qt $major for Windows"
    scripts/build.sh "$major" --windows
    build=build/windows-qt$major pictures=build/demo-windows
else
    major=${1:-5}
    step "installing what is missing"
    scripts/setup.sh $([ "$major" != 5 ] || echo --use)
    # SpeedCrunch is an application of Qt 5, whatever the showcase is built for.
    for needed in $(printf '%s\n' "$major" 5 | sort -u); do
        step "building for Qt $needed"
        scripts/build.sh "$needed" $(lean "$needed")
    done
    build=build/qt$major pictures=build/demo
fi
mkdir -p "$pictures"
step "driving the applications"
PYTHONPATH=runner scripts/with-desktop.sh /usr/bin/python3 examples/demo "$build" "$pictures"
