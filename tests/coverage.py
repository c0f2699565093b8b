#!/usr/bin/env python3
"""Prints how much of the library its contract tests run, by line and branch: coverage.py ROOT GCOVR_JSON

Fails for a line or a branch that does not run and has no reason in tests/coverage_reasons.txt, and for a reason that no
such line needs."""
import json
import pathlib
import sys

root = pathlib.Path(sys.argv[1])
LIBRARY = "infra/port_manager/"


def reasons():
    found = []
    for line in (root / "tests/coverage_reasons.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            file, part, _ = (cell.strip() for cell in line.split("|"))
            found.append((LIBRARY + file, part))
    return found


def percent(part, whole):
    return 100.0 * part / whole if whole else 100.0


known = reasons()
needed = set()
unnamed = []
totals = [0, 0, 0, 0]
print(f"{'File':66}{'Lines':>8}{'Branches':>10}")
for file in sorted(json.load(open(sys.argv[2]))["files"], key=lambda entry: entry["file"]):
    source = (root / file["file"]).read_text().splitlines()
    counts = [0, 0, 0, 0]
    for line in file["lines"]:
        if line.get("gcovr/noncode"):
            continue
        branches = [branch for branch in line["branches"] if not branch.get("throw")]
        missed = sum(branch["count"] == 0 for branch in branches)
        counts = [counts[0] + (line["count"] > 0), counts[1] + 1,
                  counts[2] + len(branches) - missed, counts[3] + len(branches)]
        text = source[line["line_number"] - 1].strip()
        if not missed and line["count"] > 0:
            continue
        named = {entry for entry in known if entry[0] == file["file"] and entry[1] in text}
        needed |= named
        if not named:
            unnamed.append(f"{file['file']}:{line['line_number']}: {text}")
    totals = [total + count for total, count in zip(totals, counts)]
    name = file["file"].removeprefix(LIBRARY)
    print(f"{name:66}{percent(counts[0], counts[1]):7.1f}%{percent(counts[2], counts[3]):9.1f}%")
print(f"{'all':66}{percent(totals[0], totals[1]):7.1f}%{percent(totals[2], totals[3]):9.1f}%")
print(f"{totals[1] - totals[0]} of {totals[1]} lines and {totals[3] - totals[2]} of {totals[3]} branches do not run")
for line in unnamed:
    print("without a reason: " + line)
stale = [entry for entry in known if entry not in needed]
for file, part in stale:
    print(f"a reason that nothing needs: {file.removeprefix(LIBRARY)} | {part}")
sys.exit(1 if unnamed or stale else 0)
