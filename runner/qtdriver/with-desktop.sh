#!/usr/bin/env bash
# Runs a command on a desktop of its own: scripts/with-desktop.sh COMMAND ARGS...
# A private Xvfb with the window manager openbox, in a private network namespace with only the loopback interface, so
# that many runs can each own port 4242 at the same time. Set QTDRIVER_SCREEN for another screen than 1280x1024x24.
set -euo pipefail
[ $# -gt 0 ] || { echo "usage: scripts/with-desktop.sh COMMAND ARGS..." >&2; exit 2; }

if [ -z "${QTDRIVER_IN_NAMESPACE:-}" ]; then
    if unshare -Urn true 2>/dev/null; then
        QTDRIVER_IN_NAMESPACE=1 exec unshare -Urn -- "$0" "$@"
    fi
    # No namespaces here (some containers): the port is shared, so the runs take turns.
    QTDRIVER_IN_NAMESPACE=shared exec flock "${TMPDIR:-/tmp}/qtdriver-desktop.lock" "$0" "$@"
fi
ip link set lo up 2>/dev/null || true

folder=$(mktemp -d)
cleanup() {
    kill "${window_manager:-}" "${server:-}" 2>/dev/null || true
    wait "${window_manager:-}" "${server:-}" 2>/dev/null || true
    rm -rf "$folder"
}
trap cleanup EXIT
trap 'exit 143' TERM INT

mkfifo "$folder/display"
Xvfb -displayfd 3 -screen 0 "${QTDRIVER_SCREEN:-1280x1024x24}" -nolisten tcp -noreset \
    3>"$folder/display" >"$folder/xvfb.log" 2>&1 &
server=$!
if ! read -r -t 20 number <"$folder/display"; then
    echo "with-desktop: Xvfb did not start:" >&2
    cat "$folder/xvfb.log" >&2
    exit 1
fi
export DISPLAY=:$number
unset WAYLAND_DISPLAY
export XDG_RUNTIME_DIR=$folder QT_QPA_PLATFORM=xcb
# A bare desktop: no session, no accessibility bus, no theme of the user's.
unset DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE
export NO_AT_BRIDGE=1

openbox --sm-disable >"$folder/openbox.log" 2>&1 &
window_manager=$!
# The window manager is there when it has announced itself on the root window.
for _ in $(seq 200); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
    kill -0 "$window_manager" 2>/dev/null || { cat "$folder/openbox.log" >&2; exit 1; }
    sleep 0.02
done

status=0
"$@" || status=$?
exit "$status"
