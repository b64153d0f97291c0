#!/bin/sh
# Installs what is missing to build and test this project:
#
#   tools/setup.sh               for the library, the examples and the tests
#   tools/setup.sh --packages    for the packages as well
#   tools/setup.sh --all         for the benchmarks, the reference, the second compiler and all else used here as well
#
# It installs packages on Debian and systems derived from it, as root or with a sudo that asks for no password.
# Elsewhere it prints what is missing and fails. If nothing is missing, it does nothing.

set -eu

# What is needed, a line each: the Debian package, a name for messages, and a command that succeeds if it is
# installed.
needs='
g++|g++ 12 or later|has_version g++ -dumpfullversion 12
cmake|CMake 3.25 or later|has_version cmake --version 3.25
ninja-build|Ninja|has ninja
libgtest-dev|GoogleTest|has_header gtest/gtest.h
pkg-config|pkg-config|has pkg-config
tzdata|the time zone database|test -e /usr/share/zoneinfo/Europe/Berlin'
package_needs='
dpkg-dev|dpkg-shlibdeps|has dpkg-shlibdeps
fakeroot|fakeroot|has fakeroot
doxygen|Doxygen|has doxygen
python3|Python 3|has python3'
extra_needs='
clang|clang++ 14 or later|has_version clang++ -dumpversion 14
clang-format|clang-format|has clang-format
clang-tidy|clang-tidy|has clang-tidy
libbenchmark-dev|Google Benchmark|has_header benchmark/benchmark.h
ccache|ccache|has ccache
gdb|gdb|has gdb
abigail-tools|abidw|has abidw
make|make|has make'

has() {
    command -v "$1" >/dev/null 2>&1
}

# Succeeds if command $1, called with $2, prints a version of at least $3.
has_version() {
    has "$1" || return 1
    version=$("$1" "$2" | sed -n '1s/^[^0-9]*\([0-9][0-9.]*\).*/\1/p')
    [ "$(printf '%s\n' "$3" "$version" | sort -V | sed 1q)" = "$3" ]
}

has_header() {
    echo "#include <$1>" | g++ -E -x c++ - >/dev/null 2>&1
}

# Prints the lines of "needs" that are missing.
list_missing() {
    printf '%s\n' "$needs" | while IFS='|' read -r package name check; do
        if [ -n "$package" ] && ! $check; then
            printf '%s|%s\n' "$package" "$name"
        fi
    done
}

# Fails with the reason $1, what is missing, and the advice $2.
fail() {
    {
        printf 'tools/setup.sh: %s\n' "$1"
        printf 'Missing, with the names of the packages of Debian 12:\n'
        printf '%s\n' "$missing" | sed 's/^\(.*\)|\(.*\)$/    \2 (\1)/'
        printf '%s\n' "$2"
    } >&2
    exit 1
}

case ${1-} in
    '') ;;
    --packages) needs=$needs$package_needs ;;
    --all) needs=$needs$package_needs$extra_needs ;;
    *)
        echo "usage: tools/setup.sh [--packages|--all]" >&2
        exit 2
        ;;
esac

missing=$(list_missing)
[ -n "$missing" ] || exit 0

packages=$(printf '%s\n' "$missing" | sed 's/|.*//' | paste -sd ' ' -)
by_hand="apt-get install $packages"

has apt-get || fail "There is no apt-get here, so nothing was installed." \
    "Install them with the package manager of this system and start again."

sudo=
if [ "$(id -u)" -ne 0 ]; then
    if ! has sudo || ! sudo -n true 2>/dev/null; then
        fail "Only root can install packages." "Let root run: $by_hand"
    fi
    sudo="sudo -n"
fi

apt() {
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get -qy \
        -o DPkg::Lock::Timeout=300 -o Acquire::Retries=2 -o Acquire::http::Timeout=30 "$@" </dev/null >&2
}

echo "tools/setup.sh: installing $packages" >&2
# shellcheck disable=SC2086 # one word for each package
if ! apt update || ! apt install --no-install-recommends $packages; then
    fail "The packages could not be installed, for the reason above. Is there a network?" \
        "Start again when there is one, or let root run: $by_hand"
fi

missing=$(list_missing)
[ -z "$missing" ] || fail "What this system's packages hold is too old." "Install newer ones and start again."
