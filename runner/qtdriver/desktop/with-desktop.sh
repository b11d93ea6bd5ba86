#!/usr/bin/env bash
# Runs a command on a desktop of its own: scripts/with-desktop.sh COMMAND ARGS...
# A private Xvfb with the window manager openbox, in a private network namespace with only the loopback interface, so
# that many runs can each own port 4242 at the same time. Set QTDRIVER_SCREEN for another screen than 1280x1024x24.
#
# With --own-tmp NAME/NAME in front of it the COMMAND has an empty /tmp, in memory, that goes with it; only the entries of /tmp
# with those names are there as before. It is for the workers of a run, and fails where the system does not allow it.
#
# The namespace has the current user as it is, and the command has no capability in it. With --nestable in front of the
# COMMAND it can make such namespaces in turn also when the user is root, for which the kernel wants CAP_SETFCAP.
#
# This process becomes the command. So signals, streams and the exit status are the command's own, and a keeper, a
# process of its own session, ends the desktop when this process has ended, even by SIGKILL.
set -euo pipefail
kept=-all
own_tmp=
shared_entries=
while :; do
    case ${1:-} in
        --nestable) kept=-all,+setfcap ;;
        --own-tmp) own_tmp=yes shared_entries=${2?} && shift ;;
        *) break ;;
    esac
    shift
done
[ $# -gt 0 ] || { echo "usage: scripts/with-desktop.sh COMMAND ARGS..." >&2; exit 2; }

# Puts an empty /tmp in place of the old one, which is still the current folder meanwhile, and gets some entries back.
enter_own_tmp='
here=$PWD
cd /tmp && mount -t tmpfs -o mode=1777,nosuid,nodev qtdriver /tmp || exit 1
mkdir -m 1777 /tmp/.X11-unix
set -f
IFS=/
for name in $1; do
    if [ -L "$name" ]; then
        cp -P -- "$name" "/tmp/$name"
    elif [ -d "$name" ]; then
        mkdir -p -- "/tmp/$name" && mount --no-canonicalize --rbind "./$name" "/tmp/$name"
    elif [ -e "$name" ]; then
        : >"/tmp/$name" && mount --no-canonicalize --bind "./$name" "/tmp/$name"
    fi || exit 1
done
set +f
unset IFS
cd "$here" || exit 1
shift
export QTDRIVER_OWN_TMP=1
'
# Brings the loopback interface up, gives up every capability, and goes on with this script.
enter_namespace='
ip link set lo up 2>/dev/null || true
kept=$1
shift
exec setpriv --ambient-caps -all --inh-caps -all --bounding-set "$kept" -- "$0" "$@"
'
own_namespace=(unshare --user --map-current-user --net)
if [ -z "${QTDRIVER_IN_NAMESPACE:-}" ]; then
    if "${own_namespace[@]}" true 2>/dev/null; then
        export QTDRIVER_IN_NAMESPACE=1
        if [ -n "$own_tmp" ]; then
            own_namespace+=(--mount --propagation slave)
            enter_namespace=$enter_own_tmp$enter_namespace
            set -- "$shared_entries" "$kept" "$@"
        else
            set -- "$kept" "$@"
        fi
        exec "${own_namespace[@]}" --keep-caps -- sh -c "$enter_namespace" "$0" "$@"
    fi
    # No namespaces here (some containers): the port is shared, so the runs take turns. The open file holds the lock.
    export QTDRIVER_IN_NAMESPACE=shared
    lock=${TMPDIR:-/tmp}/qtdriver-desktop-$UID.lock
    if [ ! -e "$lock" ] && [ ! -L "$lock" ]; then
        (umask 077 && set -o noclobber && : >"$lock") 2>/dev/null || true # noclobber: made anew, never through a link
    fi
    if [ -L "$lock" ] || [ ! -f "$lock" ] || [ ! -O "$lock" ]; then
        echo "with-desktop: $lock is not a file of yours: remove it" >&2
        exit 1
    fi
    exec {turn}<"$lock"
    flock -n "$turn" || {
        echo "with-desktop: another run has the network, and this system allows no second one: waiting for its end" >&2
        flock "$turn"
    }
fi

python=${QTDRIVER_PYTHON:-/usr/bin/python3}
[ -x "$python" ] || python=python3
keeper=$(dirname "$(readlink -f "$0")")/desktop_keeper.py
exec {answer}< <(
    exec setsid --fork "$python" -I -S "$keeper" $$ "${QTDRIVER_SCREEN:-1280x1024x24}" </dev/null
)
# Without an answer there is no desktop; the keeper has written the reason to standard error.
{ read -r DISPLAY && read -r XDG_RUNTIME_DIR; } <&"$answer" || exit 1
exec {answer}<&-
export DISPLAY XDG_RUNTIME_DIR QT_QPA_PLATFORM=xcb NO_AT_BRIDGE=1
# A bare desktop: no Wayland, no session, no accessibility bus, no theme of the user's.
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE
exec "$@"
