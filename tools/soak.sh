#!/bin/sh
# Runs for long what the tests run for seconds:
#
#   tools/soak.sh kills [NUMBER]    kills so many threads, 20,000 if not said, in each kind of work

set -eu
cd "$(dirname "$0")/.."

usage() {
    echo "usage: tools/soak.sh kills [NUMBER]" >&2
    exit 2
}

# Builds the test program $1 and runs it with the other arguments in an empty folder.
soak() {
    program=$1
    shift
    cmake --preset release
    cmake --build --preset release --target "tessel_program_$program"
    root=$(pwd)
    folder=$(mktemp -d)
    trap 'rm -rf "$folder"' EXIT
    cd "$folder"
    nice "$root/build/release/tests/programs/$program" "$@"
}

case ${1-} in
    kills) soak ThreadKills "${2-20000}" ;;
    *) usage ;;
esac
