#!/usr/bin/python3
"""Compares "show lldp neighbors" with what lldpcli(8) reports: kernel_lldp.py PMSH

Two lldpd, each with a network namespace and /run of its own, hear each other through a veth pair; a second pair carries frames
that no lldpd sends. Each value is that of lldpcli; texts of neighbors reach the terminal as printable characters only.
"""

import json
import os
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import time

SOCKET = "/run/lldpd.socket"
NOT_RUNNING = "pmsh: the LLDP neighbors cannot be read: lldpd is not running. Start it with 'systemctl start lldpd'.\n"
DAMAGED = ("pmsh: the LLDP neighbors cannot be read: the answer of lldpd is damaged. "
           "lldpd and liblldpctl.so.4 must have the same version.\n")
MISSING = "pmsh: the LLDP neighbors cannot be read: liblldpctl.so.4 is missing. Install the package lldpd.\n"
REFUSED = ("pmsh: the LLDP neighbors cannot be read: this user may not use the socket of lldpd. "
           "Run the shell as root or as a member of the group _lldpd.\n")
SERVICE_FAILED = 2


def step(text):
    print(f"step: {text}", flush=True)


def skip(reason):
    print(f"skipped: everything: {reason}")
    sys.exit(77)


def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, check=False, **options)


def until(condition):
    while not (found := condition()):
        time.sleep(0.05)
    return found


# ---- Namespaces


def enter_namespaces():
    """Runs this script again, in namespaces of its own."""
    if os.environ.get("PMCLI_LLDP_INSIDE"):
        return
    for program in ("lldpd", "lldpcli", "unshare", "nsenter", "ip"):
        if shutil.which(program, path=os.environ["PATH"] + ":/usr/sbin:/sbin") is None:
            skip(f"{program} is missing, or this user may not run it")
    unshare = ["unshare", "--mount", "--net"] + ([] if os.geteuid() == 0 else ["--map-root-user"])
    if run(*unshare, "true").returncode != 0:
        skip("namespaces are not allowed here")
    os.environ["PMCLI_LLDP_INSIDE"] = "yes"
    os.environ["PATH"] += ":/usr/sbin:/sbin"
    os.execvp("unshare", [*unshare, sys.executable, *sys.argv])


def own_run_directory(*inside):
    done = run(*inside, "sh", "-c", "mount --make-rprivate / && mount -t tmpfs none /run && mkdir -p /run/lldpd")
    if done.returncode != 0:
        skip(f"/run cannot be replaced: {done.stderr.strip()}")


class Other:
    """The namespaces of the neighbor, as long as a process of them lives."""

    def __init__(self):
        self.holder = subprocess.Popen(["unshare", "--mount", "--net", "sh", "-c", "echo ready; exec sleep infinity"],
                                       stdout=subprocess.PIPE)
        self.holder.stdout.readline()
        self.inside = ("nsenter", "-t", str(self.holder.pid), "-m", "-n")
        own_run_directory(*self.inside)

    def run(self, *command):
        return run(*self.inside, *command)

    def end(self):
        self.holder.kill()
        self.holder.wait()


class Daemon:
    """An lldpd in the foreground."""

    def __init__(self, inside, *options):
        self.inside = inside
        self.process = subprocess.Popen([*inside, "lldpd", "-d", "-d", "-L", "", *options], stderr=subprocess.PIPE, text=True)
        started = until(lambda: self.process.poll() is not None or self.ask("show", "configuration").returncode == 0)
        if started and self.process.poll() is not None:
            said = self.process.stderr.read().strip().splitlines()
            skip(f"lldpd does not run here: {said[-1] if said else ''}")

    def ask(self, *words):
        return run(*self.inside, "lldpcli", "-f", "json0", *words)

    def neighbors(self):
        """The neighbors by device."""
        document = json.loads(self.ask("show", "neighbors", "details").stdout or "{}")
        return {it["name"]: it for whole in document.get("lldp", []) for it in whole.get("interface", [])}

    def end(self):
        if self.process.poll() is None:
            self.process.terminate()
        self.process.wait()
        self.process.stderr.close()


# ---- Frames


def tlv(kind, value):
    return struct.pack("!H", kind << 9 | len(value)) + value


