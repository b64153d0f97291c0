"""Reads the blocks of code and of output out of a page of the guide.

A block is between fences, and says what it is by the word after the first fence and by a comment in the line above:

    ```cpp                                          statements, to be run as the body of a function
    <!-- continues -->          and ```cpp          more of the statements before
    <!-- declarations -->       and ```cpp          what comes before all functions: classes, functions
    <!-- file: hello.cpp -->    and ```cpp          a file, or the next part of it
    <!-- file: t.cpp, links x -->                   the same for a program that needs the library x
    <!-- file: hello.ini -->    and ```ini          a file that the programs find from here on
    ```text                                         what the statements before print
    ```console                                      commands behind "$ ", and what they print
    <!-- printed by: COMMAND --> and ```mermaid     what the command prints, as a picture
    ```sh, ```cmake                                 how something is built; not run here

Indented lines are a console block if they begin with "$ ".
"""

import dataclasses
import pathlib
import re


class PageError(Exception):
    """Something in a page that is not as it must be."""


@dataclasses.dataclass
class Block:
    kind: str  # "statements", "declarations", "file", "console", "build"
    text: str
    line: int  # of its first line in the page
    name: str = ""  # of a file
    links: tuple = ()  # libraries that the file needs
    output: str = ""  # what statements print


@dataclasses.dataclass
class RawBlock:
    word: str
    comment: str
    text: str
    line: int


COMMENT = re.compile(r"<!--\s*(.*?)\s*-->\s*$")
FENCE = re.compile(r"(```+)\s*(\S*)\s*$")


def read_raw_blocks(text):
    """The blocks as they are, without a look at what they are for."""
    lines = text.splitlines()
    blocks = []
    i = 0
    while i < len(lines):
        fence = FENCE.match(lines[i])
        if fence:
            comment = COMMENT.match(lines[i - 1]) if i else None
            begin = i + 1
            i = begin
            while i < len(lines) and lines[i].rstrip() != fence.group(1):
                i += 1
            if i == len(lines):
                raise PageError(f"{begin}: the block has no end")
            body = "".join(line + "\n" for line in lines[begin:i])
            blocks.append(RawBlock(fence.group(2), comment.group(1) if comment else "", body, begin + 1))
        elif is_indented_block(lines, i):
            begin = i
            while i < len(lines) and (lines[i].startswith("    ") or not lines[i].strip()):
                i += 1
            body = "".join(line[4:] + "\n" for line in lines[begin:i]).rstrip("\n") + "\n"
            blocks.append(RawBlock("console" if body.startswith("$ ") else "indented", "", body, begin + 1))
            continue
        i += 1
    return blocks


def is_indented_block(lines, i):
    """Whether a block of indented lines begins here, which further lines of a list do not."""
    if not lines[i].startswith("    ") or (i and lines[i - 1].strip()):
        return False
    before = next((line for line in reversed(lines[:i]) if line.strip()), "")
    return not re.match(r"\s|[-*]\s|\d+\.\s", before)


def read_blocks(text):
    """The blocks of a page, each with its meaning."""
    blocks = []
    for raw in read_raw_blocks(text):
        add_block(blocks, raw)
    return blocks


def add_block(blocks, raw):
    file = re.match(r"file:\s*([\w.-]+)(?:,\s*links\s+(.*))?$", raw.comment)
    if file and raw.word in ("cpp", "ini"):
        links = tuple((file.group(2) or "").split())
        blocks.append(Block("file", raw.text, raw.line, name=file.group(1), links=links))
    elif raw.word == "cpp" and raw.comment == "declarations":
        blocks.append(Block("declarations", raw.text, raw.line))
    elif raw.word == "cpp" and raw.comment == "continues":
        last = last_of(blocks, "statements", raw)
        if last.output:
            raise PageError(f"{raw.line}: the statements before are shown with their output already")
        gap = raw.line - last.line - last.text.count("\n")
        last.text += "\n" * gap + raw.text
    elif raw.word == "cpp" and not raw.comment:
        blocks.append(Block("statements", raw.text, raw.line))
    elif raw.word == "text":
        last_of(blocks, "statements", raw).output = raw.text
    elif raw.word == "console":
        blocks.append(Block("console", raw.text, raw.line))
    elif raw.word == "mermaid" and raw.comment.startswith("printed by: "):
        command = raw.comment.removeprefix("printed by: ")
        blocks.append(Block("console", f"$ {command}\n{raw.text}", raw.line))
    elif raw.word in ("sh", "cmake") and not raw.comment:
        blocks.append(Block("build", raw.text, raw.line))
    else:
        raise PageError(f"{raw.line}: nobody checks this block ({raw.word or 'without a word'} {raw.comment})")


def last_of(blocks, kind, raw):
    if not blocks or blocks[-1].kind != kind:
        raise PageError(f"{raw.line}: this belongs to {kind}, which are not in front of it")
    return blocks[-1]


def read_page(path):
    return read_blocks(pathlib.Path(path).read_text(encoding="utf-8"))


def read_commands(text):
    """The commands of a console block, each with what it prints."""
    commands = []
    for line in text.splitlines():
        if line.startswith("$ "):
            commands.append([line[2:], []])
        elif not commands:
            raise PageError(f"a console block begins with '$ ', not with '{line}'")
        else:
            commands[-1][1].append(line)
    return [(command, "".join(line + "\n" for line in output)) for command, output in commands]


# What differs from run to run, and blanks at the end of a line, and what takes their place in both texts before they
# are compared. The leak checker of a sanitizer has a remark where a thread was killed.
VARYING = (
    (re.compile(r"^==\d+==Running thread \d+ was not suspended.*\n", re.MULTILINE), ""),
    (re.compile(r"[ \t]+$", re.MULTILINE), ""),
    (re.compile(r"\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d"), "<time>"),
    (re.compile(r"<time> \d+ \d+ DEB"), "<time> <process> <thread> DEB"),
    (re.compile(r"Line=\d+"), "Line=<line>"),
    (re.compile(r"(\[[\w./-]+):\d+\]"), r"\1:<line>]"),
)


def matches(expected, printed):
    """Whether the page shows what was printed. "..." stands for anything in a line, alone for any lines."""
    for pattern, word in VARYING:
        expected = pattern.sub(word, expected)
        printed = pattern.sub(word, printed)
    pattern = ""
    for line in expected.splitlines():
        if line == "...":
            pattern += r"(.*\n)*"
        else:
            pattern += ".*".join(re.escape(part) for part in line.split("...")) + "\n"
    if printed and not printed.endswith("\n"):
        printed += "\n"
    return re.fullmatch(pattern, printed) is not None
