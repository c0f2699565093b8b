#!/usr/bin/env python3
"""Times the shell over the kernel's devices beside ip(8) and ethtool(8), in a network namespace of its own.

    bench/side_by_side.py [--json] [--runs N] [--sizes N,N...] [PMSH]

The devices are veth pairs, up. The commands run in turns, so that whatever disturbs the machine disturbs them all.
Reported are medians in milliseconds, and for each command of the shell its ratio to `ip -s link` and `ethtool '*'`
together, beside the ratio that is aimed at.
"""
import argparse
import ctypes
import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

SIZES = [64, 512, 2000, 8000]
RUNS = 21
SETTLING_SECONDS = 3  # until the addresses of new devices are checked
COMMANDS = {
    "show interface": 0.5,
    "show interface overview": 0.5,
    "show interface counters": 0.3,
    "show interface counters errors": None,
    "show interface brief": None,
}
OTHERS = {"ip -s link": ["ip", "-s", "link"], "ethtool '*'": ["ethtool", "*"]}
CLONE_NEWUSER, CLONE_NEWNET = 0x10000000, 0x40000000


def medians_ms(commands, runs):
    """The medians of several commands, which are run in turns with their output in a pipe."""
    times = {name: [] for name in commands}
    for _ in range(runs):
        for name, argv in commands.items():
            begin = time.perf_counter()
            subprocess.run(argv, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
            times[name].append((time.perf_counter() - begin) * 1000)
    return {name: statistics.median(took) for name, took in times.items()}


def enter_namespace():
    """Moves this process to a network namespace of its own; False where that is not allowed."""
    libc = ctypes.CDLL(None, use_errno=True)
    flags = CLONE_NEWNET if os.geteuid() == 0 else CLONE_NEWUSER | CLONE_NEWNET
    return libc.unshare(flags) == 0


def add_devices(first, count):
    """Adds pairs of veth devices, up."""
    lines = []
    for pair in range(first // 2, (first + count) // 2):
        lines += [f"link add a{pair} type veth peer name b{pair}", f"link set a{pair} up", f"link set b{pair} up"]
    return subprocess.run(["ip", "-batch", "-"], input="\n".join(lines), text=True, check=False).returncode == 0


def measure(pmsh, sizes, runs):
    """Medians by number of devices and command. Ends the program where the machine cannot measure."""
    missing = [tool for tool in ("ip", "ethtool") if shutil.which(tool) is None]
    if missing:
        sys.exit(f"{' and '.join(missing)} missing: nothing to compare with")
    if not enter_namespace():
        sys.exit("a network namespace is not allowed here")
    commands = {name: [pmsh, "--kernel", "-c", name] for name in COMMANDS} | OTHERS
    medians, existing = {}, 0
    for size in sizes:
        if not add_devices(existing, size - existing):
            sys.exit("veth devices cannot be made here")
        existing = size
        time.sleep(SETTLING_SECONDS)
        medians_ms(commands, 1)  # the first run stores the interfaces of new devices
        medians[str(size)] = medians_ms(commands, runs)
    return medians


def ratio(medians, command):
    return medians[command] / sum(medians[other] for other in OTHERS)


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--json", action="store_true", help="print the medians as JSON")
    parser.add_argument("--runs", type=int, default=RUNS)
    parser.add_argument("--sizes", type=lambda text: [int(size) for size in text.split(",")], default=SIZES)
    parser.add_argument("pmsh", nargs="?", default=str(root / "build/release/bin/pmsh"))
    requested = parser.parse_args()
    measured = measure(requested.pmsh, requested.sizes, requested.runs)
    if requested.json:
        return print(json.dumps(measured))
    for size, medians in measured.items():
        for name, median in medians.items():
            aim = COMMANDS.get(name)
            compared = f"  ratio {ratio(medians, name):5.2f}" if name in COMMANDS else ""
            print(f"{size:>5} devices  {name:32} {median:9.2f} ms{compared}{f' (aim {aim})' if aim else ''}")
    return None


if __name__ == "__main__":
    main()