def of_ieee(subtype, value):
    return tlv(127, b"\x00\x80\xc2" + bytes([subtype]) + value)


FOREIGN_FRAME = b"".join([
    b"\x01\x80\xc2\x00\x00\x0e", b"\x02\x00\x00\x00\x00\x09", b"\x88\xcc",
    tlv(1, b"\x07rack \x1b[2J7"), tlv(2, b"\x05Eth 1/7"), tlv(3, struct.pack("!H", 3600)),
    tlv(4, b"up\nlink"), tlv(5, b"ev\"il\xff"), tlv(6, b"D" * 255), tlv(7, struct.pack("!HH", 0x14, 0x10)),
    tlv(8, b"\x05\x01\xc0\x00\x02\x09" + b"\x02\x00\x00\x00\x03\x00"),
    of_ieee(1, struct.pack("!H", 10)), of_ieee(3, struct.pack("!H", 20) + b"\x04blue"),
    of_ieee(3, struct.pack("!H", 10) + b"\x03red"), tlv(0, b""),
])
# Of control characters JSON has its own escapes; a byte that is no UTF-8 is visible.
FOREIGN = {
    "device": "lab", "protocol": "LLDP", "chassis_id": "rack \x1b[2J7", "chassis_id_type": "local",
    "system_name": "ev\"il\\xff", "system_description": "D" * 255, "management_addresses": ["192.0.2.9"],
    "system_capabilities": ["bridge", "router"], "enabled_capabilities": ["router"], "remote_port_id": "Eth 1/7",
    "remote_port_id_type": "ifname", "remote_port_description": "up\nlink", "remote_port_vlan": 10,
    "remote_vlans": "10,20", "ttl_seconds": 3600,
}
SEND = ("import socket, sys; "
        "s = socket.socket(socket.AF_PACKET, socket.SOCK_RAW); s.bind((sys.argv[1], 0)); s.send(bytes.fromhex(sys.argv[2]))")


# ---- What lldpcli reports


def first(values, key="value"):
    return values[0].get(key) if values else None


def identifier(ids):
    """Its text and type; hardware addresses as the shell writes them."""
    value, kind = first(ids), first(ids, "type")
    if kind == "mac":
        digits = value.replace(":", "")
        value = ".".join(digits[at:at + 4] for at in (0, 4, 8))
    return value, kind


def reported(device, it):
    chassis, port = it["chassis"][0], it["port"][0]
    chassis_id, chassis_type = identifier(chassis["id"])
    port_id, port_type = identifier(port["id"])
    capabilities = sorted((one["type"].lower(), one["enabled"]) for one in chassis.get("capability", []))
    vlans = sorted(int(one["vlan-id"]) for one in it.get("vlan", []) if "value" in one)
    return {
        "device": device, "protocol": it["via"], "chassis_id": chassis_id, "chassis_id_type": chassis_type,
        "system_name": first(chassis.get("name")), "system_description": first(chassis.get("descr")),
        "management_addresses": [one["value"] for one in chassis.get("mgmt-ip", [])],
        "system_capabilities": [word for word, _ in capabilities],
        "enabled_capabilities": [word for word, enabled in capabilities if enabled],
        "remote_port_id": port_id, "remote_port_id_type": port_type, "remote_port_description": first(port.get("descr")),
        "remote_port_vlan": next((int(one["vlan-id"]) for one in it.get("vlan", []) if one.get("pvid")), None),
        "remote_vlans": ",".join(map(str, vlans)), "ttl_seconds": int(first(port["ttl"])),
    }


def seconds_of(age):
    """Of "0 day, 00:00:03"."""
    days, clock = age.split(" day")[0], age.rsplit(" ", 1)[1]
    hours, minutes, seconds = map(int, clock.split(":"))
    return int(days) * 86400 + hours * 3600 + minutes * 60 + seconds


# ---- Checks


