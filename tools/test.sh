#!/bin/sh
# Builds everything and runs all tests. Arguments go to ctest, as in: tools/test.sh -R LogFile

set -eu
cd "$(dirname "$0")/.."

tools/setup.sh
cmake --preset release
cmake --build --preset release
ctest --preset release --parallel "$(nproc)" "$@"
