"""Finds the texts of failures in the sources.

A text that has to be explained is a literal of at least two words; of a failure that is made in the same statement, each
literal with a word; of a failed assertion the information, or the expression if that is empty. Not counted are traces of
log points, static assertions, and raw literals, which are the helps of programs.
"""

import dataclasses
import re

TOKEN = re.compile(
    r"""//[^\n]*|/\*.*?\*/|^\s*\#[^\n]*
    |R"\(.*?\)"
    |"(?P<text>(?:[^"\\\n]|\\.)*)"
    |'(?:[^'\\\n]|\\.)+'""",
    re.DOTALL | re.MULTILINE | re.VERBOSE)

TWO_WORDS = re.compile(r"[^\W\d_]{2}.*[ \n].*[^\W\d_]{2}", re.DOTALL)
WORD = re.compile(r"[^\W\d_]{2}")
ESCAPES = {"n": "\n", "t": "\t"}

CODES = ("eNoError", "eAccessDenied", "eBadData", "eNotAllowed", "eOutOfRange", "eNotFound", "eInternal", "eTimeZoneQuery",
    "eNoMoreData", "eMoreData", "eSubsystem", "eTimeout", "eTerminated")


@dataclasses.dataclass
class Text:
    text: str
    code: int | None  # as far as the statement says
    needed: bool  # whether it has to be explained


def unescape(text):
    return re.sub(r"\\(.)", lambda match: ESCAPES.get(match.group(1), match.group(1)), text)


def find_literals(source):
    """The code with blanks in place of comments and literals, and the literals by their places; adjacent ones are joined."""
    literals = {}
    code = []
    end = 0
    last = None
    for token in TOKEN.finditer(source):
        between = source[end:token.start()]
        code.append(between)
        if token.group("text") is not None:
            if last is not None and not between.strip():
                literals[last] += unescape(token.group("text"))
            else:
                last = token.start()
                literals[last] = unescape(token.group("text"))
            code.append('"' + " " * (len(token.group()) - 2) + '"')
        else:
            if between.strip():
                last = None
            code.append(" " * len(token.group()))
        end = token.end()
    code.append(source[end:])
    return "".join(code), literals


def get_call_end(code, begin):
    """The place after the bracket that closes the one at begin."""
    depth = 0
    for i in range(begin, len(code)):
        depth += {"(": 1, ")": -1}.get(code[i], 0)
        if depth == 0:
            return i + 1
    return len(code)


def find_texts(source):
    code, literals = find_literals(source)
    for call in re.finditer(r"\b(Trace|static_assert)\s*\(", code):
        end = get_call_end(code, call.end() - 1)
        literals = {place: text for place, text in literals.items() if not call.start() < place < end}

    texts = []
    for statement in re.finditer(r"[^;{}]+", code):
        inside = [text for place, text in literals.items() if statement.start() <= place < statement.end()]
        texts += read_statement(statement.group(), inside)
    return texts


def read_statement(code, literals):
    number = get_named_code(code)
    if "XAssertionFailed" not in code:
        word = TWO_WORDS if number is None else WORD
        return [Text(text, number, bool(word.search(text))) for text in literals]
    if number is None: # otherwise the failure that has caused the assertion is made in its place
        number = 6
    empty = literals[1:] == [""]
    return [Text(text, number, bool(WORD.search(text)) if i else empty) for i, text in enumerate(literals)]


def get_named_code(code):
    named = re.search(r"\bERR::(e\w+)", code)
    return CODES.index(named.group(1)) if named and named.group(1) in CODES else None


def get_pieces(text):
    """The parts of a text that are always the same, without blanks at their ends and colons at their beginnings."""
    pieces = re.split(r"%(?:\.\*)?[a-z]+|\.\.\.|\n", text)
    return [piece.strip().lstrip(": ") for piece in pieces if piece.strip(": ")]
