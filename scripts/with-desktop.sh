#!/usr/bin/env bash
# Runs a command on a desktop of its own: scripts/with-desktop.sh COMMAND ARGS...
# A private X server with a window manager, in a private network namespace; the runner's own script tells the rest.
# Tests of the desktops make namespaces within this one, so root, as in a container, has to be able to.
exec "$(dirname "$(readlink -f "$0")")/../runner/qtdriver/desktop/with-desktop.sh" --nestable "$@"
