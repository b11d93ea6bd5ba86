#!/usr/bin/env bash
# Measures what the agent costs, and prints one table: scripts/bench.sh [--quick] [--windows] [--document] [QT]...
# By default for Qt 5 and 6, and 4 where QMAKE4 names its qmake. --quick shows in seconds that everything runs; its figures
# mean nothing. --windows measures round trips under Wine as well, with each Qt that QT4_WINDOWS, QT5_WINDOWS or QT6_WINDOWS
# names the folder of. --document writes the table into docs/performance.md.
set -euo pipefail
cd "$(dirname "$0")/.."

majors=()
quick=()
document=()
windows=""
result=bench.json
for argument in "$@"; do
    case "$argument" in
        --quick) quick=(--quick); result=bench-quick.json ;;
        --windows) windows=yes ;;
        --document) document=(--document docs/performance.md) ;;
        4|5|6) majors+=("$argument") ;;
        *) echo "usage: scripts/bench.sh [--quick] [--windows] [--document] [4|5|6]..." >&2; exit 2 ;;
    esac
done
if [ ${#majors[@]} -eq 0 ]; then
    majors=(5 6)
    [ ! -x "${QMAKE4:-}" ] || majors+=(4)
fi
scripts/setup.sh
builds=()
for major in "${majors[@]}"; do
    scripts/build.sh "$major"
    builds+=("build/qt$major")
    folder=QT${major}_WINDOWS
    [ -n "$windows" ] && [ -d "${!folder:-/nonexistent}/bin" ] || continue
    build=build/windows-qt$major
    scripts/build.sh "$major" --windows --configure
    cmake -DQTDRIVER_ALL_WINDOWS_TESTS=ON "$build" >/dev/null
    cmake --build "$build" --target qtdriver benchhost -- --quiet
    builds+=("$build")
done
reports=()
for build in "${builds[@]}"; do
    echo "bench: measuring ${build#build/}" >&2
    scripts/with-desktop.sh /usr/bin/python3 bench/measure.py "$build" ${quick[@]+"${quick[@]}"}
    reports+=("$build/$result")
done
/usr/bin/python3 bench/report.py ${document[@]+"${document[@]}"} "${reports[@]}"
