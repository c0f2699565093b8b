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


# ---- Neighbors and MAC addresses

def dotted(mac):
    digits = mac.replace(":", "")
    return ".".join((digits[0:4], digits[4:8], digits[8:12]))


def age_is_near(shown, reported, key):
    return shown is not None and reported.get(key) is not None and abs(shown - reported[key]) <= 2


def check_neighbors(space):
    space.make("neigh replace 198.51.100.9 lladdr 02:00:00:00:00:09 dev left nud permanent",
               "neigh replace 198.51.100.10 lladdr 02:00:00:00:00:10 dev left nud reachable",
               "neigh replace 198.51.100.11 lladdr 02:00:00:00:00:11 dev left nud stale extern_learn",
               "neigh replace 198.51.100.12 dev left nud failed",
               "neigh replace 203.0.113.9 lladdr 02:00:00:00:00:19 dev right nud stale",
               "neigh replace 2001:db8::9 lladdr 02:00:00:00:00:29 dev left nud permanent router",
               "neigh replace 2001:db8::10 lladdr 02:00:00:00:00:30 dev right nud stale")
    faults = []
    for family, line in (("-4", "show ip arp"), ("-6", "show ipv6 neighbors")):
        reported = space.json("ip", "-s", "-j", family, "neigh")
        records, found = space.records(line, "neighbors")
        ages = {(it["dev"], it["dst"]): it for it in reported}
        for record in records:
            known = ages.get((record["device"], record["ip_address"]), {})
            if not age_is_near(record["age_seconds"], known, "confirmed"):
                found.append(f"{line}: the age of {record} is not that of {known}")
        faults += found + compare(
            line, [{key: record[key] for key in ("ip_address", "device", "mac_address", "neighbor_state")} |
                   {"flags": sorted(record["neighbor_flags"])} for record in records],
            [{"ip_address": it["dst"], "device": it["dev"], "mac_address": dotted(it["lladdr"]) if "lladdr" in it else None,
              "neighbor_state": it["state"][0].lower(), "flags": sorted(flag for flag in ("router", "extern_learn") if flag in it)}
             for it in reported], lambda it: (it["device"], it["ip_address"]))
    interface = space.show("show kernel-map").stdout
    interface = " ".join(next(row.split()[1:3] for row in interface.splitlines() if row.startswith("right ")))
    records, found = space.records(f"show ip arp {interface}", "neighbors")
    if found or [record["device"] for record in records] != ["right"]:
        faults.append(f"show ip arp {interface}: {records} {found}")
    return faults


def check_bridge(space):
    bridge = "link add br7 type bridge stp_state 1 forward_delay 200"
    has_vlans = space.make(f"{bridge} vlan_filtering 1")
    if not has_vlans and not space.make(bridge):
        print("skipped: bridges: this kernel has none")
        return []
    space.make("link set br7 up", "link add one type veth peer name two", "link set one master br7", "link set two master br7",
               "link set one up", "link set two up")
    has_tunnel = space.make("link add vx type vxlan id 42 dstport 4789 dev left", "link set vx master br7", "link set vx up")
    vlan = ("vlan", "1") if has_vlans else ()
    space.run("bridge", "fdb", "add", "02:00:00:00:00:41", "dev", "one", "master", "static", *vlan)
    space.run("bridge", "fdb", "add", "02:00:00:00:00:42", "dev", "two", "master", "dynamic", *vlan)
    space.run("bridge", "fdb", "append", "02:00:00:00:00:43", "dev", "vx", "dst", "198.51.100.77", "self", "permanent")
    faults = []
    words = {"permanent": "permanent", "static": "static"}
    for _ in range(20):
        reported = space.json("bridge", "-s", "-j", "fdb")
        records, found = space.records("show mac address-table", "mac_addresses")
        keys = ("device", "mac_address", "vlan_id", "bridge", "entry_type", "remote_address")
        found += compare(
            "show mac address-table",
            [{key: record[key] for key in keys} | {"flags": sorted(record["entry_flags"])} for record in records],
            [{"device": it["ifname"], "mac_address": dotted(it["mac"]), "vlan_id": it.get("vlan"), "bridge": it.get("master"),
              "entry_type": words.get(it.get("state"), "dynamic"), "remote_address": it.get("dst"), "flags": sorted(it["flags"])}
             for it in reported], str)
        if not found:
            break
    faults += found
    lines = space.show("show mac address-table vlan 1").stdout.splitlines()
    if (len(lines) < 3 or not all(line.split()[0] == "1" for line in lines[1:])) if has_vlans else len(lines) != 1:
        faults.append(f"show mac address-table vlan 1: {lines}")
    for written in ("0200.0000.0041", "02:00:00:00:00:41", "2-0-0-0-0-41", "020000000041"):
        line = f"show mac address-table address {written}"
        records, found = space.records(line, "mac_addresses")
        faults += found
        if {(it["device"], it["mac_address"]) for it in records} != {("one", "0200.0000.0041")}:
            faults.append(f"{line}: {records}")

    for _ in range(20):  # ports change their state meanwhile
        ports = [it for it in space.json("ip", "-d", "-j", "link") if it.get("linkinfo", {}).get("info_slave_kind") == "bridge"]
        records, found = space.records("show spanning-tree", "ports")
        keys = ("device", "bridge", "spanning_tree_state", "path_cost", "port_priority", "port_id", "root_bridge",
                "designated_bridge", "spanning_tree_role")

        def role(data):
            if data["state"] == "disabled":
                return "disabled"
            return "designated" if data["designated_port"] == int(data["id"], 16) else "alternate"

        def bridge_id(text):
            priority, mac = text.split(".", 1)
            return priority + "." + dotted("".join(part.rjust(2, "0") for part in mac.split(":")))

        found += compare(
            "show spanning-tree", [{key: record[key] for key in keys} for record in records],
            [{"device": it["ifname"], "bridge": it["master"], "spanning_tree_state": data["state"], "path_cost": data["cost"],
              "port_priority": data["priority"], "port_id": int(data["id"], 16), "root_bridge": bridge_id(data["root_id"]),
              "designated_bridge": bridge_id(data["bridge_id"]), "spanning_tree_role": role(data)}
             for it in ports for data in [it["linkinfo"]["info_slave_data"]]], lambda it: it["device"])
        if not found:
            break
    faults += found
    space.make("link set br7 type bridge stp_state 0")
    if {record["spanning_tree_role"] for record in space.records("show spanning-tree", "ports")[0]} != {None}:
        faults.append("show spanning-tree: roles without spanning tree")
    return faults


