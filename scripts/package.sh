#!/usr/bin/env bash
# Makes packages in build/packages: scripts/package.sh deb|wheel|archive
#   deb      the runner, the agents of Qt 5 and 6, and what developers need, for this Debian
#   wheel    the runner with the agents of Qt 5 and 6 inside, for pip; the Debian packages are made on the way
#   archive  the agent for programs for Windows, to unpack: of Qt 4.8, whose folder QT4_WINDOWS names, or of another one, by
#            scripts/package.sh archive 5|6 and QT5_WINDOWS or QT6_WINDOWS
# The version is that of runner/qtdriver/commandline/versions.py, the date that of the commit; SOURCE_DATE_EPOCH sets
# another one. The same sources make the same bytes, in whatever folder. See packaging/README.md.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { sed -n '2,8s/^# \?//p' "$0" >&2; exit 2; }
kind=${1:-} major=${2:-4}
[[ $# -eq 1 || ($# -eq 2 && $kind = archive && $major =~ ^[456]$) ]] || usage
packages=$PWD/build/packages
version=$(sed -n 's/^VERSION = "\(.*\)"$/\1/p' runner/qtdriver/commandline/versions.py)
# Sources that come without a history have the date of their changelog.
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2>/dev/null || stat -c %Y CHANGELOG.md)}
export LC_ALL=C.UTF-8 TZ=UTC
# The system's tools, and no other Python than its own.
export PATH=/usr/sbin:/usr/bin:/sbin:/bin
# Objects of a cache may name their sources by other paths, as ccache gave them to the compiler at the time.
export CCACHE_DISABLE=1
umask 022

# copy_sources FOLDER: a fresh FOLDER with the sources of what is installed, laid out as in a checkout. Dates and modes are
# those of a fresh checkout everywhere.
copy_sources() {
    rm -rf "$1"
    mkdir -p "$1"
    tar --create --mtime="@$SOURCE_DATE_EPOCH" --mode=u+rw,go=rX --exclude=__pycache__ --exclude='*.egg-info' \
        --exclude=.mypy_cache --exclude=runner/build CMakeLists.txt CMakePresets.json LICENSE CHANGELOG.md README.md cmake docs \
        packaging runner scripts/build.sh scripts/together.py src | tar --extract --no-same-owner --directory "$1"
}

# logged NAME COMMAND...: its output goes to a file, and is shown if it fails.
logged() {
    local log=$packages/$1.log
    "${@:2}" >"$log" 2>&1 || { tail -50 "$log" >&2; exit 1; }
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
    logged deb env --chdir "$folder" dpkg-buildpackage --build=binary --no-sign --no-check-builddeps -j"$(nproc)"
    rm -f "$packages"/*.deb
    mv "$packages"/deb/*.deb "$packages"
}

# The agents in the wheel are those of the Debian packages. The wheel's tag names the oldest C library that they run with,
# which nm shows by the versions of their symbols.
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
    mkdir "$folder/qtdriver/mcp/widgets"
    cp -p "$packages"/wheel/docs/widgets/*.md "$folder/qtdriver/mcp/widgets"
    logged wheel env --chdir "$folder" python3 -c 'import setuptools; setuptools.setup()' --quiet \
        bdist_wheel --plat-name "manylinux_${newest/./_}_$(uname -m)" --dist-dir "$packages/wheel/made"
    rm -f "$packages"/*.whl
    mv "$packages"/wheel/made/*.whl "$packages"
}

# copy_runtime FOLDER: puts the compiler's libraries beside those of the FOLDER that need them, and their licences into
# licences/ beside it. Those of Windows and Qt the compiler does not have.
copy_runtime() {
    local name file owner again=yes
    while [ -n "$again" ]; do
        again=""
        for name in $(x86_64-w64-mingw32-objdump --private-headers "$1"/*.dll | sed -n 's/^\tDLL Name: //p' | sort --unique); do
            file=$(x86_64-w64-mingw32-g++-posix -print-file-name="$name")
            [ "$file" != "$name" ] && [ ! -e "$1/$name" ] || continue
            file=$(realpath "$file")
            owner=$(dpkg-query --search "$file")
            install -Dm644 "/usr/share/doc/${owner%%:*}/copyright" "$1/../licences/$name.txt"
            x86_64-w64-mingw32-strip -o "$1/$name" "$file"
            again=yes
        done
    done
}

make_archive() {
    local sources=$packages/archive/sources build=windows-qt$major
    local top=qtdriver-$version file=$packages/qtdriver-$version-windows-qt$major.zip
    local unpacked=$packages/archive/unpacked/$top
    rm -rf "$packages/archive"
    copy_sources "$sources"
    echo "package: compiling the agent of Qt $major for Windows"
    logged archive "$sources/scripts/build.sh" "$major" --windows --agent
    logged archive cmake --install "$sources/build/$build" --prefix "$unpacked/$build" --strip
    copy_runtime "$unpacked/$build/bin"
    cp -r "$sources"/{LICENSE,CHANGELOG.md,docs} "$unpacked"
    cp "$sources/packaging/windows/README.md" "$unpacked"
    chmod -R u+rw,go=rX "$unpacked"
    find "$unpacked" -exec touch --date="@$SOURCE_DATE_EPOCH" {} +
    rm -f "$file"
    (cd "$packages/archive/unpacked" && find "$top" -type f | sort | zip -9 -q -X -@ "$file")
}

mkdir -p "$packages"
case "$kind" in
    deb) make_deb; made="$packages/*.deb" ;;
    wheel) make_wheel; made="$packages/*.whl" ;;
    archive) make_archive; made="$packages/*-qt$major.zip" ;;
    *) usage ;;
esac
ls -l $made | awk '{ printf "package: %8d bytes  %s\n", $5, $9 }'
