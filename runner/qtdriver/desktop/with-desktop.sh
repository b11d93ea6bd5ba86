#!/usr/bin/env bash
# Runs a command on a desktop of its own: scripts/with-desktop.sh COMMAND ARGS...
# A private Xvfb with the window manager openbox, in a private network namespace with only the loopback interface, so
# that many runs can each own port 4242 at the same time. Set QTDRIVER_SCREEN for another screen than 1280x1024x24.
#
# This process becomes the command. So signals, streams and the exit status are the command's own, and a keeper, a
# process of its own session, ends the desktop when this process has ended, even by SIGKILL.
set -euo pipefail
[ $# -gt 0 ] || { echo "usage: scripts/with-desktop.sh COMMAND ARGS..." >&2; exit 2; }

if [ -z "${QTDRIVER_IN_NAMESPACE:-}" ]; then
    if unshare -Urn true 2>/dev/null; then
        QTDRIVER_IN_NAMESPACE=1 exec unshare -Urn -- "$0" "$@"
    fi
    # No namespaces here (some containers): the port is shared, so the runs take turns. The open file holds the lock.
    export QTDRIVER_IN_NAMESPACE=shared
    exec {turn}>"${TMPDIR:-/tmp}/qtdriver-desktop.lock"
    flock -n "$turn" || {
        echo "with-desktop: another run has the network, and this system allows no second one: waiting for its end" >&2
        flock "$turn"
    }
fi
ip link set lo up 2>/dev/null || true

python=${QTDRIVER_PYTHON:-/usr/bin/python3}
[ -x "$python" ] || python=python3
keeper=$(dirname "$(readlink -f "$0")")/desktop_keeper.py
exec {answer}< <(
    exec setsid --fork "$python" -I -S "$keeper" $$ "${QTDRIVER_SCREEN:-1280x1024x24}" </dev/null
)
# No answer: the keeper has said why.
{ read -r DISPLAY && read -r XDG_RUNTIME_DIR; } <&"$answer" || exit 1
exec {answer}<&-
export DISPLAY XDG_RUNTIME_DIR QT_QPA_PLATFORM=xcb NO_AT_BRIDGE=1
# A bare desktop: no Wayland, no session, no accessibility bus, no theme of the user's.
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE
exec "$@"
