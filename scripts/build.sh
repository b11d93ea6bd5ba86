#!/usr/bin/env bash
# Builds qtdriver for one Qt major: scripts/build.sh 4|5|6 [--asan] [--configure]
# Qt 4 is found by the environment variable QMAKE4, the path of its qmake. The result is in build/qtN (build/qtN-asan).
# --configure leaves it at what CMake writes, for whoever builds later.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { echo "usage: scripts/build.sh 4|5|6 [--asan] [--configure]" >&2; exit 2; }
major=${1:-}
case "$major" in 4|5|6) shift ;; *) usage ;; esac
preset=qt$major
build=yes
for option in "$@"; do
    case "$option" in --asan) preset=$preset-asan ;; --configure) build="" ;; *) usage ;; esac
done
if [ "$major" = 4 ] && [ ! -x "${QMAKE4:-}" ]; then
    echo "build: set QMAKE4 to the qmake of a Qt 4.8 to build for Qt 4" >&2
    exit 2
fi

# Objects that one checkout has compiled serve another one, too.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
log=build/$preset/configure.log
mkdir -p "build/$preset"
cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
[ -z "$build" ] || cmake --build --preset "$preset" -- --quiet