class Checks:
    def __init__(self, pmsh, state):
        self.pmsh = pmsh
        self.state = state
        self.faults = []

    def show(self, *lines, options=("--kernel",), user=()):
        commands = [word for line in lines for word in ("-c", line)]
        return run(*user, self.pmsh, *options, *commands, env={**os.environ, "XDG_STATE_HOME": self.state})

    def equal(self, what, shown, expected):
        if shown != expected:
            self.faults.append(f"{what}: {shown!r} is not {expected!r}")

    def records(self, line="show lldp neighbors | json", options=("--kernel",)):
        done = self.show(line, options=options)
        document = json.loads(done.stdout)
        self.equal(f"{line}: result", (done.returncode, done.stderr, document["messages"]), (0, "", []))
        return {record["device"]: record for record in document["neighbors"]}

    def is_lost(self, sentence):
        for line in ("show lldp neighbors", "show lldp neighbors detail"):
            done = self.show(line)
            self.equal(line, (done.returncode, done.stdout, done.stderr), (SERVICE_FAILED, "", sentence))
        done = self.show("show lldp neighbors | json")
        document = json.loads(done.stdout)
        said = [{"interface": None, "severity": "error", "text": sentence.removeprefix("pmsh: ").strip()}]
        self.equal("the document", (done.returncode, document["exit_code"], document["neighbors"], document["messages"]),
                   (SERVICE_FAILED, SERVICE_FAILED, [], said))


def check_neighbors(checks, here):
    step("a neighbor as lldpcli reports it")
    before = here.neighbors()["left"]
    shown = checks.records()["left"]
    after = here.neighbors()["left"]
    expected = reported("left", before)
    shown = {**shown, **{key: sorted(shown[key]) for key in ("system_capabilities", "enabled_capabilities")}}
    checks.equal("values", {key: shown[key] for key in expected}, expected)
    age = shown["unchanged_seconds"]
    if not seconds_of(before["age"]) <= age <= seconds_of(after["age"]):
        checks.faults.append(f"age: {age} is not from {before['age']} to {after['age']}")
    number = socket.if_nametoindex("left")
    devices = json.loads(checks.show("show kernel-map | json").stdout)["devices"]
    names = {it["device"]: it["interface"] for it in devices}
    checks.equal("interface", (shown["interface"], shown["ifindex"]), (names["left"], number))

    step("a range")
    checks.equal("left", list(checks.records("show lldp neighbors left | json")), ["left"])
    checks.equal("lab", list(checks.records("show lldp neighbors lab detail | json")), ["lab"])
    checks.equal("quiet", checks.show("show lldp neighbors quiet").stdout, "There are no LLDP neighbors.\n")


def check_foreign(checks):
    step("texts of any bytes")
    shown = checks.records()["lab"]
    checks.equal("a foreign frame", {key: shown[key] for key in FOREIGN}, FOREIGN)
    for line in ("show lldp neighbors", "show lldp neighbors detail"):
        text = checks.show(line).stdout
        if not all(character.isprintable() or character == "\n" for character in text):
            checks.faults.append(f"{line}: control characters in {text!r}")
    detail = checks.show("show lldp neighbors lab detail").stdout
    for expected in ("  Chassis ID:           rack \\x1b[2J7 (local)\n", "  System name:          ev\"il\\xff\n",
                     "  Management addresses: 192.0.2.9\n", "  Capabilities:         bridge,router\n",
                     "  Enabled capabilities: router\n", "  Port ID:              Eth 1/7 (ifname)\n",
                     "  Port description:     up\\x0alink\n", "  Port VLAN:            10\n",
                     "  VLANs:                10,20\n", "  TTL:                  3600 seconds\n"):
        if expected not in detail:
            checks.faults.append(f"no {expected!r} in {detail!r}")


def check_capture(checks, folder):
    step("captures")
    shown = checks.show("show lldp neighbors detail", "show version", options=("--kernel", "--capture", folder))
    replayed = checks.show("show lldp neighbors detail", options=("--replay", folder))
    checks.equal("replay", shown.stdout.startswith(replayed.stdout) and replayed.stdout != "", True)
    checks.equal("replay: result", (replayed.returncode, replayed.stderr), (0, ""))
    anonymous = folder + ".anonymous"
    checks.show("show version", options=("--kernel", "--capture", anonymous, "--anonymous"))
    with open(os.path.join(anonymous, next(name for name in os.listdir(anonymous) if name.endswith("lldp-neighbors"))),
              encoding="ascii") as file:
        text = file.read()
    for identity in ("rack", "ev", "Eth 1/7", "DDD", "192.0.2.9", "left", "right", "Linux", socket.gethostname()):
        if f" {identity}" in text:
            checks.faults.append(f"{identity!r} is in the anonymous capture: {text}")
    records = [line for line in text.splitlines() if line.startswith("neighbor ")]
    checks.equal("anonymous neighbors", len(records), 2)


