#!/bin/sh
# Prints what the libraries in a folder export, in a form that is the same for every compiler, or shows how that
# differs from a list:
#
#   tests/exported-symbols.sh build/release/lib >tests/exported-symbols.txt
#   tests/exported-symbols.sh build/release/lib tests/exported-symbols.txt

set -eu
export LC_ALL=C

# Left out is what one compiler or build exports and another one does not need to: tables, the names of type
# records, static objects inside functions, constants of classes, and the constructors and destructors of
# template instances.
list() {
    nm --dynamic --defined-only --demangle "$1/libPatternMatcher.so" "$1/libTessel.so" |
        sed -e '/^[0-9a-f]* [A-Za-z] /!d' -e 's///' \
            -e 's/\[abi:cxx11\]//g' \
            -e 's/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g' \
            -e '/^vtable for /d' -e '/^typeinfo name for /d' -e '/^guard variable for /d' \
            -e '/)::[A-Za-z]*$/d' -e '/^tsl::[A-Za-z]*::[A-Z_]*$/d' \
            -e '/\([A-Za-z]*\)<.*>::~*\1(/d' |
        sort -u
}

if [ $# -eq 1 ]; then
    list "$1"
else
    list "$1" | diff -u "$2" -
fi
