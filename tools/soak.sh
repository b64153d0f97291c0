#!/bin/sh
# Runs for a long time what the tests run for seconds:
#
#   tools/soak.sh kills [NUMBER]    kills NUMBER threads, by default 20,000, in each kind of work
#   tools/soak.sh forks [NUMBER]    forks NUMBER times, by default 10,000, at each place, with eight busy threads
#   tools/soak.sh exits [NUMBER]    ends NUMBER processes, by default 10,000, in each way, with eight busy threads

set -eu
cd "$(dirname "$0")/.."

usage() {
    echo "usage: tools/soak.sh kills|forks|exits [NUMBER]" >&2
    exit 2
}

# Builds the test program $1 and the child that it may start, and changes to an empty folder.
prepare() {
    cmake --preset release
    cmake --build --preset release --target "tessel_program_$1" tessel_program_Child
    program=$(pwd)/build/release/tests/programs/$1
    folder=$(mktemp -d)
    trap 'rm -rf "$folder"' EXIT
    cd "$folder"
}

# Runs the program with the argument $1 and each of the others in turn. The limit of a process is a minute, since the
# machine may be busy.
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
