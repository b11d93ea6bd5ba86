#!/usr/bin/env bash
# Plays random commands on the hostile applications: scripts/soak.sh [--qt N] [--commands 100000] [--seed S] [--jobs J]
# Builds the sanitizers' flavour of Qt N (5 by default; Qt 4 has none, so the plain one), spreads the commands evenly over
# all scenarios, prints progress, totals and the seed, and ends with a status that is not 0 when anything was found.
# Further options go to tests/hostile/soak.py: --first, --scenarios, --session-seed, --findings.
set -euo pipefail
cd "$(dirname "$0")/.."

major=5
commands=100000
seed=$((0x$(od -An -N4 -tx4 /dev/urandom | tr -d ' ')))
jobs=1
more=()
while [ $# -gt 0 ]; do
    case "$1" in
        --qt) major=${2:?--qt needs a number}; shift 2 ;;
        --commands) commands=${2:?--commands needs a number}; shift 2 ;;
        --seed) seed=${2:?--seed needs a number}; shift 2 ;;
        --jobs) jobs=${2:?--jobs needs a number}; shift 2 ;;
        -h|--help) sed -n '2,5s/^# //p' "$0"; exit 0 ;;
        *) more+=("$1"); shift ;;
    esac
done

if [ "$major" = 4 ]; then
    build=build/qt4
    scripts/build.sh 4
else
    build=build/qt$major-asan
    scripts/build.sh "$major" --asan
fi

pids=()
for job in $(seq "$jobs"); do
    # Each job is a run of its own, on a desktop of its own.
    scripts/with-desktop.sh /usr/bin/python3 tests/hostile/soak.py --build "$PWD/$build" \
        --commands $((commands / jobs)) --seed $((seed + job - 1)) "${more[@]}" &
    pids+=($!)
done
status=0
for pid in "${pids[@]}"; do
    wait "$pid" || status=1
done
exit "$status"
