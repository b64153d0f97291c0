#!/usr/bin/env python3
"""Prints what programs that are already built rely on in the libraries of a folder: the sizes of the public classes,
the places of their members and virtual functions, the values of enumerators, the results of functions. Or shows how
that differs from a list:

  tests/abi.py build/release/lib >tests/abi.txt
  tests/abi.py build/release/lib tests/abi.txt

The libraries need debug data, and the package abigail-tools must be installed."""

import difflib
import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

CLASSES = ("class-decl", "union-decl")
SCOPES = CLASSES + ("namespace-decl",)


def read_description(folder, library):
    with tempfile.TemporaryDirectory() as work:
        path = os.path.join(work, "description.xml")
        subprocess.run(["abidw", "--no-corpus-path", "--debug-info-dir", os.path.join(folder, ".debug"),
                        "--out-file", path, os.path.join(folder, library)], check=True)
        return xml.etree.ElementTree.parse(path).getroot()


class Library:
    def __init__(self, root):
        self.lines = set()
        self.types = {}
        self.names = {}
        self.exported = {symbol.get("name") for symbol in root.iter("elf-symbol")}
        for unit in root.iter("abi-instr"):
            self.collect(unit, "")
        for unit in root.iter("abi-instr"):
            self.walk(unit)

    def collect(self, element, scope):
        """Finds the types and the full names of everything that has one."""
        for child in element:
            name = scope + child.get("name", "")
            if child.get("id"):
                self.types.setdefault(child.get("id"), child)
            if child.tag.endswith("-decl") or child.tag == "template-decl":
                self.names[child] = name
            self.collect(child, name + "::" if child.tag in SCOPES else scope)

    def get_type(self, identifier):
        kind = self.types[identifier]
        of = kind.get("type-id")
        if kind.tag == "pointer-type-def":
            return self.get_type(of) + " *"
        if kind.tag == "reference-type-def":
            return self.get_type(of) + (" &&" if kind.get("kind") == "rvalue" else " &")
        if kind.tag == "qualified-type-def":
            words = [word for word in ("const", "volatile", "restrict") if kind.get(word)]
            return " ".join([self.get_type(of)] + words)
        if kind.tag == "array-type-def":
            return "%s [%s]" % (self.get_type(of), ",".join(part.get("length") for part in kind))
        if kind.tag == "function-type":
            return "function"
        return self.names.get(kind, kind.tag)

    def walk(self, element):
        for child in element:
            if child.tag in CLASSES and not child.get("is-declaration-only"):
                self.add_class(child)
            elif child.tag == "enum-decl":
                self.add_enumeration(child)
            elif child.tag == "function-decl":
                self.add_function(child)
            self.walk(child)

    def is_public(self, element):
        """Private headers declare nothing outside of their own records, which are in no public class."""
        return self.names[element].startswith("tsl::") and element.get("filepath", "").endswith(".h") \
            and os.path.basename(element.get("filepath")) in self.headers

    def add_class(self, element):
        if not self.is_public(element):
            return
        name = self.names[element]
        self.lines.add("%s: %s bits" % (name, element.get("size-in-bits")))
        for base in element.findall("base-class"):
            self.lines.add("%s: base %s at %s" % (name, self.get_type(base.get("type-id")),
                                                  base.get("layout-offset-in-bits")))
        for member in element.findall("data-member"):
            variable = member.find("var-decl")
            if not member.get("static"):
                self.lines.add("%s: %s at %s, %s" % (name, variable.get("name"), member.get("layout-offset-in-bits"),
                                                     self.get_type(variable.get("type-id"))))
        for member in element.findall("member-function"):
            if member.get("vtable-offset"):
                function = member.find("function-decl")
                self.lines.add("%s: virtual %s, %s" % (name, member.get("vtable-offset").rjust(3),
                                                       function.get("mangled-name", function.get("name"))))

    def add_enumeration(self, element):
        if self.is_public(element):
            for value in element.findall("enumerator"):
                self.lines.add("%s: %s = %s" % (self.names[element], value.get("name"), value.get("value")))

    def add_function(self, element):
        mangled = element.get("mangled-name")
        result = element.find("return")
        if mangled in self.exported and result is not None:
            self.lines.add("%s returns %s" % (mangled, self.get_type(result.get("type-id"))))


def describe(folder):
    lines = set()
    for library in ("libPatternMatcher.so", "libTessel.so"):
        lines |= Library(read_description(folder, library)).lines
    return [line + "\n" for line in sorted(lines)]


def get_public_headers():
    source = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "src")
    headers = {"PatternMatcher.h", "FactoryTable.h", "ScopedLockTemplate.h", "TaskRecord.h"}
    with open(os.path.join(source, "tessel", "Tessel.h")) as file:
        return headers | {line.split("/")[1].rstrip(">\n") for line in file if line.startswith("#include <tessel/")}


def main():
    Library.headers = get_public_headers()
    lines = describe(sys.argv[1])
    if len(sys.argv) == 2:
        sys.stdout.writelines(lines)
        return 0
    with open(sys.argv[2]) as file:
        difference = list(difflib.unified_diff(file.readlines(), lines, sys.argv[2], "built", n=0))
    sys.stdout.writelines(difference)
    return 1 if difference else 0


sys.exit(main())
