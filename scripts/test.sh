#!/usr/bin/env bash
# Sets up, builds and runs every test: scripts/test.sh [--qt N]... [--asan] [--windows] [--packages] [--only REGEX]
# By default for each Qt that the machine has, 5 and 6 from the packages, 4 where QMAKE4 names its qmake, and the suites that
# talk to the agent once more in a build with sanitizers. --asan runs everything with sanitizers, and nothing without.
# Where QT4_WINDOWS names the folder of a Qt 4.8 for Windows, a part of the tests runs under Wine, too. --windows runs all
# that can, with Qt 5 and 6 as well where QT5_WINDOWS and QT6_WINDOWS name them, which takes half an hour more.
# --packages also makes the packages and installs them in a Debian without compiler and checkout, which takes a minute
# more where QTDRIVER_TOGETHER has the builds make the same objects, as in .ci/run, else four.
# --only runs a part: the suites whose names the expression is found in, as "qt5/protocol/" or "checks/".
# Builds and suites of all Qts are one queue for all cores. Ends with one line "N passed, N failed" for all suites
# together, and with a status that is not 0 when any failed, was cut, or did not run.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { sed -n '2,11s/^# \?//p' "$0" >&2; exit 2; }
majors=() flavour="" windows="" packages="" only="" notes=()
while [ $# -gt 0 ]; do
    case "$1" in
        --qt) majors+=("${2:?--qt needs a number}"); shift 2 ;;
        --asan) flavour=-asan; shift ;;
        --windows) windows=all; shift ;;
        --packages) packages=ON; shift ;;
        --only) only=${2:?--only needs a regular expression}; shift 2 ;;
        *) usage ;;
    esac
done
if [ ${#majors[@]} -eq 0 ]; then
    majors=(5 6)
    if [ -n "$flavour" ]; then
        notes+=("only builds with sanitizers, which there are for Qt 5 and 6")
    elif [ -x "${QMAKE4:-}" ]; then
        majors+=(4)
    else
        notes+=("no Qt 4.8 here (QMAKE4 does not name its qmake), so nothing is tested with it")
    fi
fi
builds=("${majors[@]/%/$flavour}")
builds=("${builds[@]/#/qt}")
if [ -z "$flavour" ]; then
    sanitized=$(printf '%s\n' "${majors[@]}" | grep -m1 '[56]' || true)
    [ -z "$sanitized" ] || builds+=("qt$sanitized-asan")
    [ -n "$sanitized" ] || notes+=("nothing is tested with sanitizers, which need Qt 5 or 6")
fi
tested_on_windows=""
for major in $([ -n "$flavour" ] || printf '%s\n' "${majors[@]}"); do
    variable=QT${major}_WINDOWS
    [ -d "${!variable:-/nonexistent}/bin" ] || continue
    [ "$major" = 4 ] || [ -n "$windows" ] || continue
    builds+=("windows-qt$major")
    tested_on_windows+=" $major"
done
if [ -z "$tested_on_windows" ]; then
    notes+=("nothing is tested as a Windows program (no folder of a Qt for Windows in QT4_WINDOWS)")
elif [ -z "$windows" ]; then
    notes+=("as Windows programs only a part is tested, with Qt 4.8 alone; --windows tests all of it")
fi
[ -n "$packages" ] || notes+=("no packages are made and tested; --packages does that")
[ -z "$only" ] || notes+=("this is a part of the suites, those named like $only")
for note in ${notes[@]+"${notes[@]}"}; do echo "test: $note"; done

# Objects that one checkout has compiled serve another one, too.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
scripts/setup.sh ${packages:+--packages}
export ASAN_OPTIONS=detect_leaks=0:verify_asan_link_order=0${ASAN_OPTIONS:+:$ASAN_OPTIONS}
for build in "${builds[@]}"; do
    major=${build#*qt}
    case "$build" in *-asan) kind=--asan ;; windows-*) kind=--windows ;; *) kind="" ;; esac
    scripts/build.sh "${major%-asan}" $kind ${packages:+--packages} ${QTDRIVER_TOGETHER:+--together} --configure
    [ "$kind" != --windows ] || cmake "-DQTDRIVER_ALL_WINDOWS_TESTS=${windows:+ON}" "build/$build" >/dev/null
done
queue=build/suites # where ctest also remembers how long each suite took, to begin with the longest
rm -f "$queue"/results.xml "$queue"/suites.json
/usr/bin/python3 scripts/suites.py "$queue" --only "$only" "${builds[@]}"
status=0
# A suite waits for its applications and its desktop more than half of its time, so more run at a time than there are cores.
ctest --test-dir "$queue" --parallel $(($(nproc) * 5 / 2)) --output-on-failure --no-label-summary --no-tests=error \
    --output-junit results.xml --test-output-size-passed 100000000 --test-output-size-failed 100000000 || status=$?
for note in ${notes[@]+"${notes[@]}"}; do echo "test: $note"; done
exec /usr/bin/python3 scripts/count_tests.py "$queue/suites.json" "$queue/results.xml" "$status"
