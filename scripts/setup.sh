#!/usr/bin/env bash
# Installs what qtdriver needs, from Debian's packages: scripts/setup.sh [--use|--packages]
# With --use only what it takes to build it for Qt 5 and to drive an application, else also what its tests need;
# with --packages also what makes packages and tests them.
# Does nothing where all is there.
set -euo pipefail

case "${1:-}" in
    --use|--packages|"") list=${1:---test} ;;
    *) echo "usage: scripts/setup.sh [--use|--packages]" >&2; exit 2 ;;
esac

to_use=(
    # build
    g++ cmake ninja-build qtbase5-dev
    # desktop without a screen
    xvfb openbox xdotool xclip fonts-dejavu-core util-linux iproute2
    # runner
    python3 python3-psutil python3-pyelftools python3-pil
    # an application that nobody here wrote
    speedcrunch
)
to_test=(
    # build
    ccache lld qt6-base-dev libgl-dev qt6-5compat-dev libbenchmark-dev
    # desktop for tests, demo and benchmarks
    xserver-xephyr x11-utils x11-xserver-utils gdb imagemagick
    # runner and its tests
    python3-aiohttp python3-pefile python3-pytest python3-pytest-xdist python3-hypothesis python3-jinja2 python3-prompt-toolkit
    python3-xlib python3-pyte python3-pyqt5 python3-yaml python3-venv python3-setuptools python3-wheel chromium chromium-driver zsh
    man-db
    # checks
    clang-format clang-tidy black mypy g++-mingw-w64-x86-64-posix binutils git
    # applications that nobody here wrote
    featherpad keepassxc qpdfview designer-qt6 linguist-qt6
    # fuzzing
    clang libclang-rt-dev
)
to_package=(
    debhelper dh-python pybuild-plugin-pyproject python3-all dpkg-dev fakeroot lintian mmdebstrap zip
)
packages=("${to_use[@]}")
[ "$list" = --use ] || packages+=("${to_test[@]}")
[ "$list" != --packages ] || packages+=("${to_package[@]}")
# Windows programs are built and run only where there is a Qt for Windows. Its compiler is above: programs that never run
# are made with it to test the runner, and one source of the agent is compiled with it without any Qt.
[ "$list" = --use ] || [ -z "${QT4_WINDOWS:-}${QT5_WINDOWS:-}${QT6_WINDOWS:-}" ] || packages+=(wine wine64)
# Workers on other machines are tested over ssh, where it can be had; without it those tests are skipped, and say so. Where a
# system is booted, the package would open it to the network.
optional=()
[ "$list" = --use ] || [ -d /run/systemd/system ] || optional+=(openssh-server)

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
export DEBIAN_FRONTEND=noninteractive

# Installs those of the packages that are not there.
install() {
    local package missing=()
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "setup: installing ${missing[*]}"
    "${as_root[@]}" apt-get -o DPkg::Lock::Timeout=600 -qq update &&
        "${as_root[@]}" apt-get -o DPkg::Lock::Timeout=600 -qq -y --no-install-recommends install "${missing[@]}" >/dev/null
}

# Tests talk to `qtdriver mcp` by the client of the official SDK, pinned by its lock file. Debian's npm has too old a Node.js for
# it. Where there is no other, or no registry, those tests are skipped, and say so.
install_sdk() {
    local source=tests/agents target=build/agents-client needed=20 node
    [ "$list" != --use ] && [ -f "$source/package-lock.json" ] || return 0
    node=$(command -v npm >/dev/null && node -p 'process.versions.node.split(".")[0]' 2>/dev/null) || node=0
    [ "$node" -ge "$needed" ] || {
        echo "setup: no npm of Node.js $needed or later: tests by the client of the MCP SDK are skipped"
        return 0
    }
    cmp -s "$source/package-lock.json" "$target/node_modules/installed.json" && return 0
    mkdir -p "$target"
    cp "$source/package.json" "$source/package-lock.json" "$target"
    npm ci --prefix "$target" --ignore-scripts --no-audit --no-fund --loglevel=error \
        --fetch-retries=1 --fetch-timeout=20000 >/dev/null &&
        cp "$source/package-lock.json" "$target/node_modules/installed.json" ||
        echo "setup: npm could not install the MCP SDK: tests by its client are skipped"
}

install "${packages[@]}"
install ${optional[@]+"${optional[@]}"} || echo "setup: going on without ${optional[*]}"
(cd "$(dirname "$(readlink -f "$0")")/.." && install_sdk)
