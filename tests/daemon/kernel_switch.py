#!/usr/bin/python3
"""The devices of a network namespace behind a daemon: kernel_switch.py PMSH PMSHD

Two shells follow their events, changes of one shell are seen by the other, and cursors of killed shells are released. Commits outlive their shells.
"""

import json
import os
import shutil
import subprocess
import sys

import daemon
from daemon import Watch, expect, step


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


def mtu_of(space, device):
    return json.loads(run("ip", "-n", space, "-j", "link", "show", device).stdout)[0]["mtu"]


def port_of(pmsh, switch, device):
    devices = json.loads(daemon.run(pmsh, switch.socket, "show kernel-map | json")[1])["devices"]
    return next(it["interface"] for it in devices if it["device"] == device)


def commit_mtu(pmsh, switch, port, mtu, seconds):
    """Leaves a commit: its shell is killed when the commit is made."""
    shell = subprocess.Popen([pmsh, "--connect", switch.socket], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    shell.stdin.write(f"configure candidate\ninterface {port}\nswitchport mtu {mtu}\ncommit confirmed {seconds}\n")
    shell.stdin.flush()
    expect("Committed" in shell.stdout.readline(), "it is not committed")
    shell.kill()
    shell.communicate()


def check_commits(space, pmsh, switch):
    step("a commit to the devices outlives its shell, and another shell confirms it")
    port = port_of(pmsh, switch, "left")
    commit_mtu(pmsh, switch, port, 1400, 3600)
    while "has ended: its commit waits" not in switch.log():
        expect(switch.is_serving(), "it does not serve")
    expect(mtu_of(space, "left") == 1400, "it is rolled back")
    code, out, error = daemon.run(pmsh, switch.socket, "configure", "confirm")
    expect(code == 0 and out.startswith("Confirmed for "), f"{code}: {out}{error}")
    expect(mtu_of(space, "left") == 1400, "it does not stay")

    step("another shell rolls it back, and the setting is an event of the session that made the commit")
    watch = Watch(pmsh, switch)
    commit_mtu(pmsh, switch, port, 1300, 3600)
    while switch.log().count("has ended: its commit waits") < 2:
        expect(switch.is_serving(), "it does not serve")
    code, out, error = daemon.run(pmsh, switch.socket, "configure", "abort")
    expect(code == 0 and out.startswith("Rolled back for "), f"{code}: {out}{error}")
    expect(mtu_of(space, "left") == 1400, "it stays")
    for change in ("1400 -> 1300", "1300 -> 1400"):
        line = watch.read_until(f"switchport mtu: {change} by ")
        expect("  setting    " in line and "(left)" in line, line)
    watch.interrupt()

    step("the switch rolls it back although no shell asks")
    commit_mtu(pmsh, switch, port, 1300, 1)
    while "was not confirmed in time" not in switch.log():
        expect(switch.process.poll() is None, "the daemon ended")
    expect(mtu_of(space, "left") == 1400, "it stays")


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

        check_commits(space, pmsh, switch)
        while switch.descriptors() > before:
            expect(switch.is_serving(), "it does not serve")

        step("a killed daemon rolls a commit back: its guardian does")
        commit_mtu(pmsh, switch, port_of(pmsh, switch, "left"), 1300, 3600)

        step("a daemon that is killed ends the watch with one sentence")
        last = Watch(pmsh, switch)
        switch.kill()
        _, errors = last.process.communicate()
        while mtu_of(space, "left") != 1400:
            pass
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
