#!/usr/bin/python3
"""Events of the kernel in a network namespace of its own: kernel_events.py PMSH

Devices, addresses and neighbors are changed by ip(8) while "watch events" runs: each change has its line, with the old and the new
value. There are no limits of time: a line that does not come leaves the test to that of the runner.
"""

import json
import os
import signal
import subprocess
import sys
import tempfile
import threading


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


def skip(reason):
    print(f"skipped: everything: {reason}")
    sys.exit(77)


class Watch:
    """A running "watch events"."""

    def __init__(self, space, line):
        self.process = subprocess.Popen(["ip", "netns", "exec", space.name, space.pmsh, "--kernel", "-c", line],
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def lines(self):
        """The next lines, without their newline."""
        for line in self.process.stdout:
            yield line.rstrip("\n")

    def end(self):
        """Interrupts it. Returns its exit code and what it reported."""
        self.process.send_signal(signal.SIGINT)
        _, errors = self.process.communicate()
        return self.process.returncode, errors


class Namespace:
    def __init__(self, pmsh):
        self.pmsh = pmsh
        self.name = f"pmclievents{os.getpid()}"
        if run("ip", "netns", "add", self.name).returncode != 0:
            skip("network namespaces are not allowed here")

    def ip(self, line):
        done = run("ip", "-n", self.name, *line.split())
        if done.returncode != 0:
            sys.exit(f"ip {line}: {done.stderr}")

    def show(self, line):
        return run("ip", "netns", "exec", self.name, self.pmsh, "--kernel", "-c", line)


def wait_for_titles(watch):
    """From the titles on, events come."""
    return next(watch.lines(), "").split()


def events(watch):
    for line in watch.lines():
        document = json.loads(line)
        yield from document["events"]


def begun_events(space, line):
    """A watch in documents that has begun, and its events after those that showed that."""
    watch = Watch(space, line)
    has_begun = threading.Event()

    def toggle():
        count = 0
        while not has_begun.wait(0.05):
            count += 1
            space.ip(f"link set mark mtu {1400 + count % 2}")
        space.ip("link set mark mtu 1300")

    toggling = threading.Thread(target=toggle)
    toggling.start()
    stream = events(watch)
    next(stream, None)
    has_begun.set()
    toggling.join()
    for event in stream:
        if event["device"] == "mark" and event["new_value"] == "1300":
            break
    return watch, stream


KEYS = ("event_kind", "device", "change", "old_value", "new_value")


def tuple_of(event):
    return tuple(event[key] for key in KEYS)


# What ip(8) is asked, and events that follow in this order, perhaps among others.
STEPS = [
    ("link add left type veth peer name right",
     [("link", "left", "added", None, "veth")]),
    ("link set left up", [("link", "left", "admin_state", "down", "up")]),
    ("link set right up", [("link", "left", "oper_state", ..., "up")]),
    ("link set left mtu 1400", [("link", "left", "mtu", "1500", "1400")]),
    ("link set left alias Uplink", [("link", "left", "description", None, "Uplink")]),
    ("link set left address 02:00:00:00:00:07", [("link", "left", "mac", ..., "0200.0000.0007")]),
    ("addr add 192.0.2.1/24 dev left", [("address", "left", "added", None, "192.0.2.1/24")]),
    ("addr add 2001:db8::1/64 dev left nodad", [("address", "left", "added", None, "2001:db8::1/64")]),
    ("neigh add 192.0.2.9 lladdr 02:00:00:00:00:09 dev left nud permanent",
     [("neighbor", "left", "added", None, "permanent")]),
    ("neigh replace 192.0.2.9 lladdr 02:00:00:00:00:0a dev left nud stale",
     [("neighbor", "left", "state", "permanent", "stale"), ("neighbor", "left", "mac", "0200.0000.0009", "0200.0000.000a")]),
    ("neigh del 192.0.2.9 dev left", [("neighbor", "left", "removed", ..., None)]),
    ("addr del 192.0.2.1/24 dev left", [("address", "left", "removed", "192.0.2.1/24", None)]),
    ("link add br0 type bridge", [("link", "br0", "added", None, "bridge")]),
    ("link set left master br0", [("link", "left", "master", None, "br0")]),
    ("link set left nomaster", [("link", "left", "master", "br0", None)]),
    ("link set left down", [("link", "left", "admin_state", "up", "down")]),
    ("link set left name east", [("link", "east", "name", "left", "east")]),
    ("link del east", [("link", "east", "removed", "veth", None)]),
]


def is_same(expected, event):
    return all(one is ... or one == other for one, other in zip(expected, tuple_of(event)))


def check_documents(space):
    watch, stream = begun_events(space, "watch events | json")
    faults = []
    for line, expected_events in STEPS:
        space.ip(line)
        for expected in expected_events:
            passed = []
            for event in stream:
                passed.append(event)
                if is_same(expected, event):
                    break
            else:
                return [*faults, f"{line}: the stream ended without {expected}: {[tuple_of(it) for it in passed]}"]
            if not event["event_time"].endswith("Z") or not event["ifindex"]:
                faults.append(f"{line}: {event}")
            if expected[0] in ("address", "neighbor") and not event["ip_address"]:
                faults.append(f"{line}: no address in {event}")
    code, errors = watch.end()
    if (code, errors) != (130, ""):
        faults.append(f"watch events ended with {code} and {errors!r}")
    return faults


def check_lines(space):
    space.ip("link add left type veth peer name right")
    watch = Watch(space, "watch events interface left count 3")
    if wait_for_titles(watch) != ["Time", "Kind", "Interface", "Change"]:
        return ["no titles"]
    for line in ("right mtu 1300", "left mtu 1300", "left address 02:00:00:00:00:07", "left up"):
        space.ip(f"link set {line}")
    lines = list(watch.lines())
    faults = []
    if any(line[21:30].strip() != "link" or not line[32:].split("  ")[0].endswith(" (left)") for line in lines):
        faults.append(f"lines of left: {lines}")
    changes = [line[58:] for line in lines]
    if (len(changes), changes[0], changes[-1]) != (3, "mtu: 1500 -> 1300", "admin_state: down -> up"):
        faults.append(f"changes of left: {changes}")
    code, errors = watch.process.wait(), watch.process.stderr.read()
    if (code, errors) != (0, ""):
        faults.append(f"a watch of three events ended with {code} and {errors!r}")
    return faults


def check_range(space):
    done = space.show("watch events interface nothing7")
    return [] if done.returncode else [f"a range that does not exist: {done.stdout}{done.stderr}"]


class Session:
    """A shell that reads commands from a pipe."""

    def __init__(self, space):
        self.process = subprocess.Popen(["ip", "netns", "exec", space.name, space.pmsh, "--kernel"], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)

    def record(self, line):
        """The first record of a display."""
        self.process.stdin.write(f"{line} | json\n")
        self.process.stdin.flush()
        text = ""
        while '"exit_code"' not in text:
            text += self.process.stdout.readline()
        return json.loads(text)["interfaces"][0]

    def end(self):
        self.process.stdin.close()
        self.process.wait()


def check_link_changes(space):
    """The number is that of the kernel; the time is known of changes that the session saw."""

    def reported():
        name = "/sys/class/net/left/carrier_changes"
        return int(run("ip", "netns", "exec", space.name, "cat", name).stdout)

    session = Session(space)
    line = "show interface left overview"
    before, count = session.record(line), reported()
    space.ip("link set right up")
    after, later = session.record(line), reported()
    session.end()
    faults = []
    if (before["link_changes"], before["last_link_flapped"]) != (count, None):
        faults.append(f"link changes before: {before}, the kernel reports {count}")
    if after["link_changes"] != later or later == count or not after["last_link_flapped"]:
        faults.append(f"link changes after: {after}, the kernel reports {later}")
    return faults

def check_rates(space):
    """Rates are known from the second reading on, and name the time that they cover."""
    keys = ("rate_interval_seconds", "input_packets_per_second", "output_packets_per_second")
    session = Session(space)
    line = "show interface left counters brief"
    first = session.record(line)
    faults = [f"one reading has rates: {first}"] if any(first[key] is not None for key in keys) else []
    later = first
    while later["rate_interval_seconds"] is None:
        later = session.record(line)
    session.end()
    if any(later[key] is None for key in keys) or later["rate_interval_seconds"] < 1:
        faults.append(f"two readings have no rates: {later}")
    text = space.show(line).stdout
    if not text.endswith("\nRates need two readings, a second or more apart: repeat the command.\n"):
        faults.append(f"one reading: {text}")
    return faults

def main():
    space = Namespace(sys.argv[1])
    try:
        with tempfile.TemporaryDirectory() as state:
            os.environ |= {"XDG_STATE_HOME": state, "LC_ALL": "C.UTF-8", "TZ": "UTC"}
            space.ip("link add mark type veth peer name other")
            faults = [fault for check in (check_documents, check_lines, check_range, check_link_changes, check_rates) for fault in check(space)]
    finally:
        run("ip", "netns", "del", space.name)
    for fault in faults:
        print(fault)
    sys.exit(1 if faults else 0)

if __name__ == "__main__":
    main()
