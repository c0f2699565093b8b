#!/usr/bin/env python3
"""The table of exported functions, each with its source file and the tests that use it: docs/exports.md

exports_table.py ROOT           fails when the table is not what the sources say, or a function has no test
exports_table.py ROOT --write   writes it"""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
library = root / "infra/port_manager"
sources = {path: path.read_text() for path in sorted(library.rglob("*.cpp"))}
contract = root / "tests/contract"
WALK = contract / "every_display_walk_test.cpp"  # calls every display, and says nothing of what it does
tests = {path: path.read_text() for path in sorted(contract.rglob("*.cpp")) if path != WALK}
names = (library / "libpmcli/exports.txt").read_text().split()
faults = []


def defines(text, name):
    # At the beginning of a line, with a body in front of the next semicolon; of a table, its content or its size.
    for match in re.finditer(rf"^[A-Za-z_][^\n;={{}}]*\b{name}(\(|\[)", text, re.MULTILINE):
        end = re.compile(r"[;{]").search(text, match.end())
        if match.group(1) == "[" or (end and end.group() == "{"):
            return True
    return False


def definition_of(name):
    found = [path for path, text in sources.items() if defines(text, name)]
    if len(found) != 1:
        faults.append(f"{name} is defined in {len(found)} files: {[path.name for path in found]}")
        return "?"
    return str(found[0].relative_to(library))


def tests_of(name):
    found = [path.relative_to(contract).with_suffix("") for path, text in tests.items() if re.search(rf"\b{name}\b", text)]
    if not found:
        faults.append(f"{name} has no test")
    return ", ".join(f"`{path}`" for path in found)


page = ["# Exported functions", "",
        "Each function of `libpmcli_common` with the file that defines it, below `infra/port_manager`, and the tests that",
        "use it, in `tests/contract`. Made by `tests/exports_table.py . --write`, which the tests run to compare.", "",
        "| Function | File | Tests |", "|---|---|---|"]
page += [f"| `{name}` | `{definition_of(name)}` | {tests_of(name)} |" for name in names]
text = "\n".join(page) + "\n"

target = root / "docs/exports.md"
if "--write" in sys.argv:
    target.write_text(text)
elif not target.exists() or target.read_text() != text:
    faults.append("docs/exports.md is out of date: run tests/exports_table.py . --write")
for fault in faults:
    print("exports: " + fault, file=sys.stderr)
sys.exit(1 if faults else 0)
