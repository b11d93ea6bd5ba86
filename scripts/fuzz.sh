#!/usr/bin/env bash
# Builds and runs the fuzz targets: scripts/fuzz.sh [--qt N] [--time SECONDS] [--seed NUMBER] [--fresh] [TARGET...]
# By default all targets with Qt 5, one after the other, for 60 seconds each. --time 0 only replays the seeds in
# tests/fuzz/corpus. What a run discovers is kept in build/qtN-fuzz/corpus for the next one, but with --fresh.
#   scripts/fuzz.sh --replay FILE TARGET    runs one input, and tells what happens
#   scripts/fuzz.sh --build                 only builds; --built: everything is built already
# Inputs that break something are kept in build/qtN-fuzz/findings, and the status is not 0 then.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { sed -n '2,7s/^# \?//p' "$0" >&2; exit 2; }
major=5 seconds=60 seed=$RANDOM fresh="" replayed="" only_build="" built="" targets=()
while [ $# -gt 0 ]; do
    case "$1" in
        --qt) major=${2:-}; shift 2 ;;
        --time) seconds=${2:?--time needs a number}; shift 2 ;;
        --seed) seed=${2:?--seed needs a number}; shift 2 ;;
        --fresh) fresh=yes; shift ;;
        --replay) replayed=$(realpath "${2:?--replay needs a file}"); shift 2 ;;
        --build) only_build=yes; shift ;;
        --built) built=yes; shift ;;
        -*) usage ;;
        *) targets+=("$1"); shift ;;
    esac
done
case "$major" in 5|6) ;; *) usage ;; esac
if [ ${#targets[@]} -eq 0 ]; then
    for folder in tests/fuzz/corpus/*; do targets+=("${folder##*/}"); done
fi

build=build/qt$major-fuzz
mkdir -p "$build/findings"
if [ -z "$built" ]; then
    cmake --preset "qt$major-fuzz" >"$build/configure.log" 2>&1 || { cat "$build/configure.log" >&2; exit 1; }
    cmake --build --preset "qt$major-fuzz" -- --quiet
fi
[ -z "$only_build" ] || exit 0

# The application is not to find anything of the user's.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export LC_ALL=C.UTF-8 HOME=$scratch XDG_CONFIG_HOME=$scratch XDG_RUNTIME_DIR=$scratch TMPDIR=$scratch
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE

if [ -n "$replayed" ]; then
    export QTDRIVER_FUZZ_TALK=1 ASAN_OPTIONS=malloc_context_size=30${ASAN_OPTIONS:+:$ASAN_OPTIONS}
    "$build/bin/fuzz_${targets[0]}" "$replayed" && exit 0 || exit 1
fi

last() { grep -aoE "$2" "$1" | tail -1 | grep -oE '[0-9]+' || echo 0; }
failures=0
for target in "${targets[@]}"; do
    seeds=tests/fuzz/corpus/$target
    kept=$build
    [ -z "$fresh" ] || kept=$scratch
    corpus=$kept/corpus/$target
    log=$kept/corpus/$target.log
    mkdir -p "$corpus"
    options=("-seed=$seed" "-artifact_prefix=$build/findings/$target-" -print_final_stats=1 -timeout=60 -max_len=2000)
    [ ! -e "tests/fuzz/$target.dict" ] || options+=("-dict=tests/fuzz/$target.dict")
    if [ "$seconds" -eq 0 ]; then
        options+=(-runs=0)
    else
        options+=("-max_total_time=$seconds" "$corpus")
    fi
    [ ! -d "$seeds" ] || options+=("$seeds")
    status=0
    "$build/bin/fuzz_$target" "${options[@]}" >"$log" 2>&1 || status=$?
    executions=$(last "$log" 'stat::number_of_executed_units: +[0-9]+')
    rate=$(last "$log" 'stat::average_exec_per_sec: +[0-9]+')
    coverage=$(last "$log" ' cov: [0-9]+')
    echo "fuzz: $target: seed $seed, $executions executions, $rate/s, coverage $coverage edges, status $status"
    if [ "$status" -ne 0 ]; then
        failures=$((failures + 1))
        grep -aE -A 20 'broken rule|ERROR: |runtime error' "$log" | cut -c 1-200 | head -40 || tail -40 "$log"
        grep -aE 'Test unit written' "$log" || true
    fi
done
[ "$failures" -eq 0 ] || { echo "fuzz: findings in $failures of ${#targets[@]} targets, see $build/findings" >&2; exit 1; }
