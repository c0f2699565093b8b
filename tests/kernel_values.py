#!/usr/bin/python3
"""Compares records of kernel devices with what ip(8) and ethtool(8) report of them: kernel_values.py PMSH

In a network namespace of its own, with a veth pair and, where the kernel has them, other kinds of devices. Every value of a
record is what the kernel reports, or follows from it, or is null; a null that the kernel could report has a reason.
"""

import json
import os
import re
import subprocess
import sys
import tempfile

DISPLAYS = ("", "counters", "counters detailed all", "counters brief", "flowcontrol", "capabilities", "status")

# Values that follow from the kind of an interface or from what a host is, not from a counter or a setting of the device.
OF_THE_SHELL = {
    "interface", "absent", "hardware", "encapsulation", "trunk_encapsulation", "channel_capable", "cos_rewrite", "tos_rewrite",
    "span", "udld", "link_debounce", "link_debounce_time", "mdix", "state_reason", "load_interval_seconds",
    "reliability_per_255", "vlan", "last_counters_cleared", "bandwidth_kbps", "encapsulation_vlan", "media_type",
    "broadcast_suppression", "members", "bound_interface", "model"}


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


class Namespace:
    """A namespace with devices; those that the kernel does not have are missing."""

    def __init__(self):
        self.name = f"pmclivalues{os.getpid()}"
        if run("ip", "netns", "add", self.name).returncode != 0:
            skip("network namespaces are not allowed here")

    def ip(self, *words):
        return run("ip", "-n", self.name, *words)

    def run(self, *command):
        return run("ip", "netns", "exec", self.name, *command)

    def json(self, *words):
        return json.loads(self.ip("-j", *words).stdout or "[]")


def skip(reason):
    print(f"skipped: everything: {reason}")
    sys.exit(77)


def make_devices(space):
    if space.ip("link", "add", "left", "type", "veth", "peer", "name", "right").returncode != 0:
        skip("veth devices are not allowed here")
    for line in ("link set left mtu 4000 alias lab", "addr add 198.51.100.1/24 dev left", "link set left up",
                 "link set right up", "link set lo up", "link add idle type veth peer name other",
                 "neigh replace 198.51.100.2 lladdr 02:00:00:00:00:02 dev left", "link add dummy7 type dummy",
                 "link add link left name left.100 type vlan id 100", "link add br7 type bridge"):
        space.ip(*line.split())
    space.run("bash", "-c", "for i in {1..50}; do echo $i >/dev/udp/198.51.100.2/9; done")


def type_of(link):
    """What a device is, by the kernel's kind and its data."""
    info = link.get("linkinfo", {})
    kind = info.get("info_kind") or ("loopback" if "LOOPBACK" in link["flags"] else "physical")
    number = f" {info['info_data']['id']}" if kind in ("vlan", "vxlan") else ""
    return kind + number + (f" of {below(link)}" if below(link) else "")


def below(link):
    """The device below; that of a veth device is the other end."""
    return None if link.get("linkinfo", {}).get("info_kind") == "veth" else link.get("link")


def expected(link, address, speed, pause):
    """What the kernel reports, by the keys of records."""
    rx, tx = link["stats64"]["rx"], link["stats64"]["tx"]
    mac = link.get("address", "00:00:00:00:00:00").replace(":", "")
    is_up = "UP" in link["flags"] and (link["operstate"] in ("UP", "UNKNOWN")) and "LOWER_UP" in link["flags"]
    return {
        "device": link["ifname"], "ifindex": link["ifindex"], "description": link.get("ifalias"),
        "device_type": type_of(link), "parent_device": below(link), "master_device": link.get("master"),
        "address": ".".join((mac[0:4], mac[4:8], mac[8:12])), "burned_in_address": ".".join((mac[0:4], mac[4:8], mac[8:12])),
        "ip_address": address.get("local"), "prefix_length_bits": address.get("prefixlen"),
        "state": "up" if is_up else "down", "mtu_bytes": link["mtu"], "speed_mbps": speed[0], "duplex": speed[1],
        "input_packets": rx["packets"], "input_bytes": rx["bytes"], "input_errors": rx["errors"],
        "input_discards": rx["dropped"], "input_multicast_packets": rx["multicast"],
        "input_crc_errors": rx["crc_errors"], "input_fifo_errors": rx["fifo_errors"], "input_compressed": 0,
        "output_packets": tx["packets"], "output_bytes": tx["bytes"], "output_errors": tx["errors"],
        "output_discards": tx["dropped"], "output_fifo_errors": tx["fifo_errors"], "collisions": tx["collisions"],
        "carrier_errors": tx["carrier_errors"], "lost_carrier_errors": tx["carrier_errors"],
        "input_pause_frames": pause.get("statistics", {}).get("rx_pause_frames"),
        "output_pause_frames": pause.get("statistics", {}).get("tx_pause_frames"),
    }


