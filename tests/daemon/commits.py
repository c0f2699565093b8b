#!/usr/bin/python3
"""Commits that wait for their confirmation on a shared switch: commits.py PMSH PMSHD SWITCH

The switch keeps them when their shell is gone, rolls them back in time, and lets another shell end them.
"""

import json
import os
import pwd
import sys

import daemon
from daemon import Shell, expect, step
from connections import Cutter, Terminal

PORT = "ethernet 1/1"
OTHER_PORT = "ethernet 1/2"


class Committer(Shell):
    def commit(self, port=PORT, seconds=60):
        """Switches a port off until the commit is rolled back."""
        shown = self.run("configure candidate", f"interface {port}", "shutdown", f"commit confirmed {seconds}")
        expect(shown == f"Committed for {port}. Type 'confirm', or it is rolled back in {seconds} seconds.\n", shown)
        return self


def is_switched_off(pmsh, switch, port=PORT):
    code, out, error = daemon.run(pmsh, switch.socket, f"show running-config interface {port}")
    expect(code == 0, f"{code}: {error}")
    return "shutdown" in out


def left_sessions(pmsh, switch):
    """The sessions that wait for a confirmation."""
    code, out, error = daemon.run(pmsh, switch.socket, "show sessions | json")
    expect(code == 0, f"{code}: {error}")
    return [it for it in json.loads(out)["sessions"] if it["confirmation_seconds"] is not None]


def other_sessions(pmsh, switch):
    code, out, error = daemon.run(pmsh, switch.socket, "show sessions | json")
    expect(code == 0, f"{code}: {error}")
    return json.loads(out)["sessions"][:-1]


def wait_until_left(pmsh, switch, count=1):
    """The sessions whose shell has ended, when there are as many."""
    while True:
        left = [it for it in left_sessions(pmsh, switch) if it["process"] is None]
        if len(left) == count:
            return left


def configure(pmsh, switch, *lines, options=()):
    return daemon.run(pmsh, switch.socket, "configure", *lines, options=options)


def check_living_shell(pmsh, switch):
    step("another shell moves the clock: the commit is rolled back, and its shell reports it with its next line")
    shell = Committer(pmsh, switch).commit()
    daemon.run(pmsh, switch.socket, "clock advance 59")
    expect(is_switched_off(pmsh, switch), "it is rolled back too early")
    daemon.run(pmsh, switch.socket, "clock advance 1")
    expect(not is_switched_off(pmsh, switch), "it is not rolled back")
    shown = shell.run("show diff")
    late = f"pmsh: the commit was not confirmed in time: it was rolled back for {PORT}.\n"
    expect(shown == f"{late}{PORT}\n  + shutdown\n", shown)
    expect(shell.end()[0] == 0, "the shell reports the rollback twice")

    step("a shell that is there ends its commit itself")
    shell = Committer(pmsh, switch).commit()
    number = left_sessions(pmsh, switch)[0]["session"]
    code, _, error = configure(pmsh, switch, f"confirm session {number}")
    expect((code, error) == (1, f"pmsh: session {number} is still in use: its shell ends its commit.\n"), f"{code}: {error}")
    code, _, error = configure(pmsh, switch, "confirm")
    expect((code, error) == (1, "pmsh: no commit is waiting for confirmation.\n"), f"{code}: {error}")
    expect(shell.run("abort") == f"Rolled back for {PORT}.\n", "it is not aborted")
    expect(not is_switched_off(pmsh, switch), "it is not rolled back")
    shell.run("discard", "end")
    shell.commit()
    expect(shell.run("confirm") == f"Confirmed for {PORT}.\n", "it is not confirmed")
    expect(shell.end()[0] == 0 and is_switched_off(pmsh, switch), "it does not stay")
    configure(pmsh, switch, f"interface {PORT}", "no shutdown")


