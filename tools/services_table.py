#!/usr/bin/env python3
"""The services that each display asks, in their order: a table in docs/embedding.md, made of what the contract tests record.

services_table.py ROOT COMMAND...           fails when the table is stale; COMMAND runs the contract tests
services_table.py --write ROOT COMMAND...   writes it

Displays that print, by pmcli/displays.h, and ask a service have a row. So have variants that ask for something else than the
display that they vary. The script fails when another command id asks for more than the port record."""
import json
import pathlib
import re
import subprocess
import sys
import tempfile

PAGE = "docs/embedding.md"
DISPLAYS = "infra/port_manager/libpmcli/include/pmcli/displays.h"
BEGIN, END = "<!-- services: begin -->", "<!-- services: end -->"
PORT_RECORD = "pm_cmi_get_port_config"


def fail(text):
    sys.exit("services: " + text)


def recorded_by(command):
    """Kind of interface -> command id -> what it asks, in order."""
    with tempfile.TemporaryDirectory() as directory:
        file = pathlib.Path(directory, "tests.json")
        test = subprocess.run([*command, "--gtest_filter=ServicesOfDisplays.Recording", f"--gtest_output=json:{file}"],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if test.returncode != 0 or not file.exists():
            fail("the recording failed:\n" + test.stdout)
        tests = json.loads(file.read_text())["testsuites"]
    kinds = {}
    for name, services in ((tests or fail("nothing was recorded"))[0]["testsuite"][0]).items():
        if match := re.fullmatch(r"(.+)/(\d+)", name):
            kinds.setdefault(match[1], {})[int(match[2])] = services.split()
    return kinds


def displays_of(header):
    """Command id -> (name, comment)."""
    found = re.findall(r"DISPLAY_(\w+) = (\d+),? +/\* (.*?) \*/", header)
    return {int(number): (name, comment) for name, number, comment in found}


def prints(comment):
    return not re.search(r"prints nothing|no display|header only", comment)


def shown(service):
    function, _, place = service.partition("@")
    if function == "mts_send":
        node, access_point = place.split(":")
        return f"`mts_send` to {access_point}" + (" of the line card" if node == "line-card" else "")
    return f"`{function}`" + (f" ({place})" if place else "")


def sentence(services):
    parts = []
    for service in services:
        if parts and parts[-1][0] == service:
            parts[-1][1] += 1
        else:
            parts.append([service, 1])
    return ", ".join(shown(service) + (f", {count} times" if count > 1 else "") for service, count in parts) or "none"


def rows_of(kind, asked, displays):
    """Displays with what they ask; equal ones share a row."""
    rows = {}
    for number, services in asked.items():
        name, comment = displays.get(number, ("", "no display"))
        base = re.match(r"variant of DISPLAY_(\w+)", comment)
        if not prints(comment):
            if services not in ([], [PORT_RECORD]) and services != asked[1]:
                fail(f"{kind}: command id {number} has no row, but asks {sentence(services)}")
        elif base and services == asked[next(n for n, (other, _) in displays.items() if other == base[1])]:
            continue
        elif services or base:
            rows.setdefault(sentence(services), []).append(name)
    return rows


def table_of(kinds, displays):
    lines = []
    for kind, asked in kinds.items():
        lines += ["", f"**{kind}**", "", "| Displays | Services, in this order |", "|---|---|"]
        rows = rows_of(kind, asked, displays)
        lines += [f"| {', '.join(names)} | {services} |" for services, names in rows.items()]
    return "\n".join([BEGIN, *lines, "", END])


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--write"]
    root, command = pathlib.Path(arguments[0]), arguments[1:]
    page = root / PAGE
    text = page.read_text()
    if text.count(BEGIN) != 1 or text.count(END) != 1:
        fail(f"{PAGE} does not have the lines {BEGIN} and {END} once each")
    table = table_of(recorded_by(command), displays_of((root / DISPLAYS).read_text()))
    renewed = text[:text.index(BEGIN)] + table + text[text.index(END) + len(END):]
    if "--write" in sys.argv:
        page.write_text(renewed)
    elif renewed != text:
        fail(f"{PAGE} is stale: run ninja -C build/debug update_docs")


main()