def ethtool(space, device):
    said = space.run("ethtool", device).stdout
    speed = re.search(r"Speed: (\d+)Mb/s", said)
    duplex = re.search(r"Duplex: (Full|Half)", said)
    pause = space.run("ethtool", "--json", "-I", "-a", device).stdout
    pause = json.loads(pause) if pause.strip().startswith("[") else []
    return ((int(speed[1]) if speed else None, duplex[1].lower() if duplex else None), pause[0] if pause and pause[0] else {})


def compare(device, display, record, wanted, has_pause):
    faults = []
    for key, value in record.items():
        what = f"{device}, show interface {display}: {key} is {value!r}"
        if key in OF_THE_SHELL:
            continue
        if key in wanted:
            if value is not None and value != wanted[key]:
                faults.append(f"{what}, and {wanted[key]!r} of the kernel")
            is_of_kind = record["interface"].startswith("loopback") and key == "lost_carrier_errors"
            if value is None and wanted[key] is not None and key not in record["absent"] and not is_of_kind:
                faults.append(f"{what} without a reason, and {wanted[key]!r} of the kernel")
        elif "flow_control" in key and has_pause:
            continue
        elif value is not None:
            faults.append(f"{what}, which the kernel does not report")
    return faults


def look(space, pmsh, device, interface):
    """The faults of a device's records, from readings between which the kernel counted nothing."""
    for _ in range(20):
        link, = space.json("-s", "-s", "-d", "link", "show", device)
        lines = [f"show interface {interface} {display} | json" for display in DISPLAYS]
        said = space.run(pmsh, "--kernel", "--session-counters", *(word for line in lines for word in ("-c", line))).stdout
        again, = space.json("-s", "-s", "-d", "link", "show", device)
        if link["stats64"] == again["stats64"]:
            break
    addresses = [it for entry in space.json("addr", "show", device) for it in entry.get("addr_info", [])]
    first = addresses[0] if addresses and addresses[0]["family"] == "inet" else {}
    speed, pause = ethtool(space, device)
    wanted = expected(link, first, speed, pause)
    faults, decoder, at = [], json.JSONDecoder(), 0
    for display in DISPLAYS:
        document, at = decoder.raw_decode(said, said.index("{", at))
        for record in document["interfaces"]:
            faults += compare(device, display, record, wanted, bool(pause))
            if not compare(device, display, {**record, "device": "another", "delay_usec": 10}, wanted, bool(pause)):
                faults.append(f"{device}, show interface {display}: values that are wrong are not noticed")
            if display == "" and [key for key in ("device", "state", "mtu_bytes", "input_bytes", "output_packets")
                                  if record[key] is None and key not in record["absent"]]:
                faults.append(f"{device}: the detailed record lacks what the kernel reports: {record}")
    return faults


def main():
    pmsh, = sys.argv[1:]
    space = Namespace()
    state = tempfile.TemporaryDirectory()
    faults, count = [], 0
    try:
        make_devices(space)
        os.environ["XDG_STATE_HOME"] = state.name
        for row in space.run(pmsh, "--kernel", "-c", "show kernel-map").stdout.splitlines():
            device, *interface = row.split()[:3]
            faults += look(space, pmsh, device, " ".join(interface))
            count += 1
    finally:
        run("ip", "netns", "del", space.name)
    for fault in faults[:40]:
        print(fault)
    if faults or count < 5:
        sys.exit(f"{len(faults)} faults of {count} devices")
    print(f"the records of {count} devices are what the kernel reports")


if __name__ == "__main__":
    main()