def check_left_commits(pmsh, switch):
    step("a killed shell leaves its commit")
    Committer(pmsh, switch).commit().kill()
    left = wait_until_left(pmsh, switch)[0]
    expect(is_switched_off(pmsh, switch), "it is rolled back")
    expect((left["holds"], left["confirmation_seconds"]) == ("commit", 60), f"{left}")
    expect(left["user"] == pwd.getpwuid(os.getuid()).pw_name, f"{left}")
    _, out, _ = daemon.run(pmsh, switch.socket, "show sessions | include ended")
    expect(out.split()[0] == str(left["session"]) and "commit for 60 s" in out, out)

    step("another shell confirms it")
    code, out, error = configure(pmsh, switch, "confirm")
    expect((code, out) == (0, f"Confirmed for {PORT}.\n"), f"{code}: {out}{error}")
    expect(is_switched_off(pmsh, switch) and not left_sessions(pmsh, switch), "it does not stay")
    configure(pmsh, switch, f"interface {PORT}", "no shutdown")

    step("a shell that ends leaves it as well, and another one rolls it back")
    code, out = Committer(pmsh, switch).commit().end()
    still = "pmsh: the commit still waits: 'confirm' in another shell, or it is rolled back in 60 seconds.\n"
    expect((code, out) == (0, still), f"{code}: {out}")
    wait_until_left(pmsh, switch)
    code, out, error = configure(pmsh, switch, "abort")
    expect((code, out) == (0, f"Rolled back for {PORT}.\n"), f"{code}: {out}{error}")
    expect(not is_switched_off(pmsh, switch) and not left_sessions(pmsh, switch), "it is not rolled back")

    step("one of several is named by its session")
    Committer(pmsh, switch).commit().end()
    Committer(pmsh, switch).commit(OTHER_PORT).end()
    numbers = [it["session"] for it in wait_until_left(pmsh, switch, 2)]
    code, _, error = configure(pmsh, switch, "confirm")
    asked = f"pmsh: the commits of sessions {numbers[0]}, {numbers[1]} are waiting. Type 'confirm session' and one of them.\n"
    expect((code, error) == (1, asked), f"{code}: {error}")
    code, out, error = configure(pmsh, switch, f"abort session {numbers[1]}")
    expect((code, out) == (0, f"Rolled back for {OTHER_PORT}.\n"), f"{code}: {out}{error}")
    expect(is_switched_off(pmsh, switch) and not is_switched_off(pmsh, switch, OTHER_PORT), "another one is rolled back")
    code, _, error = configure(pmsh, switch, f"confirm session {numbers[1]}")
    none = f"pmsh: no commit of session {numbers[1]} is waiting. 'show sessions' lists those that hold one.\n"
    expect((code, error) == (1, none), f"{code}: {error}")

    step("a dry run ends none")
    code, _, error = configure(pmsh, switch, "confirm", options=("--dry-run",))
    expect((code, error) == (1, "pmsh: no commit is waiting for confirmation.\n"), f"{code}: {error}")

    step("the first request after its time finds it rolled back")
    daemon.run(pmsh, switch.socket, "clock advance 60")
    expect(not is_switched_off(pmsh, switch) and not left_sessions(pmsh, switch), "it is not rolled back")
    code, _, error = configure(pmsh, switch, "confirm")
    expect((code, error) == (1, "pmsh: no commit is waiting for confirmation.\n"), f"{code}: {error}")


def check_held_interfaces(pmsh, switch):
    step("other shells do not change what a commit holds")
    user = pwd.getpwuid(os.getuid()).pw_name
    shell = Committer(pmsh, switch).commit(seconds=20)
    daemon.run(pmsh, switch.socket, "clock advance 8")
    held = f"held by {user} on process {shell.process.pid} for 12 s"
    for lines in ((f"interface {PORT}", "no shutdown"), (f"interface {PORT}", "description other"),
                  (f"interface {PORT}-2", "switchport mtu 9000")):
        code, out, error = configure(pmsh, switch, *lines)
        expect(code == 3 and f": {held}" in out + error, f"{lines}: {code}: {out}{error}")
        expect(held not in (out + error).replace(held, "", 1), f"it is reported for other ports: {out}{error}")
    code, out, _ = configure(pmsh, switch, f"interface {PORT}-2", "switchport mtu 9001 | json")
    document = json.loads(out)
    results = {it["interface"]: (it["result"], it["reason"]) for it in document["interfaces"]}
    expect((code, document["exit_code"]) == (3, 3), out)
    expect(results == {"Ethernet1/1": ("refused", held), "Ethernet1/2": ("applied", None)}, f"{results}")

    step("a candidate may be edited, and its commit is refused for what is held")
    code, out, error = daemon.run(pmsh, switch.socket, "configure candidate", f"interface {PORT}-2", "switchport mtu 9002", "commit")
    expect(code == 3 and held in out + error and "Committed for ethernet 1/2." in out, f"{code}: {out}{error}")

    step("it is free after the rollback, the confirmation and the end of a killed shell's commit")
    free = (f"interface {PORT}", "description free")
    expect(shell.run("abort") == f"Rolled back for {PORT}.\n", "it is not aborted")
    expect(configure(pmsh, switch, *free)[0] == 0, "it is held after the rollback")
    shell.run("discard", "end")
    shell.commit().run("confirm")
    expect(configure(pmsh, switch, *free, "no shutdown")[0] == 0, "it is held after the confirmation")
    shell.run("discard", "end")
    shell.commit().kill()
    wait_until_left(pmsh, switch)
    expect(configure(pmsh, switch, *free)[0] == 3, "it is free while the commit waits")
    daemon.run(pmsh, switch.socket, "clock advance 60")
    expect(configure(pmsh, switch, *free)[0] == 0, "it is held after its time")


