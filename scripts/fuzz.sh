#!/usr/bin/env bash
# Builds and runs the fuzz targets: scripts/fuzz.sh [--qt N] [--time SECONDS | --runs NUMBER | --suite] [--seed NUMBER]
#     [--fresh] [--keep FOLDER] [TARGET...]
# By default all targets with Qt 5, one after the other, for 60 seconds each. --runs is an amount of work instead, and
# --suite the one of tests/fuzz/work.txt for each target. --time 0 only replays the seeds in tests/fuzz/corpus. What a
# run discovers is kept for the next one, but with --fresh, in build/qtN-fuzz/corpus or another folder.
#   scripts/fuzz.sh --replay FILE TARGET    runs one input, and shows what happens
#   scripts/fuzz.sh --build                 only builds; --built: everything is built already
#   scripts/fuzz.sh --programs FOLDER ...   runs the programs that are there, and builds nothing
# Inputs that break something are kept in build/qtN-fuzz/findings, and the status is not 0 then. Nor is it when a target
# has executed fewer inputs than it was to, none, far fewer in a second than the last time, or reached far less code.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { sed -n '2,/^set/{/^# /s/^# //p}' "$0" >&2; exit 2; }
major=5 seconds=60 runs="" suite="" seed=$RANDOM fresh="" keep="" replayed="" only_build="" built="" programs="" targets=()
while [ $# -gt 0 ]; do
    case "$1" in
        --qt) major=${2:-}; shift 2 ;;
        --time) seconds=${2:?--time needs a number}; shift 2 ;;
        --runs) runs=${2:?--runs needs a number}; shift 2 ;;
        --suite) suite=yes; shift ;;
        --keep) keep=$(realpath "${2:?--keep needs a folder}"); shift 2 ;;
        --programs) programs=$(realpath "${2:?--programs needs a folder}"); built=yes; shift 2 ;;
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
[ -n "$programs" ] || programs=$build/bin
[ -n "$keep" ] || keep=$build
mkdir -p "$build" "$keep/findings"
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
    "$programs/fuzz_${targets[0]}" "$replayed" && exit 0 || exit 1
fi

last() { grep -aoE "$2" "$1" | tail -1 | grep -oE '[0-9]+' || echo 0; }
# Column 2 of a target's row in the table of work is the number of inputs, column 3 the edges that they reach at least.
work() { awk -v target="$1" -v column="$2" '$1 == target { print $column }' tests/fuzz/work.txt; }
# Why a run does not count: too few inputs, far fewer in a second than the last time, or too little code reached.
shortfall() {
    if [ "$executions" -lt "$least" ]; then echo "executed only $executions of $least inputs"; fi
    if [ "$((rate * 10))" -lt "$usual_rate" ]; then echo "executed $rate inputs in a second, the last time $usual_rate"; fi
    if [ "$coverage" -lt "$least_coverage" ]; then echo "reached only $coverage of $least_coverage edges"; fi
}

failures=0
for target in "${targets[@]}"; do
    seeds=tests/fuzz/corpus/$target
    kept=$keep
    [ -z "$fresh" ] || kept=$scratch
    corpus=$kept/corpus/$target
    log=$kept/corpus/$target.log
    mkdir -p "$corpus"
    options=("-seed=$seed" "-artifact_prefix=$keep/findings/$target-" -print_final_stats=1 -timeout=60 -max_len=2000)
    [ ! -e "tests/fuzz/$target.dict" ] || options+=("-dict=tests/fuzz/$target.dict")
    # More than the seeds.
    seed_count=$(find "$seeds" -type f 2>/dev/null | wc -l || true)
    least=$((seed_count + 1)) least_coverage=0 usual_rate=0
    if [ -n "$suite" ]; then
        least=$(work "$target" 2) least_coverage=$(work "$target" 3)
        : "${least:?there is no work for $target in tests/fuzz/work.txt}"
        options+=("-runs=$least" "$corpus")
    elif [ -n "$runs" ]; then
        least=$runs
        options+=("-runs=$runs" "$corpus")
    elif [ "$seconds" -eq 0 ]; then
        options+=(-runs=0)
    else
        options+=("-max_total_time=$seconds" "$corpus")
        usual_rate=$(cat "$corpus.rate" 2>/dev/null || echo 0)
    fi
    [ ! -d "$seeds" ] || options+=("$seeds")
    status=0
    "$programs/fuzz_$target" "${options[@]}" >"$log" 2>&1 || status=$?
    executions=$(last "$log" 'stat::number_of_executed_units: +[0-9]+')
    rate=$(last "$log" 'stat::average_exec_per_sec: +[0-9]+')
    coverage=$(last "$log" ' cov: [0-9]+')
    echo "fuzz: $target: seed $seed, $executions executions, $rate/s, coverage $coverage edges, status $status"
    if [ "$status" -ne 0 ]; then
        failures=$((failures + 1))
        grep -aE -A 20 'broken rule|ERROR: |runtime error' "$log" | cut -c 1-200 | head -40 || tail -40 "$log"
        grep -aE 'Test unit written' "$log" || true
    elif reason=$(shortfall) && [ -n "$reason" ]; then
        failures=$((failures + 1))
        printf 'fuzz: %s: %s\n' "$target" "$reason"
        tail -5 "$log"
    elif [ -z "$runs$suite" ] && [ "$seconds" -ne 0 ]; then
        echo "$rate" >"$corpus.rate"
    fi
done
[ "$failures" -eq 0 ] || { echo "fuzz: findings or too little work in $failures of ${#targets[@]} targets, see $keep/findings" >&2; exit 1; }
