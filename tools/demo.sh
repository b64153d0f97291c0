#!/bin/sh
# Builds the library, its programs and examples, runs the job runner in an empty folder and shows what it left there.

set -eu
cd "$(dirname "$0")/.."
root=$(pwd)

tools/setup.sh
cmake --preset release
cmake --build --preset release --target examples jobrunner

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp programs/jobrunner/jobrunner.ini "$folder"
cd "$folder"
PATH=$root/build/release/bin:$PATH

# Shows command $2 with its arguments and its output; its exit code must be $1.
show() {
    expected=$1
    shift
    printf '\n$ %s\n' "$*"
    code=0
    "$@" || code=$?
    [ "$code" -eq 0 ] || printf '(exit code %s)\n' "$code"
    [ "$code" -eq "$expected" ]
}

show 0 cat jobrunner.ini
show 0 jobrunner --dry-run
show 0 jobrunner
show 0 cat Logfile.txt

# The same with a job that fails: the one that waits for it is skipped.
sed 's/^Expect=3$/Expect=0/' jobrunner.ini >changed.ini
mv changed.ini jobrunner.ini
show 1 jobrunner
