#!/usr/bin/env python3
"""Compiles the examples in the comments of the public headers:

    comments.py SOURCE-FOLDER WORK-FOLDER -- COMPILER FLAG...

An example is the indented lines of a comment; text that is no code is between fences. It is either statements a
declaration. What it uses without showing it is in comments.h.
"""

import pathlib
import re
import subprocess
import sys

FOLDERS = ("src/tessel", "src/patternmatcher")

# A class, a template or a function.
DECLARATION = re.compile(r"(class|template)\b|(?!if|for|try|while).*\n\{")


def find_examples(header):
    """The examples, each with the number of its first line."""
    example = []
    is_fenced = False
    for number, line in enumerate(header.read_text(encoding="utf-8").splitlines(), 1):
        code = re.match(r"\s*///     (.*)", line)
        if re.match(r"\s*/// ```", line):
            is_fenced = not is_fenced
        elif code and not is_fenced:
            example = example or [number]
            example.append(code.group(1))
        elif example and re.match(r"\s*///\s*$", line):
            example.append("")
        elif example:
            yield example[0], "\n".join(example[1:]) + "\n"
            example = []


def write_code(source):
    code = '#include "comments.h"\n'
    count = 0
    for header in sorted(path for folder in FOLDERS for path in (source / folder).glob("*.h")):
        for number, example in find_examples(header):
            count += 1
            place = f'#line {number} "{header.relative_to(source)}"\n'
            if example.startswith("template<>"):
                code += f"\n{place}{example}"
            elif DECLARATION.match(example):
                code += f"\nnamespace Example{count}\n{{\n{place}{example}}}\n"
            else:
                code += f"\nstatic tsl::Result Example{count}()\n{{\n{place}{example}return {{}};\n}}\n"
    return code


def main():
    source, work = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    work.mkdir(parents=True, exist_ok=True)
    file = work / "comments.cpp"
    file.write_text(write_code(source), encoding="utf-8")
    return subprocess.run(sys.argv[4:] + ["-std=c++20", "-fsyntax-only", "-Wno-unused",
        f"-I{source / 'src'}", f"-I{pathlib.Path(__file__).parent}", str(file)]).returncode


sys.exit(main())