def check_killed_at_each_packet(pmsh, switch):
    step("a shell whose connection ends after each of its packets leaves its commit or nothing")
    before = switch.descriptors()
    cutter = Cutter(switch.socket, os.path.join(switch.folder, "cut.sock"))
    num_left = 0
    for count in range(1, 10000):
        cutter.left = count
        code, _, error = daemon.run(pmsh, cutter.path, "configure candidate", f"interface {PORT}", "shutdown", "commit confirmed 60")
        while any(it["process"] is not None for it in other_sessions(pmsh, switch)):
            pass
        left = len(other_sessions(pmsh, switch))
        expect(left == is_switched_off(pmsh, switch), f"cut after {count} packets: {left} sessions are left")
        if left:
            num_left += 1
            expect(configure(pmsh, switch, f"interface {PORT}", "description held")[0] == 3, f"cut after {count} packets: it is free")
            expect(configure(pmsh, switch, "abort")[0] == 0, f"cut after {count} packets: it is not aborted")
        free = configure(pmsh, switch, f"interface {PORT}", f"description {count}")
        expect(free[0] == 0 and not is_switched_off(pmsh, switch), f"cut after {count} packets: it is held: {free}")
        if code == 0:
            break
    expect(num_left > 1 and count > 20, f"{num_left} of {count} are left")
    while switch.descriptors() > before:
        expect(switch.is_serving(), "it does not serve")


def check_reconnection(pmsh, switch):
    step("a shell that lost its connection names the session in which its commit waits")
    prompt = "# "
    cutter = Cutter(switch.socket, os.path.join(switch.folder, "lost.sock"))
    cutter.left = sys.maxsize
    shell = Terminal([pmsh, "--connect", cutter.path], {**os.environ, "TERM": "dumb", "XDG_STATE_HOME": switch.folder})
    shell.read_until(prompt)
    for line in ("configure candidate", f"interface {PORT}", "shutdown", "commit confirmed 60"):
        shell.type(line)
        shell.read_until(prompt)
    cutter.left = 1
    shell.type("show clock")
    expect("was lost." in shell.read_until(prompt), "the connection is not lost")
    number = wait_until_left(pmsh, switch)[0]["session"]
    cutter.left = sys.maxsize
    shell.type("show clock")
    shown = " ".join(shell.read_until(prompt).split())
    waits = f"The commit waits in session {number}: type 'confirm session {number}', or it is rolled back in 60 seconds."
    expect(waits in shown and "Gone with the earlier one: the candidate." in shown, shown)
    shell.type(f"confirm session {number}")
    expect(f"Confirmed for {PORT}." in shell.read_until(prompt), "it is not confirmed")
    shell.type("end")
    shell.read_until(prompt)
    shell.type("exit")
    expect(os.waitstatus_to_exitcode(os.waitpid(shell.process, 0)[1]) in (0, 2), "the shell failed")
    expect(is_switched_off(pmsh, switch), "it does not stay")
    configure(pmsh, switch, f"interface {PORT}", "no shutdown")


def check_without_requests(pmsh, pmshd, file):
    step("a running clock: the switch rolls back although no shell asks")
    with daemon.Daemon(pmshd, "--switch", file, clock=False) as switch:
        shell = Shell(pmsh, switch)
        shell.process.stdin.write(f"configure candidate\ninterface {PORT}\nshutdown\ncommit confirmed 1\n")
        shell.process.stdin.flush()
        expect("Committed" in shell.process.stdout.readline(), "it is not committed")
        shell.kill()
        while f"was not confirmed in time: it was rolled back for {PORT}." not in switch.log():
            expect(switch.process.poll() is None, "the daemon ended")
        expect(not is_switched_off(pmsh, switch), "it is not rolled back")


def main():
    pmsh, pmshd, file = sys.argv[1:]
    with daemon.Daemon(pmshd, "--switch", file) as switch:
        before = switch.descriptors()
        check_living_shell(pmsh, switch)
        check_left_commits(pmsh, switch)
        check_held_interfaces(pmsh, switch)
        check_reconnection(pmsh, switch)
        check_killed_at_each_packet(pmsh, switch)
        while switch.descriptors() > before:
            expect(switch.is_serving(), "it does not serve")
    check_without_requests(pmsh, pmshd, file)


if __name__ == "__main__":
    main()
