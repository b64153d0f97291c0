#!/bin/sh
# The checks that must pass before a change lands.

set -eu
cd "$(dirname "$0")"

for preset in dev release; do
    cmake --preset $preset
    cmake --build --preset $preset
    ctest --preset $preset
done
