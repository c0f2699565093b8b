#!/usr/bin/python3
"""Compares tables of the kernel with what ip(8), bridge(8) and ethtool(8) report: kernel_tables.py PMSH

In a network namespace of its own. Each row of a table is one that the kernel reports, with the same values, and none is missing.
"""

import json
import os
import subprocess
import sys
import tempfile


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


def skip(reason):
    print(f"skipped: everything: {reason}")
    sys.exit(77)


class Namespace:
    def __init__(self, pmsh):
        self.pmsh = pmsh
        self.name = f"pmclitables{os.getpid()}"
        if run("ip", "netns", "add", self.name).returncode != 0:
            skip("network namespaces are not allowed here")

    def run(self, *command):
        return run("ip", "netns", "exec", self.name, *command)

    def make(self, *lines):
        """Runs lines of ip(8); returns whether all of them succeeded."""
        return all([run("ip", "-n", self.name, *line.split()).returncode == 0 for line in lines])

    def json(self, *words):
        return json.loads(self.run(*words).stdout or "[]")

    def show(self, line):
        return self.run(self.pmsh, "--kernel", "-c", line)

    def records(self, line, member):
        """The records of a display, and what is wrong with its document."""
        done = self.show(f"{line} | json")
        document = json.loads(done.stdout)
        return document[member], [f"{line}: {done.stderr}{document['messages']}"] if done.returncode or done.stderr else []


def compare(what, shown, reported, key):
    """The faults of records: each must be a dictionary that is reported. Both lists are of the same order of `key`."""
    shown, reported = sorted(shown, key=key), sorted(reported, key=key)
    faults = [f"{what}: {one} is shown, and {other} reported" for one, other in zip(shown, reported) if one != other]
    if len(shown) != len(reported):
        faults.append(f"{what}: {len(shown)} rows are shown, and {len(reported)} reported")
    if not reported:
        faults.append(f"{what}: nothing to compare")
    return faults


# ---- Addresses

LIFETIME_FOR_EVER = 4294967295
FLAGS = ("tentative", "dadfailed", "deprecated", "optimistic", "nodad", "home", "mngtmpaddr", "noprefixroute", "autojoin",
         "stable-privacy", "temporary", "secondary")


def reported_address(link, address):
    flags = [flag for flag in FLAGS if address.get(flag)]
    if not address.get("dynamic"):
        flags.append("permanent")
    if address["family"] == "inet" and "secondary" not in flags:
        flags.append("primary")

    def lifetime(key):
        return None if address[key] == LIFETIME_FOR_EVER else address[key]

    return {"device": link["ifname"], "ifindex": link["ifindex"], "mtu_bytes": link["mtu"], "ip_address": address["local"],
            "prefix_length_bits": address["prefixlen"], "peer_address": address.get("address"),
            "address_scope": address["scope"], "address_label": address.get("label"), "address_flags": sorted(flags),
            "valid": lifetime("valid_life_time"), "preferred": lifetime("preferred_life_time")}


def shown_address(record):
    made = {key: record[key] for key in ("device", "ifindex", "mtu_bytes", "ip_address", "prefix_length_bits", "peer_address",
                                         "address_scope", "address_label")}
    return {**made, "address_flags": sorted(record["address_flags"]), "valid": record["valid_lifetime_seconds"],
            "preferred": record["preferred_lifetime_seconds"]}


def is_near(one, other):
    """Whether two rows differ only by a second of their lifetimes."""
    near = all((one[key] is None) == (other[key] is None) and abs((one[key] or 0) - (other[key] or 0)) <= 2
               for key in ("valid", "preferred"))
    return near and {**one, "valid": 0, "preferred": 0} == {**other, "valid": 0, "preferred": 0}


def check_addresses(space):
    if not space.make("link add left type veth peer name right", "link set left mtu 4000", "link set lo up",
                      "addr add 198.51.100.1/24 dev left", "addr add 198.51.100.2/24 dev left label left:2",
                      "addr add 192.0.2.1 peer 192.0.2.2/32 dev left",
                      "addr add 203.0.113.1/24 dev right valid_lft 3600 preferred_lft 1800",
                      "-6 addr add 2001:db8::1/64 dev left nodad", "-6 addr add 2001:db8::2/64 dev left",
                      "-6 addr add 2001:db8::3/64 dev right valid_lft 7200 preferred_lft 0",
                      "link set left up", "link set right up"):
        skip("veth devices are not allowed here")
    faults = []
    for family, line in (("inet", "show ip interface"), ("inet6", "show ipv6 interface brief")):
        for _ in range(20):  # duplicate address detection ends meanwhile
            before = space.run("ip", "-j", "addr").stdout
            records, found = space.records(line, "addresses")
            reported = [reported_address(link, address) for link in json.loads(before) for address in link["addr_info"]
                        if address["family"] == family]
            shown = [shown_address(record) for record in records]
            reported = [next((one for one in shown if is_near(one, it)), it) for it in reported]
            found += compare(line, shown, reported, lambda it: (it["ifindex"], it["ip_address"]))
            if not found:
                break
        faults += found
    text = space.show("show ip interface").stdout
    for expected in ("  Address 192.0.2.1/32, peer 192.0.2.2, scope global, flags primary,permanent, label left\n",
                     ", flags secondary,permanent, label left:2\n    valid forever, preferred forever\n"):
        if expected not in text:
            faults.append(f"show ip interface: no {expected!r} in {text}")
    return faults


CHECKS = (check_addresses,)


def main():
    pmsh, = sys.argv[1:]
    space = Namespace(pmsh)
    faults = []
    try:
        with tempfile.TemporaryDirectory() as state:
            os.environ["XDG_STATE_HOME"] = state
            for check in CHECKS:
                faults += check(space)
    finally:
        run("ip", "netns", "del", space.name)
    for fault in faults[:40]:
        print(fault)
    if faults:
        sys.exit(f"{len(faults)} faults")
    print(f"{len(CHECKS)} tables are what the kernel reports")


if __name__ == "__main__":
    main()
