#!/usr/bin/env bash
# Builds qtdriver for one Qt major: scripts/build.sh 4|5|6 [--asan|--windows] [--lean|--agent|--packages] [--together] [--configure]
# Qt 4 is found by the environment variable QMAKE4, the path of its qmake. The result is in build/qtN (build/qtN-asan).
# --windows cross-compiles for Windows, with the Qt in the folder that QT4_WINDOWS, QT5_WINDOWS or QT6_WINDOWS names; the
# result is in build/windows-qtN.
# --lean builds what a user needs, the agent and the showcase, and neither tests nor benchmarks.
# --agent builds the agent alone.
# --packages registers the tests of the packages, too.
# --together compiles a dozen sources of the agent at a time: a whole build takes half the time, one after a change ten times.
# --configure only has CMake configure the build.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { echo "usage: scripts/build.sh 4|5|6 [--asan|--windows] [--lean|--agent|--packages] [--together] [--configure]" >&2; exit 2; }
major=${1:-}
case "$major" in 4|5|6) shift ;; *) usage ;; esac
preset=qt$major
build=yes together=OFF tests=ON examples=ON packages=OFF
for option in "$@"; do
    case "$option" in
        --asan) preset=qt$major-asan ;;
        --windows) preset=windows-qt$major ;;
        --lean) tests=OFF ;;
        --agent) tests=OFF examples=OFF ;;
        --packages) packages=ON ;;
        --together) together=ON ;;
        --configure) build="" ;;
        *) usage ;;
    esac
done
if [[ $preset = windows-* ]]; then
    variable=QT${major}_WINDOWS
    [ -d "${!variable:-/nonexistent}/bin" ] || { echo "build: set $variable to the folder of a Qt $major for Windows" >&2; exit 2; }
    command -v x86_64-w64-mingw32-g++-posix >/dev/null \
        || { echo "build: Debian's g++-mingw-w64-x86-64-posix is missing, which compiles for Windows" >&2; exit 2; }
elif [ "$major" = 4 ] && [ ! -x "${QMAKE4:-}" ]; then
    echo "build: set QMAKE4 to the qmake of a Qt 4.8 to build for Qt 4" >&2
    exit 2
fi

# Objects that one checkout has compiled serve another one, too.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
log=build/$preset/configure.log
mkdir -p "build/$preset"
cmake --preset "$preset" "-DQTDRIVER_TOGETHER=$together" "-DBUILD_TESTING=$tests" "-DQTDRIVER_EXAMPLES=$examples" \
    "-DQTDRIVER_TEST_PACKAGES=$packages" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
[ -z "$build" ] || cmake --build --preset "$preset" -- --quiet
