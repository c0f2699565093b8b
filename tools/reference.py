#!/usr/bin/env python3
"""The reference of the library's exported functions, made from its public headers: docs/reference.md

reference.py ROOT           fails when the page is stale, or an exported function has no contract in its header
reference.py ROOT --write   writes the page

A contract is the comment directly above a declaration. Declarations that follow without an empty line share it; a comment
at the end of a declaration's line says what holds for that one alone. An empty line, another comment and anything that is
no function end the group. The first comment of a header introduces it; a comment that begins with "----" is a heading."""
import pathlib
import re
import sys

PAGE = "docs/reference.md"
RENEW = "tools/reference.py . --write"
INTRODUCTION = """# Library reference

Every function that `libpmcli_common` exports, with its prototype and contract, by public header. Types and constants are
in the headers themselves; handles, records of services and system errors are in `infra/platform`. Generated from the headers
by `tools/reference.py . --write` (or `ninja update_docs`); the tests compare.

Common rules:

- They have C linkage, run on the caller's thread, throw nothing, and keep no state but the buffers and caches named here.
- Handles, parameter blocks, records and texts that a caller passes stay the caller's. Blocks that a function returns are from
  `malloc()` and belong to the caller.
- Records in wire format are big-endian and may be at any address; `platform/wire.h` has the functions that read and write
  them. Everything else is native.
- Displays print through the output handle that they take. Text "on the terminal" goes to standard output and is not
  part of the structured output. The introduction of a header defines which of the two "printed" means.
- The port manager and services that get messages have 60 seconds to answer, unless another time is given.
"""

TOKEN = re.compile(r"(?P<comment>/\*.*?\*/)|(?P<empty>\n[ \t]*(?=\n))|(?P<directive>^#[^\n]*)|(?P<space>\s+)|(?P<code>\S)",
                   re.DOTALL | re.MULTILINE)
FUNCTION = re.compile(r"[\w*\s]*?\b(\w+)\s*\([^()]*(\([^()]*\)[^()]*)*\)$")
VARIABLE = re.compile(r"extern [\w*\s]*?\b(\w+)\s*(\[\w*\])?$")
NO_FUNCTION = re.compile(r"(typedef|struct|union|enum|static_assert|static)\b")


def declaration_at(text, start):
    """The end of the declaration that starts here: after its semicolon, or after the brace that opens a linkage block."""
    depth = 0
    for token in TOKEN.finditer(text, start):
        if token.lastgroup != "code":
            continue
        if token.group() == "{" and text[start:token.start()].strip() == 'extern "C"':
            return token.end()
        depth += {"{": 1, "}": -1}.get(token.group(), 0)
        if depth < 0 or (depth == 0 and token.group() == ";"):
            return token.end()
    return len(text)


def words(comment):
    """The paragraphs and list items of a comment, each in one line."""
    blocks = []
    for line in comment[2:-2].split("\n"):
        line = re.sub(r"^ \*( |$)", "", line).rstrip()
        if not line.strip():
            blocks.append("")
        elif line.startswith("- ") or not blocks or blocks[-1] == "":
            blocks.append(line.strip())
        else:
            blocks[-1] += " " + line.strip()
    return [block for block in blocks if block]


class Group:
    def __init__(self, contract):
        self.contract = contract  # paragraphs; none: the functions have no comment above them
        self.functions = []       # name, prototype, what holds for it alone


class Header:
    def __init__(self, path, name):
        self.name, self.introduction, self.parts = name, [], []  # a part is a heading or a group
        self.read(path.read_text())

    def functions(self):
        return [(group, function) for group in self.parts if isinstance(group, Group) for function in group.functions]

    def read(self, text):
        first = re.match(r"/\*.*?\*/", text, re.DOTALL)
        at = first.end() if first else 0
        self.introduction = words(first.group()) if first else []
        group, function = None, None  # that a declaration joins; that a comment on the same line is about
        while at < len(text):
            token = TOKEN.match(text, at)
            at = token.end()
            if token.lastgroup == "comment":
                paragraphs = words(token.group())
                if function is not None:
                    function[2] = " ".join(paragraphs)
                elif paragraphs and paragraphs[0].startswith("----"):
                    self.parts.append(paragraphs[0].strip("- "))
                    group = None
                else:
                    group = Group(paragraphs)
            elif token.lastgroup == "space":
                if "\n" in token.group():
                    function = None
            elif token.lastgroup == "code":
                end = declaration_at(text, token.start())
                group, function = self.declare(text[token.start():end], group)
                at = end
            else:
                group, function = None, None

    def declare(self, declaration, group):
        code = re.sub(r"/\*.*?\*/", "", declaration, flags=re.DOTALL).rstrip(";").strip()
        found = None if NO_FUNCTION.match(code) else FUNCTION.match(code) or VARIABLE.match(code)
        if found is None:
            return None, None
        if group is None:
            group = Group([])
        if not group.functions:
            self.parts.append(group)
        function = [found.group(1), declaration, ""]
        group.functions.append(function)
        return group, function


def escape(text):
    outside_code = re.split(r"(`[^`]*`)", text)  # every second part is code
    return "".join(part if at % 2 else re.sub(r"([*<>])", r"\\\1", part) for at, part in enumerate(outside_code))


def paragraphs_of(blocks):
    lines = []
    for at, block in enumerate(blocks):
        if at and not (block.startswith("- ") and blocks[at - 1].startswith("- ")):
            lines.append("")
        lines.append(escape(block))
    return lines


def page_of(headers):
    lines = [INTRODUCTION]
    lines += [f"- [`{header.name}`](#{re.sub('[^a-z0-9_]', '', header.name)})" for header in headers]
    for header in headers:
        lines += ["", f"## `{header.name}`", "", *paragraphs_of(header.introduction)]
        for part in header.parts:
            if isinstance(part, str):
                lines += ["", f"### {part}"]
                continue
            lines += ["", "```c", *(prototype for _, prototype, _ in part.functions), "```"]
            if part.contract:
                lines += ["", *paragraphs_of(part.contract)]
            alone = [f"- `{name}`: {escape(note)}" for name, _, note in part.functions if note]
            if alone:
                lines += ["", *alone]
    return "\n".join(lines) + "\n"


def faults_of(headers, exported):
    faults = []
    declared = [(header, group, function) for header in headers for group, function in header.functions()]
    names = [function[0] for _, _, function in declared]
    for name in exported:
        if names.count(name) != 1:
            faults.append(f"{name} is declared {names.count(name)} times in the public headers")
    for header, group, (name, _, alone) in declared:
        if name not in exported:
            faults.append(f"{name} in {header.name} is not exported")
        if not group.contract and not alone:
            faults.append(f"{name} in {header.name} has no contract: put a comment directly above its declaration")
    return faults


def main():
    root = pathlib.Path(sys.argv[1])
    library = root / "infra/port_manager"
    paths = sorted((library / "libpmcli/include/pmcli").glob("*.h")) + sorted((library / "pm").glob("*.h"))
    headers = [Header(path, f"{path.parent.name}/{path.name}") for path in paths]
    headers = [header for header in headers if header.functions()]
    faults = faults_of(headers, (library / "libpmcli/exports.txt").read_text().split())
    page, target = page_of(headers), root / PAGE
    if not faults and "--write" in sys.argv:
        target.write_text(page)
    elif not target.exists() or target.read_text() != page:
        faults.append(f"{PAGE} is stale: run {RENEW}")
    for fault in faults:
        print("reference: " + fault, file=sys.stderr)
    return 1 if faults else 0


sys.exit(main())