def serve_once(answer):
    """A process that answers connections to the socket of lldpd with these bytes."""
    server = socket.socket(socket.AF_UNIX)
    server.bind(SOCKET)
    server.listen()
    process = os.fork()
    if process != 0:
        server.close()
        return process
    while True:
        accepted, _ = server.accept()
        try:
            accepted.recv(65536)
            accepted.sendall(answer)
        except OSError:
            pass
        accepted.close()


def check_lost(checks):
    step("no lldpd")
    checks.is_lost(NOT_RUNNING)
    step("a socket of an lldpd that was killed")
    left_over = socket.socket(socket.AF_UNIX)
    left_over.bind(SOCKET)
    left_over.close()
    checks.is_lost(NOT_RUNNING)
    os.unlink(SOCKET)
    step("answers that are none")
    for answer in (b"", b"\x00", b"\xff" * 4096):
        process = serve_once(answer)
        checks.is_lost(DAMAGED)
        os.kill(process, 9)
        os.waitpid(process, 0)
        os.unlink(SOCKET)


def check_refused(checks):
    step("a user without rights")
    nobody = ("setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "--inh-caps=-all", "--")
    if run(*nobody, checks.pmsh, "--version").returncode != 0:
        print("skipped: a user without rights: it cannot run the shell here")
        return
    done = checks.show("show lldp neighbors", user=nobody)
    said = [line for line in done.stderr.splitlines(True) if "LLDP" in line]
    checks.equal("refused", (done.returncode, done.stdout, said), (SERVICE_FAILED, "", [REFUSED]))


def check_missing(checks):
    step("no library")
    known = run("ldconfig", "-p").stdout
    path = next(line.split()[-1] for line in known.splitlines() if line.split()[:1] == ["liblldpctl.so.4"])
    path = os.path.realpath(path)
    if run("mount", "--bind", "/dev/null", path).returncode != 0:
        print("skipped: no library: it cannot be hidden here")
        return
    checks.is_lost(MISSING)
    run("umount", path)


def make_links(other):
    for line in ("lo up", "left up", "lab up", "quiet up"):
        if not line.startswith("lo"):
            device = line.split()[0]
            peer = {"left": "right", "lab": "tester", "quiet": "quieter"}[device]
            if run("ip", "link", "add", device, "type", "veth", "peer", "name", peer).returncode != 0:
                skip("veth devices are not allowed here")
            run("ip", "link", "set", peer, "netns", str(other.holder.pid))
            other.run("ip", "link", "set", peer, "up")
        run("ip", "link", "set", *line.split())
    other.run("ip", "link", "set", "lo", "up")
    other.run("ip", "addr", "add", "198.51.100.2/24", "dev", "right")


def compare(checks, other, folder):
    check_lost(checks)
    here = Daemon(())
    there = Daemon(other.inside, "-I", "right", "-S", "A \"switch\"; of the lab")
    try:
        step("neighbors that hear each other")
        while not {"left", "lab"} <= here.neighbors().keys():
            there.ask("update")
            other.run(sys.executable, "-c", SEND, "tester", FOREIGN_FRAME.hex())
            time.sleep(0.05)
        check_neighbors(checks, here)
        check_foreign(checks)
        check_capture(checks, folder)
        check_refused(checks)
        check_missing(checks)
    finally:
        there.end()
        here.end()
    step("an lldpd that has ended")
    checks.is_lost(NOT_RUNNING)


def main():
    enter_namespaces()
    own_run_directory()
    other = Other()
    try:
        make_links(other)
        with tempfile.TemporaryDirectory() as state:
            checks = Checks(sys.argv[1], state)
            compare(checks, other, os.path.join(state, "capture"))
    finally:
        other.end()
    for fault in checks.faults:
        print(fault)
    if checks.faults:
        sys.exit(f"{len(checks.faults)} faults")
    print("neighbors are those that lldpd reports")


if __name__ == "__main__":
    main()
