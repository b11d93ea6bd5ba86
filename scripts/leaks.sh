#!/usr/bin/env bash
# Plays 10,000 rounds of every kind of request, and prints what they leave behind: scripts/leaks.sh [QT [ROUNDS]]
# By default for Qt 5. It takes half an hour; the test suite plays a few rounds of the same.
set -euo pipefail
cd "$(dirname "$0")/.."

major=${1:-5}
scripts/setup.sh
scripts/build.sh "$major"
export QTDRIVER_LEAK_ROUNDS=${2:-10000} QTDRIVER_QT=$major QTDRIVER_BUILD=$PWD/build/qt$major
exec scripts/with-desktop.sh /usr/bin/python3 -m pytest -q -s -p no:cacheprovider --tb=short tests/protocol/test_leaks.py
