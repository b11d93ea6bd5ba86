#!/usr/bin/env bash
# Measures what the agent costs, and prints one table: scripts/bench.sh [--quick] [--document] [QT]...
# By default for Qt 5 and 6, and 4 where QMAKE4 names its qmake. --quick shows in seconds that everything runs; its figures
# mean nothing. --document writes the table into docs/performance.md.
set -euo pipefail
cd "$(dirname "$0")/.."

majors=()
quick=()
document=()
result=bench.json
for argument in "$@"; do
    case "$argument" in
        --quick) quick=(--quick); result=bench-quick.json ;;
        --document) document=(--document docs/performance.md) ;;
        4|5|6) majors+=("$argument") ;;
        *) echo "usage: scripts/bench.sh [--quick] [--document] [4|5|6]..." >&2; exit 2 ;;
    esac
done
if [ ${#majors[@]} -eq 0 ]; then
    majors=(5 6)
    [ ! -x "${QMAKE4:-}" ] || majors+=(4)
fi
scripts/setup.sh
reports=()
for major in "${majors[@]}"; do
    scripts/build.sh "$major"
    reports+=("build/qt$major/$result")
done
for major in "${majors[@]}"; do
    echo "bench: measuring Qt $major" >&2
    scripts/with-desktop.sh /usr/bin/python3 bench/measure.py "build/qt$major" ${quick[@]+"${quick[@]}"}
done
/usr/bin/python3 bench/report.py ${document[@]+"${document[@]}"} "${reports[@]}"
