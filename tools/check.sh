#!/bin/sh
# What a commit must hold, in less than half a minute: the format, the floors, the seam, headers that compile
# alone, a map of the code that is true, the subjects of the commits. Needs what tools/setup.sh --all installs.

set -eu
cd "$(dirname "$0")/.."

failed=
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Runs the check "check_$1" and prints what it has found.
run() {
    if "check_$1" >"$folder/found" 2>&1; then
        printf '%-8s ok\n' "$1"
    else
        printf '%-8s FAILED\n' "$1"
        cat "$folder/found"
        failed=yes
    fi
}

check_format() {
    find . \( -name build -o -name out \) -prune -o \( -name '*.h' -o -name '*.cpp' -o -name '*.c' \) \
        -exec clang-format --dry-run -Werror {} +
}

# The configuration stops at a file that breaks the rules of its floor.
check_floors() {
    cmake --preset release
}

# Outside a system's folder of the seam the library has no conditional and no header of the system or of that folder.
check_seam() {
    ! find src -path 'src/platform/*/*' -o -name Export.h -o \( -name '*.h' -o -name '*.cpp' \) \
        -exec grep -nHE '^[[:space:]]*#[[:space:]]*(if|el|include[[:space:]]*(<[a-z0-9_/]+\.h>|"platform/.*/))' {} + |
        grep .
}

# A header that its own source file includes first is compiled alone by each build. The others are compiled here.
check_headers() {
    find src -name '*.h' | while read -r header; do
        grep -s -m 1 '^#include' "${header%.h}.cpp" | grep -q "[/\"]${header##*/}[>\"]" || echo "$header"
    done | xargs -P "$(nproc)" -n 1 \
        "${CXX:-g++}" -std=c++20 -Isrc -Wall -Wextra -Werror -fsyntax-only -x c++ /dev/null -include
}

# The ways in src/README.md lead through functions that are in the files named.
check_ways() {
    ! grep -oE '`[A-Za-z]+\.(cpp|h)`: `[A-Za-z:]+`' src/README.md |
        sed 's/`\(.*\)`: `\(.*\)`/\1 \2/' |
        while read -r file name; do
            grep -rqE --include="$file" "\<$name\(" src || echo "src/README.md: there is no $name in $file"
        done | grep .
}

# Area, colon, an imperative sentence: of the commits that are new here, else of the latest ones.
check_subjects() {
    git rev-parse --verify HEAD >/dev/null || return 1
    commits=origin/main..HEAD
    [ "$(git rev-list --count "$commits" 2>/dev/null || echo 0)" -gt 0 ] || commits='-20'
    ! git log --no-merges --format=%s "$commits" |
        awk 'length > 72 || !/^[A-Za-z][^:]*: [A-Z][a-z]+[ ,-].*[^.]$/' | grep . || return 1
    ! git log --no-merges --format=%s "$commits" | grep -E '^[^:]*: [A-Z][a-z]*([^e]ed|ing|[^aisu]s) '
}

run format
run floors
run seam
run headers
run ways
run subjects
[ -z "$failed" ]
