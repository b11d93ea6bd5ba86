#!/usr/bin/env bash
# Sets up, builds and runs every test: scripts/test.sh [--qt N] [--asan]
# By default for each Qt that the machine has: 5 and 6 from the packages, 4 where QMAKE4 names its qmake.
# Ends with one line "N passed, N failed" for all suites together, and with a status that is not 0 when any failed.
set -euo pipefail
cd "$(dirname "$0")/.."

majors=()
flavour=""
while [ $# -gt 0 ]; do
    case "$1" in
        --qt) majors+=("${2:?--qt needs a number}"); shift 2 ;;
        --asan) flavour=-asan; shift ;;
        *) echo "usage: scripts/test.sh [--qt N]... [--asan]" >&2; exit 2 ;;
    esac
done
if [ ${#majors[@]} -eq 0 ]; then
    majors=(5 6)
    if [ -x "${QMAKE4:-}" ]; then
        majors+=(4)
    else
        echo "test: no Qt 4.8 here (QMAKE4 does not name its qmake), so nothing is tested with it"
    fi
fi

scripts/setup.sh
export ASAN_OPTIONS=detect_leaks=0:verify_asan_link_order=0${ASAN_OPTIONS:+:$ASAN_OPTIONS}
jobs=$(($(nproc) + 1))
logs=()
for major in "${majors[@]}"; do
    echo "test: building for Qt $major"
    scripts/build.sh "$major" ${flavour:+--asan}
done
for major in "${majors[@]}"; do
    build=build/qt$major$flavour
    echo "test: running the suites for Qt $major"
    rm -f "$build/Testing/Temporary/LastTest.log"
    ctest --test-dir "$build" --parallel "$jobs" --output-on-failure --no-tests=error || true
    logs+=("$build/Testing/Temporary/LastTest.log")
done
echo "test: checking the sources, and fuzzing for a minute"
mkdir -p build/checks
QTDRIVER_BUILD=$PWD/build/qt${majors[0]}$flavour /usr/bin/python3 -m pytest -q -p no:cacheprovider --tb=short \
    tests/checks tests/fuzz 2>&1 | tee build/checks/pytest.log || true
exec /usr/bin/python3 scripts/count_tests.py build/checks/pytest.log "${logs[@]}"
