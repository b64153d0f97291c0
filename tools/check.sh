#!/bin/sh
# Checks every rule for a commit in less than half a minute: the format, the floors, the seam, headers that compile
# alone, the ways of src/README.md, the subjects of commits. Needs what tools/setup.sh --all installs.

set -eu
cd "$(dirname "$0")/.."

failed=
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Runs the function "check_$1" and prints its output if it fails.
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

# Configuring fails at a file that breaks the rules of its floor.
check_floors() {
    cmake --preset release
}

# Outside the folder of a system, such as src/platform/posix/, the library has no conditional, no system header and no
# header of such a folder. Export.h may differ by compiler; StandardSupport.h has std::formatter where <format> exists.
check_seam() {
    ! find src -path 'src/platform/*/*' -o -name Export.h -o -name StandardSupport.h -o \( -name '*.h' -o -name '*.cpp' \) \
        -exec grep -nHE '^[[:space:]]*#[[:space:]]*(if|el|include[[:space:]]*(<[a-z0-9_/]+\.h>|"platform/.*/))' {} + |
        grep .
}

# Compiles each header alone, except those that their own source file includes first, which each build does, and those
# of another system.
check_headers() {
    find src -name windows -prune -o -name '*.h' -print | while read -r header; do
        grep -s -m 1 '^#include' "${header%.h}.cpp" | grep -q "[/\"]${header##*/}[>\"]" || echo "$header"
    done | xargs -P "$(nproc)" -n 1 \
        "${CXX:-g++}" -std=c++20 -Isrc -Isrc/kit '-DTESSELKIT_CHILD=""' -Wall -Wextra -Werror -fsyntax-only -x c++ /dev/null -include
}

# Each function of the ways in src/README.md must be in the named file.
check_ways() {
    ! grep -oE '`[A-Za-z]+\.(cpp|h)`: `[A-Za-z:]+`' src/README.md |
        sed 's/`\(.*\)`: `\(.*\)`/\1 \2/' |
        while read -r file name; do
            grep -rqE --include="$file" "\<$name\(" src || echo "src/README.md: there is no $name in $file"
        done | grep .
}

# Subjects are "Area: Imperative sentence". Checks the commits that are not in origin/main, or the latest 20.
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
