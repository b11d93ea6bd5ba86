#!/usr/bin/env bash
# Makes packages in build/packages: scripts/package.sh deb|wheel
#   deb      the runner, the agents of Qt 5 and 6, and what developers need, for this Debian
#   wheel    the runner with the agents of Qt 5 and 6 inside, for pip; the Debian packages are made on the way
# The version is that of runner/qtdriver/commandline/versions.py, the date that of the commit; SOURCE_DATE_EPOCH
# sets another one. packaging/README.md tells more.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { sed -n '2,6s/^# \?//p' "$0" >&2; exit 2; }
[ $# -eq 1 ] || usage
packages=$PWD/build/packages
version=$(sed -n 's/^VERSION = "\(.*\)"$/\1/p' runner/qtdriver/commandline/versions.py)
# Sources that come without a history have the date of their changelog.
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2>/dev/null || stat -c %Y CHANGELOG.md)}
export LC_ALL=C.UTF-8 TZ=UTC
# The system's tools, and no other Python than its own.
export PATH=/usr/sbin:/usr/bin:/sbin:/bin
umask 022
# Debian's tools have a home of their own.
if command -v ccache >/dev/null; then
    CCACHE_DIR=$(ccache --get-config cache_dir)
    export CCACHE_DIR CCACHE_BASEDIR=$packages CCACHE_NOHASHDIR=1
fi

# copy_sources FOLDER: a fresh FOLDER with the sources of what is installed.
copy_sources() {
    rm -rf "$1"
    mkdir -p "$1"
    tar --create --exclude=__pycache__ --exclude='*.egg-info' --exclude=.mypy_cache --exclude=runner/build \
        CMakeLists.txt LICENSE CHANGELOG.md README.md cmake docs packaging runner scripts/together.py src | tar --extract --directory "$1"
}

make_deb() {
    local folder=$packages/deb/qtdriver-$version
    copy_sources "$folder"
    mv "$folder/packaging/debian" "$folder/debian"
    cat >"$folder/debian/changelog" <<END
qtdriver ($version) bookworm; urgency=medium

  * The changes are told in CHANGELOG.md.

 -- The qtdriver authors <qtdriver@example.org>  $(date -R -d "@$SOURCE_DATE_EPOCH")
END
    echo "package: compiling the agents of Qt 5 and 6"
    (cd "$folder" && dpkg-buildpackage --build=binary --no-sign --no-check-builddeps -j"$(nproc)") >"$packages/deb.log" 2>&1 \
        || { tail -50 "$packages/deb.log" >&2; exit 1; }
    rm -f "$packages"/*.deb
    mv "$packages"/deb/*.deb "$packages"
}

# The agents in the wheel are those of the Debian packages. The system with the oldest C library that they run with is
# told by the tag of the wheel: what they ask of it, nm shows.
make_wheel() {
    local folder=$packages/wheel/runner agents=$packages/wheel/agents library newest
    make_deb
    rm -rf "$packages/wheel"
    copy_sources "$packages/wheel"
    for major in 5 6; do
        dpkg-deb --extract "$packages/qtdriver-agent-qt${major}_${version}_$(dpkg --print-architecture).deb" "$agents"
        mkdir -p "$folder/qtdriver/agents/qt$major/lib"
        cp -p "$agents"/usr/lib/*/qtdriver/qt"$major"/lib/*.so "$folder/qtdriver/agents/qt$major/lib"
    done
    newest=$(for library in "$folder"/qtdriver/agents/*/lib/*.so; do nm --dynamic "$library"; done |
        grep -o '@GLIBC_[0-9.]*' | sort --version-sort --unique | tail -1)
    newest=${newest#@GLIBC_}
    cp LICENSE "$folder"
    (cd "$folder" && python3 -c 'import setuptools; setuptools.setup()' --quiet \
        bdist_wheel --plat-name "manylinux_${newest/./_}_$(uname -m)" --dist-dir "$packages/wheel/made") >"$packages/wheel.log" 2>&1 \
        || { tail -50 "$packages/wheel.log" >&2; exit 1; }
    rm -f "$packages"/*.whl
    mv "$packages"/wheel/made/*.whl "$packages"
}

mkdir -p "$packages"
case "$1" in
    deb) make_deb; suffix=deb ;;
    wheel) make_wheel; suffix=whl ;;
    *) usage ;;
esac
ls -l "$packages"/*."$suffix" | awk '{ printf "package: %8d bytes  %s\n", $5, $9 }'