def check_vrf(space):
    if not space.make("link add blue type vrf table 10", "link set blue up", "link add inside type veth peer name outside",
                      "link set inside master blue"):
        print("skipped: VRFs: this kernel has none")
        return []
    records, faults = space.records("show interface overview", "interfaces")
    vrfs = {record["device"]: record["vrf"] for record in records if record["device"] in ("inside", "outside")}
    if vrfs != {"inside": "blue", "outside": None}:
        faults.append(f"VRFs are {vrfs}")
    return faults


# ---- Drivers

def lines_of(text):
    """The lines of a text of ethtool(8) as a dictionary."""
    return {key: value.strip().removeprefix("N/A") for line in text.splitlines() for key, _, value in [line.partition(":")]}


def amounts_of(text):
    """The most and the current amounts of 'ethtool -l' and 'ethtool -g', as "rx" and "rx-max"; those that are not numbers lack."""
    amounts, suffix = {}, ""
    for line in text.splitlines():
        key, _, value = line.partition(":")
        if key == "Pre-set maximums":
            suffix = "-max"
        elif key == "Current hardware settings":
            suffix = ""
        elif value.strip().isdigit():
            amounts[key.strip().lower() + suffix] = int(value)
    return amounts


def check_drivers(space):
    faults = []
    if run("ethtool", "--version").returncode != 0:
        print("skipped: drivers: ethtool(8) is missing")
        return []
    records, found = space.records("show interface hardware", "interfaces")
    faults += found
    by_name = {record["device"]: record for record in records}
    links = [link["ifname"] for link in space.json("ip", "-j", "link")]
    if sorted(by_name) != sorted(links):
        faults.append(f"show interface hardware: {sorted(by_name)}, and {sorted(links)} are reported")
    features = 0
    for device, record in by_name.items():
        driver = lines_of(space.run("ethtool", "-i", device).stdout)
        channels = amounts_of(space.run("ethtool", "-l", device).stdout)
        rings = amounts_of(space.run("ethtool", "-g", device).stdout)
        offloads = (space.json("ethtool", "--json", "-k", device) or [{}])[0]
        features += len(record["offloads"])
        reported = {
            "driver": driver.get("driver"), "bus": driver.get("bus-info"), "combined_queues": channels.get("combined"),
            "rx_queues": channels.get("rx"), "tx_queues": channels.get("tx"),
            "max_rx_queues": channels.get("rx-max"), "max_tx_queues": channels.get("tx-max"),
            "max_combined_queues": channels.get("combined-max"), "rx_ring_entries": rings.get("rx"),
            "max_rx_ring_entries": rings.get("rx-max"), "permanent_address": None}
        faults += [f"show interface hardware: {key} of {device} is {record[key]}, and {value or None} reported"
                   for key, value in reported.items() if record[key] != (value if value == 0 else value or None)]
        # ethtool(8) has groups of offloads beside the features themselves, under names of its own.
        active = {name for name, state in offloads.items() if isinstance(state, dict) and state["active"]}
        known = set(offloads)
        faults += [f"show interface hardware: {name} of {device} is not active" for name in record["offloads"]
                   if name in known and name not in active]
        own_names = {"rx-checksumming", "tx-checksumming", "scatter-gather", "tcp-segmentation-offload", "rx-vlan-offload",
                     "generic-segmentation-offload", "generic-receive-offload", "large-receive-offload", "tx-vlan-offload",
                     "receive-hashing", "ntuple-filters", "udp-fragmentation-offload"}
        faults += [f"show interface hardware: {name} of {device} is active and not shown" for name in active - own_names
                   if name not in record["offloads"]]
    if features == 0:
        faults.append("show interface hardware: no device has a feature")

    counted = 0
    records, found = space.records("show interface counters driver", "interfaces")
    faults += found
    for record in records:
        said = space.run("ethtool", "-S", record["device"])
        reported = {name.strip(): int(value) for line in said.stdout.splitlines()[1:] for name, value in [line.rsplit(":", 1)]}
        counted += len(reported)
        shown = record["driver_counters"] or {}
        if list(shown) != list(reported) or any(shown[name] > reported[name] for name in shown):
            faults.append(f"show interface counters driver: {record}, and {reported} are reported")
    if counted == 0:
        faults.append("show interface counters driver: nothing to compare")
    return faults


CHECKS = (check_addresses, check_neighbors, check_bridge, check_vrf, check_drivers)


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
