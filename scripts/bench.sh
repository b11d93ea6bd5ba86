#!/usr/bin/env bash
# Prints the benchmarks' table: scripts/bench.sh [QT]. By default for Qt 5 and 6, and 4 where QMAKE4 names its qmake.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -gt 0 ]; then
    majors=("$1")
else
    majors=(5 6)
    [ ! -x "${QMAKE4:-}" ] || majors+=(4)
fi
scripts/setup.sh
for major in "${majors[@]}"; do
    scripts/build.sh "$major"
    for table in roundtrips sizes; do
        scripts/with-desktop.sh /usr/bin/python3 "bench/$table.py" "build/qt$major"
        echo
    done
done
