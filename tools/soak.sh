#!/bin/sh
# Runs for long what the tests run for seconds:
#
#   tools/soak.sh kills [NUMBER]    kills so many threads, 20,000 if not said, in each kind of work
#   tools/soak.sh forks [NUMBER]    forks so many times, 10,000 if not said, in each place beside eight busy threads
#   tools/soak.sh exits [NUMBER]    ends so many processes, 10,000 if not said, in each way with eight busy threads

set -eu
cd "$(dirname "$0")/.."

usage() {
    echo "usage: tools/soak.sh kills|forks|exits [NUMBER]" >&2
    exit 2
}

# Builds the test program $1, and the child that it may start, and goes to an empty folder.
prepare() {
    cmake --preset release
    cmake --build --preset release --target "tessel_program_$1" tessel_program_Child
    program=$(pwd)/build/release/tests/programs/$1
    folder=$(mktemp -d)
    trap 'rm -rf "$folder"' EXIT
    cd "$folder"
}

# Runs the program with the argument $1 and each of the others in turn; each process has a minute, since the machine
# may be busy otherwise.
run_each() {
    first=$1
    shift
    for second in "$@"; do
        echo "$second:"
        nice "$program" "$first" "$second" 60
    done
}

case ${1-} in
    kills)
        prepare ThreadKills
        nice "$program" "${2-20000}"
        ;;
    forks)
        prepare Forks
        run_each "${2-10000}" main threads callback fresh
        ;;
    exits)
        prepare Exits
        run_each "${2-10000}" return thread callback destructor
        ;;
    *) usage ;;
esac
