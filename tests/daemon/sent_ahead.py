#!/usr/bin/python3
"""Requests about many interfaces travel together: sent_ahead.py PMSH PMSHD SWITCH

A display of many interfaces needs far fewer packets than interfaces, in both directions together, and shows the same.
"""

import os
import subprocess
import sys

import daemon
from daemon import expect, step
from connections import Cutter

PORTS = 512
PLENTY = 1_000_000  # packets


def main():
    pmsh, pmshd, _ = sys.argv[1:]
    switch_options = ("--giant", str(PORTS))
    with daemon.Daemon(pmshd, *switch_options) as switch:
        counter = Cutter(switch.socket, os.path.join(switch.folder, "count.sock"))
        for command in ("show interface", "show interface status", "show interface overview", "show interface counters | json"):
            step(command)
            alone = subprocess.run([pmsh, *switch_options, "--clock", daemon.CLOCK, "-c", command], capture_output=True,
                                   text=True, env={**os.environ, "TZ": "UTC"}, check=True).stdout
            counter.left = PLENTY
            code, out, error = daemon.run(pmsh, counter.path, command)
            expect((code, out, error) == (0, alone, ""), f"it shows something else: {code} {error}")
            packets = PLENTY - counter.left
            expect(packets < PORTS / 2, f"{packets} packets for {PORTS} ports")


if __name__ == "__main__":
    main()
