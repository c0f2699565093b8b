#!/usr/bin/python3
"""Who uses a switch, and who may change it: sessions.py PMSH PMSHD SWITCH"""

import json
import os
import pwd
import stat
import subprocess
import sys
import tempfile

import daemon
from daemon import expect, step

GUEST, MEMBER = "nobody", "daemon"  # users that every Debian machine has; the second has a group of its own
SMALL_SWITCH = f"""
switch: {{name: lab, chassis-type: 10, slots: 1, base-mac: "02:00:00:00:00:00"}}
cards: [{{slot: 1, type: 1}}]
users:
  - {{name: ann}}
  - {{name: {GUEST}}}
interfaces: [{{range: ethernet 1/1}}]
"""
SHUTDOWN = ("configure", "interface ethernet 1/1", "shutdown")


def run_as(user, pmsh, target, *commands, options=()):
    """Runs commands as a user of the machine, in that user's own group only."""
    entry = pwd.getpwnam(user)
    lines = [word for command in commands for word in ("-c", command)]
    done = subprocess.run([pmsh, "--connect", target, *options, *lines], stdin=subprocess.DEVNULL, capture_output=True,
                          text=True, env={**os.environ, "TZ": "UTC", "HOME": "/nonexistent"}, check=False,
                          user=entry.pw_uid, group=entry.pw_gid, extra_groups=[])
    return done.returncode, done.stdout, done.stderr


def changed(description):
    return "configure", "interface ethernet 1/1", f"description {description}", "show changes"


def named_in_changes(code, out, error):
    """The user of the switch, whom the list of changes names."""
    first = out.splitlines()[:1] or [""]
    expect(code == 0 and "  description " in first[0], f"{code}: {out}{error}")
    return first[0].split()[2]


def open_to_all(switch):
    os.chmod(switch.folder, 0o711)
    os.chmod(switch.socket, 0o666)


def sessions_of(pmsh, switch):
    code, out, error = daemon.run(pmsh, switch.socket, "show sessions | json")
    expect(code == 0, f"{code}: {error}")
    return json.loads(out)["sessions"]


def check_list(pmsh, pmshd, file):
    step("every session is listed")
    with daemon.Daemon(pmshd, "--switch", file) as switch:
        with switch.connect(greet=False) as first:
            first.send(daemon.hello(terminal=b"/dev/pts/33"))
            first.recv(daemon.PACKET)
            listed = sessions_of(pmsh, switch)
            expect(len(listed) == 2, f"{listed}")
            expect(listed[0]["session"] == 1 and listed[0]["terminal"] == "pts/33", f"{listed[0]}")
            expect(listed[0]["process"] == os.getpid() and listed[0]["since"] == "2023-11-14T22:13:20Z", f"{listed[0]}")
            expect(listed[0]["user"] == pwd.getpwuid(os.getuid()).pw_name, f"{listed[0]}")
            expect(listed[1]["session"] == 2 and listed[1]["holds"] is None, f"{listed[1]}")
            code, out, error = daemon.run(pmsh, switch.socket, "show sessions")
            rows = [line.split() for line in out.splitlines()]
            expect(code == 0 and rows[0] == ["Session", "User", "Terminal", "Process", "Since"], f"{out}{error}")
            expect([row[0] for row in rows[1:]] == ["1", "3*"], out)
        code, out, error = daemon.run(pmsh, switch.socket, "configure candidate", "show sessions | include candidate")
        expect("candidate" in out, f"{code}: {out}{error}")


def check_users(pmsh, pmshd):
    step("a user of the machine is the user of the switch with this name")
    with tempfile.NamedTemporaryFile("w", suffix=".yaml") as with_users:
        with_users.write(SMALL_SWITCH)
        with_users.flush()
        with daemon.Daemon(pmshd, "--switch", with_users.name) as switch:
            open_to_all(switch)
            expect(named_in_changes(*daemon.run(pmsh, switch.socket, *changed("a"))) == "ann", "root is the first one")
            expect(named_in_changes(*run_as(GUEST, pmsh, switch.socket, *changed("b"))) == GUEST, "another name")
            by_name = run_as(GUEST, pmsh, switch.socket, *changed("c"), options=("--user", GUEST))
            expect(named_in_changes(*by_name) == GUEST, "another name with --user")
            by_root = daemon.run(pmsh, switch.socket, *changed("d"), options=("--user", GUEST))
            expect(named_in_changes(*by_root) == GUEST, "root is not who it says")

            step("another user is refused")
            code, out, error = run_as(GUEST, pmsh, switch.socket, "show clock", options=("--user", "ann"))
            expect(code == 5 and out == "", f"{code}: {out}")
            expect(error == f"pmsh: the user '{GUEST}' of this machine may not use the switch as 'ann': omit --user.\n", error)
            code, out, error = run_as(MEMBER, pmsh, switch.socket, "show clock")
            expect(code == 5 and out == "", f"{code}: {out}")
            expect(error == f"pmsh: the switch has no user '{MEMBER}': ask its owner to add one with this name.\n", error)


def check_group(pmsh, pmshd, file):
    step("members of the group change settings")
    with daemon.Daemon(pmshd, "--switch", file, "--group", MEMBER) as switch:
        made = os.stat(switch.socket)
        expect(stat.S_IMODE(made.st_mode) == 0o660 and made.st_gid == pwd.getpwnam(MEMBER).pw_gid, f"{made}")
        os.chmod(switch.folder, 0o711)
        code, _, error = run_as(GUEST, pmsh, switch.socket, "show clock")
        expect(code == 2 and "permission denied" in error, f"{code}: {error}")
        code, _, error = run_as(MEMBER, pmsh, switch.socket, *SHUTDOWN)
        expect(code == 0 and error == "", f"{code}: {error}")
        code, _, error = daemon.run(pmsh, switch.socket, "configure", "interface ethernet 1/1", "no shutdown")
        expect(code == 0 and error == "", f"{code}: {error}")

        step("others may only look")
        open_to_all(switch)
        before = daemon.run(pmsh, switch.socket, "show running-config")
        code, _, error = run_as(GUEST, pmsh, switch.socket, "show interface ethernet 1/1 brief")
        expect(code == 0, f"{code}: {error}")
        reason = "not permitted: this session may only look at the switch"
        for commands in (SHUTDOWN, ("configure", "interface loopback 77"), ("clear counters interface ethernet 1/1",),
                         ("configure candidate", "interface ethernet 1/1", "shutdown", "commit")):
            code, out, error = run_as(GUEST, pmsh, switch.socket, *commands)
            expect(code == 5 and reason in out + error, f"{commands}: {code}: {out}{error}")
        code, out, error = run_as(GUEST, pmsh, switch.socket, *SHUTDOWN[:2], "shutdown | json")
        document = json.loads(out)
        expect(code == 5 and document["exit_code"] == 5, f"{code}: {out}{error}")
        expect([it["reason"] for it in document["interfaces"]] == [reason], out)
        expect(daemon.run(pmsh, switch.socket, "show running-config") == before, "something was changed")

    step("an unknown group")
    done = subprocess.run([pmshd, "--switch", file, "--group", "no-such-group"], capture_output=True, text=True, check=False)
    expect(done.returncode == 1 and "unknown group 'no-such-group' in --group." in done.stderr, done.stderr)


def main():
    pmsh, pmshd, file = sys.argv[1:]
    check_list(pmsh, pmshd, file)
    if os.geteuid() != 0:
        print("skipped: users and groups: needs root, to become other users", flush=True)
        return
    check_users(pmsh, pmshd)
    check_group(pmsh, pmshd, file)


if __name__ == "__main__":
    main()
