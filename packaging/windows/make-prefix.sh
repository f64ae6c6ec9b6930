#!/usr/bin/env bash
# Builds for Windows the libraries that Debian has for itself only, from Debian's
# own (signed) sources: SQLite, GoogleTest, and the headers of nlohmann-json. They
# come to stand outside the project's folder, where the mingw preset looks:
#
#     packaging/windows/make-prefix.sh
#     cmake --preset mingw && cmake --build --preset mingw && ctest --preset mingw
#
# Needs the packages of packages.txt beside this script. Takes a minute; what is
# there already is left alone.
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
prefix=${ZANDVOET_WINDOWS_PREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/zandvoet/windows}
host=x86_64-w64-mingw32
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$prefix"/{include,lib,share/cmake}

make_sqlite() {
    [ -e "$prefix/lib/libsqlite3.a" ] && return
    # A package index of our own: the machine's need not have sources switched on.
    mkdir -p "$work"/{lists,cache}
    echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg]" \
        "http://deb.debian.org/debian bookworm main" >"$work/sources.list"
    local apt=(apt-get -qq -o "Dir::State::lists=$work/lists" -o "Dir::Cache=$work/cache"
        -o "Dir::Etc::sourcelist=$work/sources.list" -o Dir::Etc::sourceparts=-)
    "${apt[@]}" update
    (cd "$work" && "${apt[@]}" source --download-only sqlite3)
    mkdir "$work/sqlite"
    tar -xf "$work"/sqlite3_*.orig.tar.xz -C "$work/sqlite" --strip-components=1
    cd "$work/sqlite"
    ./configure --disable-tcl --disable-readline >configure.log
    make sqlite3.c >make.log # all of SQLite in one file
    "$host-gcc-posix" -O2 -DSQLITE_ENABLE_COLUMN_METADATA -DSQLITE_ENABLE_MATH_FUNCTIONS \
        -c sqlite3.c -o sqlite3.o
    "$host-ar" rcs "$prefix/lib/libsqlite3.a" sqlite3.o
    cp sqlite3.h sqlite3ext.h "$prefix/include"
}

make_googletest() {
    [ -e "$prefix/lib/libgtest.a" ] && return
    cmake -S /usr/src/googletest -B "$work/googletest" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_TOOLCHAIN_FILE="$project/cmake/mingw-w64.cmake" \
        -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib >"$work/googletest.log"
    cmake --build "$work/googletest" --target install >>"$work/googletest.log"
}

copy_json() {
    cp -r /usr/include/nlohmann "$prefix/include"
    cp -r /usr/share/cmake/nlohmann_json "$prefix/share/cmake"
}

make_sqlite
make_googletest
copy_json
echo "$prefix is ready."
