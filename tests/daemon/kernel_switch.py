#!/usr/bin/python3
"""The devices of a network namespace behind a daemon: kernel_switch.py PMSH PMSHD

Two shells follow their events, changes of one shell are seen by the other, and cursors of killed shells are released.
"""

import os
import shutil
import signal
import subprocess
import sys

import daemon
from daemon import expect, step


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


class Watch:
    """A running "watch events": its titles have been read, so events come."""

    def __init__(self, pmsh, switch):
        self.process = subprocess.Popen([pmsh, "--connect", switch.socket, "-c", "watch events"], stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True)
        expect("Kind" in self.process.stdout.readline(), "there are no titles")

    def read_until(self, text):
        for line in self.process.stdout:
            if text in line:
                return line
        sys.exit(f"'{text}' does not come: {self.process.stderr.read()}")

    def interrupt(self):
        self.process.send_signal(signal.SIGINT)
        self.process.communicate()
        return self.process.returncode


def check(space, pmsh, pmshd):
    run("ip", "-n", space, "link", "add", "left", "type", "veth", "peer", "name", "right")
    launcher = os.path.join(os.environ["XDG_STATE_HOME"], "pmshd")
    with open(launcher, "w", encoding="utf-8") as script:
        script.write(f'#!/bin/sh\nexec ip netns exec {space} {pmshd} "$@"\n')
    os.chmod(launcher, 0o700)
    with daemon.Daemon(launcher, "--kernel", clock=False) as switch:
        before = switch.descriptors()

        step("two shells follow events")
        watches = [Watch(pmsh, switch), Watch(pmsh, switch)]
        for name in ("first", "second"):
            run("ip", "-n", space, "link", "add", name, "type", "veth", "peer", "name", f"{name}-peer")
            for watch in watches:
                watch.read_until(name)

        step("another shell is served meanwhile and sees a new device")
        code, out, error = daemon.run(pmsh, switch.socket, "show kernel-map")
        expect((code, error) == (0, "") and "second" in out, f"{code}: {error}")

        step("Ctrl-C ends a watch")
        expect(watches[0].interrupt() in (0, 130), "it fails")

        step("a killed shell leaves no descriptors")
        watches[1].process.kill()
        watches[1].process.wait()
        while switch.descriptors() > before:
            expect(switch.is_serving(), "it does not serve")

        step("a daemon that is killed ends the watch with one sentence")
        last = Watch(pmsh, switch)
        switch.kill()
        _, errors = last.process.communicate()
        expect(last.process.returncode == 2 and errors.count("was lost.") == 1, f"{last.process.returncode}: {errors}")


def main():
    pmsh, pmshd = sys.argv[1:]
    space = f"pmclidaemon{os.getpid()}"
    if shutil.which("ip") is None or run("ip", "netns", "add", space).returncode != 0:
        print("skipped: everything: network namespaces are not allowed here")
        sys.exit(77)
    state = daemon.tempfile.mkdtemp()
    os.environ |= {"XDG_STATE_HOME": state, "LC_ALL": "C.UTF-8", "TZ": "UTC"}
    try:
        check(space, pmsh, pmshd)
    finally:
        run("ip", "netns", "del", space)


if __name__ == "__main__":
    main()
