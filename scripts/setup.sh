#!/usr/bin/env bash
# Installs what qtdriver builds and tests with, from Debian's packages. Does nothing where all is there.
set -euo pipefail

packages=(
    # build
    g++ cmake ninja-build ccache lld qtbase5-dev qt6-base-dev libgl-dev qt6-5compat-dev libbenchmark-dev
    # desktop for tests, demo and benchmarks
    xvfb xserver-xephyr openbox x11-utils x11-xserver-utils xdotool xclip gdb imagemagick fonts-dejavu-core util-linux iproute2
    # runner and its tests
    python3 python3-psutil python3-pyelftools python3-pefile python3-pytest python3-pytest-xdist python3-hypothesis python3-pil python3-jinja2 python3-prompt-toolkit
    python3-xlib python3-pyqt5 python3-venv python3-setuptools python3-wheel chromium chromium-driver
    # checks
    clang-format clang-tidy black mypy g++-mingw-w64-x86-64-posix binutils git
    # applications that nobody here wrote
    speedcrunch featherpad keepassxc qpdfview designer-qt6 linguist-qt6
    # fuzzing
    clang libclang-rt-dev
)
# Windows programs are built and run only where there is a Qt for Windows. Its compiler is above: programs that never run
# are made with it to test the runner, and one source of the agent is compiled with it without any Qt.
[ -z "${QT4_WINDOWS:-}${QT5_WINDOWS:-}${QT6_WINDOWS:-}" ] || packages+=(wine wine64)
# Workers on other machines are tested over ssh, where it can be had; without it those tests are skipped, and say so. Where a
# system is booted, the package would open it to the network.
optional=()
[ -d /run/systemd/system ] || optional+=(openssh-server)

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

install "${packages[@]}"
install "${optional[@]}" || echo "setup: going on without ${optional[*]}"
