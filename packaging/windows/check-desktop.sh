#!/usr/bin/env bash
# Lets the cross compiler read the whole desktop program as it is compiled for
# Windows: Debian has no Qt for Windows to link it with, but Qt's headers of this
# machine tell the platform by the compiler, as do GDAL's and QCustomPlot's. So
# every source file is checked, those for Windows alone too, but nothing is built.
#
#     cmake --preset dev && cmake --build --preset dev     # makes the headers of the forms
#     packaging/windows/check-desktop.sh [BUILD_FOLDER] [PATTERN]
#
# Needs the packages of packages.txt beside this script and make-prefix.sh's libraries.
# PATTERN (a regular expression) chooses among the files. Exit code 1: a file has
# errors or warnings; they are printed.
set -uo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "${1:-$project/build/dev}" && pwd) || exit 2
pattern=${2:-.}
prefix=${ZANDVOET_WINDOWS_PREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/zandvoet/windows}
compiler=x86_64-w64-mingw32-g++-posix
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Single headers out of /usr/include, whose other headers are not for this compiler.
mkdir "$work/include" && ln -s /usr/include/qcustomplot.h "$work/include"

qt=$(sed -n 's#.*-isystem \([^ ]*/qt6\) .*#\1#p' "$build/compile_commands.json" | head -n 1)
flags=(-std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wno-unknown-pragmas -I"$project/src"
    -DUNICODE -D_UNICODE -DWIN32_LEAN_AND_MEAN -DNOMINMAX -D_WIN32_WINNT=0x0A00
    -DQT_DISABLE_DEPRECATED_BEFORE=0x060400 -DQT_NO_CAST_TO_ASCII
    -DQT_CORE_LIB -DQT_GUI_LIB -DQT_WIDGETS_LIB -isystem "$qt")
for module in Core Gui Widgets PrintSupport Network Svg Test; do
    flags+=(-isystem "$qt/Qt$module")
done
flags+=(-isystem /usr/include/gdal -isystem "$work/include" -isystem "$prefix/include")
# Most of the time goes into Qt's headers: they are read once.
cp "$project/cmake/QtHeaders.h" "$work"
"$compiler" "${flags[@]/-fsyntax-only/-w}" -x c++-header "$work/QtHeaders.h" -o "$work/QtHeaders.h.gch" || exit 2

check() {
    local file=$1 options=() i
    case $file in *_posix.cpp | *_other.cpp) file=${file%_*}_windows.cpp ;; esac
    eval "local words=($2)"
    for ((i = 1; i < ${#words[@]}; ++i)); do
        case ${words[i]} in
        -DQT_* | *_WITH_DBUS) ;;
        -D* | -I*) options+=("${words[i]}") ;;
        esac
    done
    if "$compiler" -include "$work/QtHeaders.h" "${flags[@]}" "${options[@]}" "$file" \
        >"$work/$3.log" 2>&1 && [ ! -s "$work/$3.log" ]; then
        rm "$work/$3.log"
    fi
}

count=0
while IFS=$'\t' read -r file command; do
    check "$file" "$command" "$count" &
    count=$((count + 1))
    while [ "$(jobs -rp | wc -l)" -ge "$(nproc)" ]; do
        wait -n
    done
# What needs no Qt is built by the preset mingw.
done < <(sed -n 's/^  "command": "\(.*\)",$/\1/p' "$build/compile_commands.json" |
    sed '/-DQT_CORE_LIB/!d; s/\\"/"/g; s/\\\\/\\/g' |
    sed -n "s#^.* -c \($project/\(src\|tools\)/[^ ]*\.cpp\)\$#\1\t&#p" |
    sort -u -k1,1 | grep -E -- "$pattern")
wait
cat "$work"/*.log 2>/dev/null
faulty=$(find "$work" -name '*.log' | wc -l)
echo "$count files checked for Windows, $faulty with errors or warnings."
[ "$count" -gt 0 ] && [ "$faulty" -eq 0 ]
