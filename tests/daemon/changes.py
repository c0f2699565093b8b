#!/usr/bin/python3
"""Who changes what on a shared switch, as "watch events" reports it: changes.py PMSH PMSHD SWITCH"""

import json
import os
import pty
import pwd
import select
import signal
import subprocess
import sys

import daemon
from daemon import Watch, expect, step

USER = pwd.getpwuid(os.getuid()).pw_name
MOST_UNREAD = 1024


def configure(pmsh, switch, *lines):
    code, _, error = daemon.run(pmsh, switch.socket, "configure", *lines)
    expect(code == 0, f"{lines}: {code}: {error}")


def check_text(pmsh, switch):
    step("settings, interfaces and counters, as text")
    watch = Watch(pmsh, switch)
    other = Watch(pmsh, switch, "watch events interface ethernet 1/2 count 1")
    configure(pmsh, switch, "interface ethernet 1/1", "description lab 1", "interface loopback 77", "end", "clear counters interface ethernet 1/1")
    configure(pmsh, switch, "no interface loopback 77")
    configure(pmsh, switch, "interface ethernet 1/2", "description other")
    desk = "Office floor 1, desk"
    for kind, subject, change in (("setting", "Ethernet1/1", f"description: {desk} 1 -> lab 1"), ("interface", "loopback77", "created"),
                                  ("counters", "Ethernet1/1", "cleared"), ("interface", "loopback77", "deleted"),
                                  ("setting", "Ethernet1/2", f"description: {desk} 2 -> other")):
        line = watch.process.stdout.readline()
        expect(line == f"2023-11-14 22:13:20  {kind:<9}  {subject:<24}  {change} by {USER}\n", line)
    out, error = other.process.communicate()
    expect(other.process.returncode == 0 and "Ethernet1/2" in out and len(out.splitlines()) == 1, out + error)
    watch.interrupt()


def check_documents(pmsh, switch):
    step("as documents")
    watch = subprocess.Popen([pmsh, "--connect", switch.socket, "-c", "watch events count 1 | json"], stdout=subprocess.PIPE, text=True)
    count = 0
    while not select.select([watch.stdout], [], [], 0)[0]:  # until it follows
        count += 1
        configure(pmsh, switch, "interface ethernet 1/3", f"description round {count}")
    out, _ = watch.communicate()
    event = json.loads(out)["events"][0]
    expect(event["event_kind"] == "setting" and event["interface"] == "Ethernet1/3", out)
    expect((event["change"], event["event_user"], event["event_terminal"]) == ("description", USER, None), out)
    expect(event["new_value"].startswith("round ") and event["event_time"] == "2023-11-14T22:13:20Z", out)


def check_terminal(pmsh, switch):
    step("the terminal of the session is named")
    watch = Watch(pmsh, switch)
    terminal, end = pty.openpty()
    name = os.ttyname(end).removeprefix("/dev/")
    shell = subprocess.Popen([pmsh, "--connect", switch.socket, "-c", "configure", "-c", "interface ethernet 1/4", "-c", "shutdown"],
                             stdin=end)
    line = watch.process.stdout.readline()
    expect(line.endswith(f"  Ethernet1/4               shutdown: no shutdown -> shutdown by {USER} on {name}\n"), line)
    expect(shell.wait() == 0, "the shell fails")
    os.close(terminal)
    os.close(end)
    watch.interrupt()


def check_commit(pmsh, switch):
    step("a commit and its rollback are changes of the session that made it")
    watch = Watch(pmsh, switch)
    daemon.run(pmsh, switch.socket, "configure candidate", "interface ethernet 1/5", "shutdown", "commit confirmed 60")
    expect("shutdown: no shutdown -> shutdown by " in watch.process.stdout.readline(), "the commit is not reported")
    daemon.run(pmsh, switch.socket, "clock advance 60")
    line = watch.process.stdout.readline()
    expect(line.startswith("2023-11-14 22:14:20  setting") and f"shutdown -> no shutdown by {USER}" in line, line)
    watch.interrupt()


def check_lost_changes(pmsh, switch):
    step("a reader that is too slow is told how many changes it lost")
    watch = Watch(pmsh, switch)
    watch.process.send_signal(signal.SIGSTOP)
    ports, rounds = 40, 30
    configure(pmsh, switch, f"interface ethernet 1/1-{ports}", *(f"description round {it}" for it in range(rounds)))
    configure(pmsh, switch, "interface mgmt0", "description the last")
    watch.process.send_signal(signal.SIGCONT)
    lines = 1
    while "the last" not in watch.process.stdout.readline():
        lines += 1
    expect(lines == MOST_UNREAD, f"{lines} changes are left")
    watch.process.send_signal(signal.SIGINT)
    _, error = watch.process.communicate()
    lost = ports * rounds + 1 - MOST_UNREAD
    expect(error == f"pmsh: {lost} changes by sessions came faster than they were read: they were lost.\n", error)


def main():
    pmsh, pmshd, file = sys.argv[1:]
    with daemon.Daemon(pmshd, "--switch", file) as switch:
        before = switch.descriptors()
        check_text(pmsh, switch)
        check_documents(pmsh, switch)
        check_terminal(pmsh, switch)
        check_commit(pmsh, switch)
        check_lost_changes(pmsh, switch)
        while switch.descriptors() > before:
            expect(switch.is_serving(), "it does not serve")


if __name__ == "__main__":
    main()
