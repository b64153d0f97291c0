#!/usr/bin/env python3
"""Tests what the scripts make of pages and of sources."""

import unittest

import blocks
import failures
import texts

PAGE = """\
# A page

<!-- file: a.cpp, links gtest pthread -->
```cpp
int main();
```
<!-- declarations -->
```cpp
struct A;
```
```cpp
one();
```
Text.

<!-- continues -->
```cpp
two();
```

```text
1
```

    $ run
    printed

1. An item

    of a list.

```sh
make
```
"""


class Blocks(unittest.TestCase):
    def test_each_has_its_meaning_and_its_line(self):
        found = [(b.kind, b.name, b.links, b.text, b.output, b.line) for b in blocks.read_blocks(PAGE)]
        self.assertEqual(found, [
            ("file", "a.cpp", ("gtest", "pthread"), "int main();\n", "", 5),
            ("declarations", "", (), "struct A;\n", "", 9),
            ("statements", "", (), "one();\n\n\n\n\n\ntwo();\n", "1\n", 12),
            ("console", "", (), "$ run\nprinted\n", "", 25),
            ("build", "", (), "make\n", "", 33)])

    def test_one_that_nobody_would_check_is_refused(self):
        for page in ("```\nx\n```\n", "```java\nx\n```\n", "```cpp\nx\n", "Text:\n\n    code();\n",
                     "```text\nx\n```\n", "```ini\nx\n```\n", "<!-- fiel: x.cpp -->\n```cpp\nx\n```\n",
                     "<!-- continues -->\n```cpp\nx\n```\n"):
            with self.assertRaises(blocks.PageError, msg=page):
                blocks.read_blocks(page)

    def test_commands_have_their_output(self):
        self.assertEqual(blocks.read_commands("$ a b\n1\n\n$ c\n"), [("a b", "1\n\n"), ("c", "")])
        with self.assertRaises(blocks.PageError):
            blocks.read_commands("a\n")


class Outputs(unittest.TestCase):
    def test_are_compared_but_for_what_varies(self):
        for expected, printed, alike in (
                ("a\n", "a\n", True), ("a\n", "a", True), ("a\n", "b\n", False), ("a\n", "a\nb\n", False),
                ("", "", True), ("", "a\n", False), ("a.c\n", "abc\n", False),
                ("13.11.2026 15:08:14 12 34 DEB Task x\n", "01.02.2027 00:00:00 9 8 DEB Task x\n", True),
                ("13.11.2026 15:08:14 x\n", "x\n", False),
                ("File=a.cpp,Line=3\n", "File=a.cpp,Line=77\n", True),
                ("a ... b\n", "a 1 2 b\n", True), ("a ... b\n", "a 1\n2 b\n", False),
                ("a\n...\nb\n", "a\n1\n2\nb\n", True), ("a\n...\nb\n", "a\nb\n", True),
                ("a\n...\nb\n", "a\n1\n2\n", False)):
            self.assertEqual(blocks.matches(expected, printed), alike, (expected, printed))


SOURCE = """\
#include "no text here"
// "nor is this one"
static_assert(true, "Nor this one.");
void f()
{
    Trace("Task", [&] { String s("Task has text"); return s + ' ' + "in two"; });
    if (x) // a comment
        return MakeResult(ERR::eNotFound, "Could not "
                                          "find '" + s + "'.");
    XAssertionFailed("x > 0", "Wrong \\"x\\"");
    XAssertionFailed("y > 0", "");
    XAssertionFailed("z > 0", sText);
    Print("Two words", "one", R"(A help text)");
}
"""
PAGE_OF_FAILURES = """\
| `Could not find '...'.` | 5 | `a` | means | do |
| `Wrong "x"` | 6 | `a` | means | do |
| `y > 0` | 6 | `a` | means | do |
| `Two words` | - | `a` | means | do |
"""


class Failures(unittest.TestCase):
    def test_are_found_in_the_sources(self):
        self.assertEqual([(text.text, text.code) for text in texts.find_texts(SOURCE) if text.needed],
            [("Could not find '", 5), ('Wrong "x"', 6), ("y > 0", 6), ("Two words", None)])

    def test_are_those_of_the_page(self):
        for old, new, mistakes in (("", "", 0), ("find", "see", 2), ("| 5 |", "| 4 |", 1), ("| `y > 0`", "", 1),
                ("`a` | means | do |\n| `Two", "`b` | means | do |\n| `Two", 2),
                ("means", "", 1), ("Two words", "Two words more", 1)):
            page = PAGE_OF_FAILURES.replace(old, new, 1)
            found = failures.compare(failures.read_rows(page), {"a": texts.find_texts(SOURCE)})
            self.assertEqual(len(found), mistakes, (new, found))


if __name__ == "__main__":
    unittest.main()
