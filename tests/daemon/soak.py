#!/usr/bin/python3
"""Shells that read, set and clear one switch at the same time: soak.py [--rounds N] PMSH PMSHD SWITCH

64 shells display interfaces whose settings 8 others change by commits, and 2 clear counters. No display mixes the
settings before and after a commit, no clear is lost, and the memory of the daemon stays flat. --rounds for a long run.
"""

import argparse
import json
import pathlib
import random
import sys
import threading

import daemon
from daemon import Shell, Watch, expect, step

READERS, SETTERS, CLEARERS = 64, 8, 2
MOST_GROWTH_KIB = 8 * 1024  # between the middle and the end: what the allocator keeps
FIRST_CLEARED = 21          # the port of the first shell that clears

# Two states of a port: what a commit sets, and what the displays of a port show of it.
SETTINGS = (("description first", "switchport access vlan 10", "switchport mtu 1500"),
            ("description second", "switchport access vlan 20", "switchport mtu 9000"))
DISPLAYS = {
    "show interface {} status | json": lambda it: (it["description"], it["vlan"]["access"]),
    "show interface {} overview | json": lambda it: (it["description"], it["vlan"]["access"]),
    "show interface {} | json": lambda it: (it["description"], it["mtu_bytes"]),
    "show interface {} brief | json": lambda it: (it["description"], it["mtu_bytes"]),
}
STATES = (("first", 10), ("second", 20), ("first", 1500), ("second", 9000))


def port(number):
    return f"ethernet 1/{number}"


class Faults:
    """What the shells found, by kind; the first of each is kept."""

    def __init__(self):
        self.lock = threading.Lock()
        self.count = {}
        self.first = {}

    def add(self, kind, text):
        with self.lock:
            self.count[kind] = self.count.get(kind, 0) + 1
            self.first.setdefault(kind, text)


def read(shell, random_of, faults):
    for display, state_of in DISPLAYS.items():
        line = display.format(port(random_of.randint(1, SETTERS)))
        shown = state_of(json.loads(shell.run(line))["interfaces"][0])
        if shown not in STATES:
            faults.add("displays of mixed states", f"{line}: {shown}")


def commit(pmsh, switch, number, settings, faults):
    """By a shell of its own: what can be undone ends with it."""
    code, out, error = daemon.run(pmsh, switch.socket, "configure candidate", f"interface {port(number)}", *settings, "commit")
    if (code, out) != (0, f"Committed for {port(number)}.\n"):
        faults.add("refused commits", f"{code}: {out}{error}")


def commit_both(pmsh, switch, number, faults):
    for settings in reversed(SETTINGS):
        commit(pmsh, switch, number, settings, faults)


def clear(shell, number, faults):
    """The display after a clear has its time, or a later one: the clock advances before each."""
    display = f"show interface {port(number)} | json"
    before = json.loads(shell.run("clock advance 10", display))
    text = shell.run(f"clear counters interface {port(number)}", display)
    cleared = json.loads(text)["interfaces"][0]["last_counters_cleared"]
    if cleared is None or cleared < before["time"]:
        faults.add("lost clears", text)


def run_rounds(rounds, jobs, faults):
    """Each job, a function with its arguments, in a thread of its own."""
    def work(job, *arguments):
        try:
            for _ in range(rounds):
                job(*arguments, faults)
        except BaseException as error:  # a thread would end without a word
            faults.add("failed shells", repr(error))

    threads = [threading.Thread(target=work, args=job) for job in jobs]
    for it in threads:
        it.start()
    for it in threads:
        it.join()


class ClearedPorts:
    """Counts the clears that the switch reports, until a change with this description."""

    LAST = "everything is done"

    def __init__(self, watch):
        self.watch, self.count = watch, 0
        self.thread = threading.Thread(target=self.follow)
        self.thread.start()

    def follow(self):
        for line in self.watch.process.stdout:
            if self.LAST in line:
                return
            self.count += line.split()[4:5] == ["cleared"]


def memory_kib(switch):
    status = pathlib.Path(f"/proc/{switch.process.pid}/status").read_text(encoding="ascii")
    return int(next(line for line in status.splitlines() if line.startswith("VmRSS")).split()[1])


def soak(pmsh, switch, rounds):
    faults = Faults()
    shells = [Shell(pmsh, switch) for _ in range(READERS + CLEARERS)]
    jobs = [(read, shell, random.Random(place)) for place, shell in enumerate(shells[:READERS])]
    jobs += [(clear, shell, number) for number, shell in enumerate(shells[READERS:], FIRST_CLEARED)]
    jobs += [(commit_both, pmsh, switch, number) for number in range(1, SETTERS + 1)]
    for number in range(1, SETTERS + 1):
        commit(pmsh, switch, number, SETTINGS[0], faults)
    watch = Watch(pmsh, switch)
    cleared = ClearedPorts(watch)
    step(f"{READERS} shells read, {SETTERS} set and {CLEARERS} clear: {rounds} rounds")
    run_rounds(rounds - rounds // 2, jobs, faults)
    middle = memory_kib(switch)
    run_rounds(rounds // 2, jobs, faults)
    end = memory_kib(switch)
    daemon.run(pmsh, switch.socket, "configure", "interface mgmt0", f"description {ClearedPorts.LAST}")
    cleared.thread.join()
    watch.interrupt()
    print(f"{READERS * rounds * len(DISPLAYS)} displays, {SETTERS * rounds * 2} commits, {CLEARERS * rounds} clears; the daemon has {middle} KiB "
          f"in the middle and {end} KiB at the end", flush=True)
    for kind, count in faults.count.items():
        print(f"{count} {kind}, such as: {faults.first[kind]}", flush=True)
    for shell in shells:
        code, shown = shell.end()
        expect(code == 0, f"a shell ends with {code}: {shown}")
    expect(not faults.count, "the answers are wrong")
    expect(cleared.count == CLEARERS * rounds, f"{cleared.count} clears are reported")
    expect(end - middle <= MOST_GROWTH_KIB, f"the memory grows by {end - middle} KiB")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--rounds", type=int, default=4)
    parser.add_argument("programs", nargs=3)
    options = parser.parse_args()
    pmsh, pmshd, file = options.programs
    # Sanitizers keep released memory for a while: little of it, so that the rest is seen.
    with daemon.Daemon(pmshd, "--switch", file, environment={"ASAN_OPTIONS": "quarantine_size_mb=1"}) as switch:
        soak(pmsh, switch, options.rounds)


if __name__ == "__main__":
    main()
