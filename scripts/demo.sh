#!/usr/bin/env bash
# Sets up, builds, and drives two applications for a person to see: scripts/demo.sh [QT], by default Qt 5.
# Shows each request with its reply and its effect, saves screenshots in build/demo, and fails when anything differs.
set -euo pipefail
cd "$(dirname "$0")/.."

major=${1:-5}
scripts/setup.sh
# SpeedCrunch is an application of Qt 5, whatever the showcase is built for.
for needed in $(printf '%s\n' "$major" 5 | sort -u); do
    echo "demo: building for Qt $needed"
    scripts/build.sh "$needed"
done
mkdir -p build/demo
PYTHONPATH=runner scripts/with-desktop.sh /usr/bin/python3 examples/demo "build/qt$major" build/demo
