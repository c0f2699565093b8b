#!/usr/bin/python3
"""Kills the shell at each of its system calls while it replaces a file: killed_writes.py PMSH SWITCH

Afterwards the file holds all of the old text or all of the new one. Needs strace.
"""

import itertools
import os
import pathlib
import subprocess
import sys
import tempfile

OLD = "! the file that was there\n" * 200

# strace counts the calls of each name by themselves.
CALLS = ("openat", "read", "write", "newfstatat", "fstat", "lseek", "fchmod", "fchown", "fsync", "rename", "unlink", "close",
         "umask", "fcntl", "readlink", "ioctl")


def run(pmsh, switch, line, call=None, when=None):
    """Writes the configuration; killed when a call is made for this time. Returns whether it came to its end."""
    command = [pmsh, "--switch", switch, "--yes", "-c", line]
    if when is not None:
        kill = f"inject={call}:signal=SIGKILL:when={when}"
        command = ["strace", "-f", "-qq", "-o", "/dev/null", "-e", f"trace={call}", "-e", kill, *command]
    done = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    return done.returncode == 0


def kill_at_each_call(pmsh, switch, line, file):
    """`line` writes the file."""
    if not run(pmsh, switch, line):
        sys.exit("the file was not written")
    with open(file, encoding="utf-8") as written:
        new = written.read()
    if len(new) < 1000 or new == OLD:
        sys.exit(f"too little was written: {len(new)} bytes")
    seen = {"old": 0, "new": 0}
    kills = 0
    for call in CALLS:
        for when in itertools.count(1):
            with open(file, "w", encoding="utf-8") as before:
                before.write(OLD)
            is_done = run(pmsh, switch, line, call, when)
            with open(file, encoding="utf-8") as after:
                text = after.read()
            if text not in (OLD, new):
                sys.exit(f"killed at {call} {when} the file is neither the old nor the new one: {len(text)} bytes")
            if is_done:
                break
            kills += 1
            seen["new" if text == new else "old"] += 1
    if seen["old"] < 20 or seen["new"] < 1:
        sys.exit(f"the kills came too late or too early: {seen}")
    print(f"killed at each of {kills} calls: {seen['old']} times the old file, {seen['new']} times the new one")


def main():
    pmsh, switch = sys.argv[1:]
    with tempfile.TemporaryDirectory() as directory:
        os.environ["XDG_STATE_HOME"] = directory
        file = os.path.join(directory, "settings")
        kill_at_each_call(pmsh, switch, f"copy running-config {file}", file)
        if not run(pmsh, switch, "write"):
            sys.exit("the startup-config was not written")
        file, = pathlib.Path(directory, "pmsh").glob("*.startup-config")
        kill_at_each_call(pmsh, switch, "write", file)


if __name__ == "__main__":
    main()
