#!/usr/bin/env bash
# Runs a command on a desktop of its own: scripts/with-desktop.sh COMMAND ARGS...
# A private X server with a window manager, in a private network namespace; the runner's own script has the details.
# --nestable keeps root, as in a container, able to make namespaces within this one, which tests of the desktops do.
exec "$(dirname "$(readlink -f "$0")")/../runner/qtdriver/desktop/with-desktop.sh" --nestable "$@"
