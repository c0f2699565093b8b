#!/usr/bin/python3
"""Each read of a file of commands fails once: failing_reads.py PMSH SWITCH

A file that cannot be read to its end is one sentence with its name, and none of its commands is run. Needs strace.
"""

import itertools
import os
import subprocess
import sys
import tempfile

# More than one block of the reader.
LINES = "configure\ninterface ethernet 1/1\n  shutdown\n" + "! a line that fills the second block\n" * 3000
WAYS = ("-f", "--config", "copy")


def run(pmsh, switch, file, way, when):
    """Reads the file; the read with this number fails. Returns what the program did and whether it came to that read."""
    options = ["-c", f"copy {file} running-config"] if way == "copy" else [way, file]
    with tempfile.NamedTemporaryFile("r", encoding="utf-8") as trace:
        done = subprocess.run(
            ["strace", "-f", "-qq", "-o", trace.name, "-P", file, "-e", "trace=read", "-e", f"inject=read:error=EIO:when={when}",
             pmsh, "--switch", switch, *options, "-c", "show running-config interface ethernet 1/1"],
            capture_output=True, text=True, check=False)
        return done, "EIO" in trace.read()


def main():
    pmsh, switch = sys.argv[1:]
    faults, failed = [], 0
    with tempfile.TemporaryDirectory() as directory:
        file = os.path.join(directory, "settings.cfg")
        with open(file, "w", encoding="utf-8") as written:
            written.write(LINES)
        expected = f"pmsh: cannot read '{file}': Input/output error.\n"
        for way in WAYS:
            for when in itertools.count(1):
                done, has_failed = run(pmsh, switch, file, way, when)
                if not has_failed:
                    if done.returncode != 0 or "  shutdown\n" not in done.stdout:
                        faults.append(f"{way}: undisturbed it ends with {done.returncode}: {done.stdout!r} {done.stderr!r}")
                    break
                failed += 1
                if done.returncode != 1 or done.stderr != expected or "shutdown" in done.stdout:
                    faults.append(f"{way}: read {when}: {done.returncode} {done.stdout!r} {done.stderr!r}")
    for fault in faults:
        print(fault)
    if faults or failed < 6:
        sys.exit(f"{len(faults)} faults; {failed} reads failed")
    print(f"{failed} reads failed, and nothing was applied")


if __name__ == "__main__":
    main()
