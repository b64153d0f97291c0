#!/usr/bin/env python3
"""Writes a file to the standard output as Doxygen is to read it:

    filter.py FILE

In a header a comment is repeated for each further declaration below it, up to the next blank line or comment; special
members have a comment without being told; and the namespace belongs to the group that groups.dox names for it. In a
page the names of classes become links. groups.dox also gets the examples, to which the classes have links then.
"""

import pathlib
import re
import sys

GROUPS = pathlib.Path(__file__).with_name("groups.dox")
SOURCES = GROUPS.parent.parent / "src"
EXAMPLES = GROUPS.parent.parent / "examples"

# Members that need no comment of their own in a header.
SPECIAL_MEMBERS = (
    (r".*= delete;", "Not available."),
    (r"(virtual )?~", "The destructor."),
    (r"\w+\(\) = default;", "The default constructor."),
    (r"(explicit )?(\w+)\(\2(<.*>)? (const &|&&)", "Copies or moves; the class says what copies share."),
    (r"(\w+)(<.*>)? & operator=\(\1(<.*>)? (const &|&&)", "Copies or moves; the class says what copies share."),
)


def get_special_comment(code):
    for pattern, comment in SPECIAL_MEMBERS:
        if re.match(pattern, code):
            return "/// " + comment
    return None


def read_groups(text):
    """The group of each header."""
    groups = {}
    for line in text.splitlines():
        group = re.search(r"\\defgroup (\w+)", line)
        if group:
            name = group.group(1)
        for header in re.findall(r"\b\w+\.h\b", line):
            groups[header] = name
    return groups


class Header:
    """The lines of a header up to a place, and what is known of that place."""

    def __init__(self):
        self.lines = []
        self.comment = []  # the last one, as long as declarations may take it
        self.is_new = False  # whether no declaration has taken it
        self.is_of_special = False  # whether a special member was the first that did
        self.head = None  # a declaration that is not complete
        self.body = None  # the indent of a function whose body is skipped

    def read(self, line):
        indent = len(line) - len(line.lstrip())
        code = line.strip()
        if self.body is not None:
            if indent == self.body and code.startswith("}"):
                self.body = self.head = None
        elif code.startswith("///"):
            self.comment = self.comment + [code] if self.is_new else [code]
            self.is_new = True
        elif not code or code.startswith(("//", "#", "}")) or re.match(r"(public|protected|private):", code):
            self.end_block()
        elif code == "{":
            if re.match(r"(template<.*> )?(class|struct|enum|namespace)\b", self.head):
                self.end_block()
            else:
                self.body = indent
        else:
            self.read_declaration(indent, code)
        self.lines.append(line)

    def end_block(self):
        self.comment, self.is_new, self.is_of_special, self.head = [], False, False, None

    def read_declaration(self, indent, code):
        if self.head is None:
            self.add_comment(" " * indent, code)
            self.head = ""
        self.head += code + " "
        if re.search(r"[;}]( *//.*)?$", code):
            self.head = None

    def add_comment(self, indent, code):
        special = get_special_comment(code)
        if self.is_new:
            self.is_new = False
            self.is_of_special = bool(special)
        elif special and not self.is_of_special:
            self.lines.append(indent + special)
        else:
            self.lines += [indent + line for line in self.comment]


def filter_header(text, group):
    # Instances of templates would be classes without comments, and specialised members functions without them.
    for head in ("extern template ", "TSL_EXTERN_TEMPLATE\\(", "template<>\nTSL_EXPORT "):
        text = re.sub("^" + head + ".*?;\n", "", text, flags=re.DOTALL | re.MULTILINE)
    header = Header()
    for line in text.splitlines():
        header.read(line)
    begin, end = f"/// \\addtogroup {group}\n/// @{{\n", "/// @}\n"
    text = "\n".join(header.lines) + "\n"
    if "namespace tsl\n" not in text:
        return text + begin + end
    return text.replace("namespace tsl\n{\n", "namespace tsl\n{\n" + begin).replace("} // namespace tsl\n", end + "} // namespace tsl\n")


def read_classes(headers):
    """The names of all classes of the headers, with their namespaces."""
    classes = {}
    for header in headers:
        text = header.read_text(encoding="utf-8")
        scope = "tsl::" if "namespace tsl\n" in text else ""
        for name in re.findall(r"^(?:class|struct) (?:[A-Z_]+_EXPORT )?(\w+)(?: |$)(?!.*;$)", text, re.MULTILINE):
            classes[name] = scope + name
    return classes


def filter_page(text, classes):
    def link(match):
        name = classes.get(match.group(2))
        return f"[{match.group(1)}](@ref {name})" if name else match.group()

    parts = re.split(r"(^```.*?^```$|^#.*?$)", text, flags=re.DOTALL | re.MULTILINE)
    for i in range(0, len(parts), 2):
        parts[i] = re.sub(r"(?<!\[)(`(?:tsl::)?(\w+)`)", link, parts[i])
        parts[i] = re.sub(r"\[((\w+))\]\([./]*/src/\w+/\w+\.h\)", link, parts[i])
    return "".join(parts)


def get_examples():
    files = sorted(EXAMPLES.glob("*/*.cpp"))
    names = [file.relative_to(EXAMPLES).as_posix() for file in files]
    return "".join(f"/// \\example {name}\n/// The file examples/{name} of the sources.\n\n" for name in names)


def main():
    path = pathlib.Path(sys.argv[1])
    text = path.read_text(encoding="utf-8")
    groups = read_groups(GROUPS.read_text(encoding="utf-8"))
    if path.suffix == ".h":
        # Doxygen reports the group of a header that has none.
        text = filter_header(text, groups.get(path.name, "no_group_for_" + path.stem))
    elif path.suffix == ".md":
        headers = [header for header in SOURCES.glob("*/*.h") if header.name in groups]
        text = filter_page(text, read_classes(headers))
    elif path.name == GROUPS.name:
        text += "\n" + get_examples()
    sys.stdout.write(text)


main()
