#!/bin/sh
# Builds the packages in build/packages/: a Debian package of each part, and an archive of all. Then installs those
# that a user's program needs below an empty folder, builds and runs a program, removes them and checks that no file
# is left.
#
#   tools/packages.sh            builds and checks
#   tools/packages.sh --twice    also builds them again in another folder: all bytes must be the same

set -eu
cd "$(dirname "$0")/.."
source=$(pwd)

twice=
case ${1-} in
    '') ;;
    --twice) twice=yes ;;
    *)
        echo "usage: tools/packages.sh [--twice]" >&2
        exit 2
        ;;
esac

fail() {
    echo "tools/packages.sh: $1" >&2
    exit 1
}

# All files in the packages have the time of the commit.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
CCACHE_BASEDIR=$source
CCACHE_NOHASHDIR=1
export SOURCE_DATE_EPOCH CCACHE_BASEDIR CCACHE_NOHASHDIR

# Builds the packages of the sources $1 in the folder $2. The Debian packages and the archive have the libraries in
# different folders, on which no compiled file depends.
build() {
    (cd "$1" && cmake --preset release -B "$2" \
        -DTESSEL_BUILD_TESTS=OFF -DTESSEL_BUILD_EXAMPLES=OFF -DCMAKE_INSTALL_PREFIX=/usr)
    cmake --build "$2"
    cmake --build "$2" --target docs
    (cd "$2" && cpack -G DEB)
    cmake -S "$1" -B "$2" -DCMAKE_INSTALL_PREFIX=/usr/local
    (cd "$2" && cpack -G TGZ -D CPACK_PACKAGING_INSTALL_PREFIX=/)
}

# Runs dpkg with the folder $root as its system.
dpkg_root() {
    fakeroot dpkg --root="$root" --log=/dev/null --force-script-chrootless "$@"
}

list_root() {
    (cd "$root" && find . -path ./var/lib/dpkg -prune -o -print | sort)
}

tools/setup.sh --packages
out=$source/build/packages
tree=$out/tree
rm -rf "$out"/*.deb "$out"/*.tar.gz "$tree"/*.deb "$tree"/*.tar.gz
build "$source" "$tree"
mv "$tree"/*.deb "$tree"/*.tar.gz "$out"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
chmod 755 "$folder"

# For dpkg, packages of other projects that ours depend on are installed there.
root=$folder/root
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates"
dpkg-query --status libc6 libgcc-s1 libstdc++6 >"$root/var/lib/dpkg/status"
list_root >"$folder/before"

runtime=$(find "$out" -maxdepth 1 -name 'libtessel[0-9]*.deb' ! -name '*-dbg_*')
dev=$(find "$out" -maxdepth 1 -name 'libtessel-dev_*.deb')
if dpkg_root --install "$dev" >/dev/null 2>&1; then
    fail "The development package can be installed without the libraries."
fi
dpkg_root --purge libtessel-dev
dpkg_root --install "$runtime" "$dev"

for way in find_package pkg_config; do
    cmake -DTESSEL_FROM="$way" -DTESSEL_SOURCE="$source" -DPREFIX="$root/usr" -DWORK="$folder/$way" \
        -DCXX="${CXX:-g++}" "-DOPTIONS=-G;Ninja;-DCMAKE_BUILD_TYPE=Release" -P tests/package/check.cmake
done

# The other packages can be installed as well, and all can be removed again.
for package in "$out"/*.deb; do
    dpkg_root --install "$package"
done
# shellcheck disable=SC2046 # one word for each package
dpkg_root --purge $(for package in "$out"/*.deb; do dpkg-deb --field "$package" Package; done)
list_root >"$folder/after"
diff "$folder/before" "$folder/after" || fail "The packages leave something behind."

if [ -n "$twice" ]; then
    git clone --quiet "$source" "$folder/elsewhere/clone"
    CCACHE_DISABLE=1 build "$folder/elsewhere/clone" "$folder/elsewhere/built"
    for package in "$out"/*.deb "$out"/*.tar.gz; do
        cmp "$package" "$folder/elsewhere/built/${package##*/}"
    done
fi

ls -l "$out"/*.deb "$out"/*.tar.gz
