#!/usr/bin/python3
"""A shell on a daemon shows what it shows alone: same_output.py PMSH PMSHD SWITCH...

Every show command of the reference, in text and JSON, with its exit code and its errors; and a session that changes settings.
"""

import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

import daemon
from daemon import expect, step

ARGUMENTS = {"MODULE": "2", "VLANS": "1-200", "RANGE": "ethernet 1/1", "MAC": "0200.0000.0009"}

SESSION = """\
configure
interface ethernet 1/1
description of the test
show running-config interface ethernet 1/1
exit
exit
show changes
undo
show changes | json
show interface ethernet 1/1 brief
clear counters interface ethernet 1/1
show interface ethernet 1/1 counters
nonsense
"""


def commands_of(shell):
    """The show commands of the reference without optional words, and their structured forms."""
    page = subprocess.run([shell, "--print-command-reference"], capture_output=True, text=True, check=True).stdout
    for words, display in re.findall(r"^\| (?:<code>|`)(show [^`<]*)(?:</code>|`) \| [^|]* \| ([^|]*) \|$", page, re.M):
        if words == "show sessions":  # of different switches
            continue
        words = re.sub(r"\[[^]]*\] ?", "", words).strip()
        words = " ".join(ARGUMENTS.get(word, word) for word in words.split())
        yield words
        if display.strip():
            yield words + " | json"


def run(shell, options, command, lines=None):
    done = subprocess.run([shell, *options, *(["-c", command] if command else [])], input=lines or "", capture_output=True,
                          text=True, env={**os.environ, "TZ": "UTC", "USER": "tester"}, check=False)
    return done.returncode, done.stdout, done.stderr


def check(shell, alone, connected, command):
    before, after = run(shell, alone, command), run(shell, connected, command)
    expect(before == after, f"{command}: alone {before}\nconnected {after}")


def main():
    pmsh, pmshd, *files = sys.argv[1:]
    commands = list(commands_of(pmsh))
    expect(len(commands) > 100, f"the reference has only {len(commands)} commands")
    for file in files:
        step(f"every show command of {os.path.basename(file)}")
        alone = ["--switch", file, "--clock", daemon.CLOCK]
        with daemon.Daemon(pmshd, "--switch", file) as switch:
            connected = ["--connect", switch.socket]
            with ThreadPoolExecutor(os.cpu_count()) as pool:
                list(pool.map(lambda it: check(pmsh, alone, connected, it), commands))

            step(f"faults of {os.path.basename(file)}")
            for fault in ("port-manager=lost", "ip=reject", "interface-manager=cut:3"):
                injected = ["--inject-fault", fault]
                check(pmsh, alone + injected, connected + injected, "show interface ethernet 1/1 | json")

            step(f"settings of {os.path.basename(file)}")
            before, after = run(pmsh, alone, None, SESSION), run(pmsh, connected, None, SESSION)
            expect(before == after, f"alone {before}\nconnected {after}")


if __name__ == "__main__":
    main()
