#!/usr/bin/env python3
"""Holds the page of failures against the sources: no text is missing, none is invented, the codes are right.

    failures.py PAGE SOURCE-FOLDER
"""

import pathlib
import re
import sys

import texts

FOLDERS = ("src/tessel", "src/patternmatcher", "src/platform", "programs/shared", "programs/tessel")


class Row:
    """A row of the page: text, code, the source files that have it, what it means, what to do."""

    def __init__(self, line, cells):
        self.line = line
        self.text = cells[0].strip("`").strip()
        self.codes = {int(code) for code in re.findall(r"-?\d+", cells[1])}
        self.files = set(re.findall(r"`(\w+)`", cells[2]))
        self.complete = len(cells) == 5 and all(cells)


def read_rows(page):
    rows = []
    for number, line in enumerate(page.splitlines(), 1):
        cells = [cell.strip() for cell in line.strip("|").split(" | ")]
        if line.startswith("| `") or line.startswith("| ``"):
            rows.append(Row(number, cells))
    return rows


def read_sources(folder):
    """The texts by the names of the source files without their endings."""
    found = {}
    for name in FOLDERS:
        for path in sorted((pathlib.Path(folder) / name).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                found.setdefault(path.stem, []).extend(texts.find_texts(path.read_text(encoding="utf-8")))
    return found


def compare(rows, sources):
    mistakes = []
    for file, found in sources.items():
        of_file = [row.text for row in rows if file in row.files]
        for text in found:
            for piece in texts.get_pieces(text.text) if text.needed else ():
                if not any(piece in shown for shown in of_file):
                    mistakes.append(f"of {file} the page lacks: {text.text!r}")
    for row in rows:
        mistakes += check_row(row, sources)
    return mistakes


def check_row(row, sources):
    mistakes = []
    found = [text for file in row.files for text in sources.get(file, [])]
    if not row.complete or not row.files:
        mistakes.append(f"{row.line}: the row is not complete")
    for file in row.files - sources.keys():
        mistakes.append(f"{row.line}: there is no source file {file}")
    for piece in texts.get_pieces(row.text):
        if texts.WORD.search(piece) and not is_made_of(piece, [text.text for text in found]):
            mistakes.append(f"{row.line}: no source has {piece!r}")
    longest = max(texts.get_pieces(row.text), key=len, default="")
    codes = {text.code for text in found if longest in text.text} - {None}
    if codes and not codes & row.codes or row.codes - codes and codes:
        mistakes.append(f"{row.line}: the sources say code {codes}, the page {row.codes}")
    return mistakes


def is_made_of(piece, literals):
    """Whether the piece is a part of a literal, or the end of one followed by others."""
    if not piece or any(piece in literal for literal in literals):
        return True
    return any(
        literal.rstrip().endswith(piece[:i].rstrip()) and is_made_of(piece[i:].lstrip(), literals)
        for i in range(1, len(piece)) if piece[:i].strip() for literal in literals)


def main():
    page = pathlib.Path(sys.argv[1]).read_text(encoding="utf-8")
    mistakes = compare(read_rows(page), read_sources(sys.argv[2]))
    print("\n".join(mistakes))
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
