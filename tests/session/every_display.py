#!/usr/bin/python3
"""Every show command of the shell on one walk: every_display.py PMSH.

The table has a row for each show command of the command reference: a switch, what is typed, and a line of the text, written by
hand. A command without a row fails, and so does a row without a command.
"""

import os
import pathlib
import subprocess
import sys
import tempfile

import documents

HERE = pathlib.Path(__file__).resolve().parent

# Command, switch file, what is typed, and a line that is shown.
ROWS = [
    ("show interface [RANGE]", "lab", "show interface ethernet 1/1", "  Auto-mdix is turned on"),
    ("show interface [RANGE] brief", "tables", "show interface brief",
     "port-channel7            up         192.0.2.17        1000     9216"),
    ("show interface [RANGE] status", "tables", "show interface status",
     "Eth2/2         Server             up       310       full    10000   10Gbase-SR"),
    ("show interface [RANGE] status up", "tables", "show interface status up",
     "Veth1          Desktop            up       1         full    auto    --"),
    ("show interface [RANGE] status down", "tables", "show interface status down",
     "Eth1/2         --                 down     auto    auto    10/100/1000"),
    ("show interface [RANGE] status inactive", "tables", "show interface status inactive",
     "Eth1/4         Printer            down     auto    auto    10/100/1000"),
    ("show interface [RANGE] status module MODULE", "tables", "show interface status module 2",
     "Eth2/3         --                 down     trunk     auto    auto    --"),
    ("show interface [RANGE] status err-disabled", "tables", "show interface status err-disabled",
     "Eth1/3     Camera             down     Error disabled"),
    ("show interface [RANGE] description", "tables", "show interface description", "port-channel7            Pair"),
    ("show interface [RANGE] mac-address", "tables", "show interface ethernet 1/10 mac-address",
     "Ethernet1/10               0200.0000.0099  0200.0000.001a"),
    ("show interface [RANGE] ifindex", "tables", "show interface ifindex", "Eth1/10         134254592  (0x8009000 )"),
    ("show interface [RANGE] debounce", "tables", "show interface debounce", "Eth1/1        enable               100"),
    ("show interface [RANGE] capabilities", "tables", "show interface ethernet 1/1 capabilities",
     "  Flowcontrol:           rx-(off/on),tx-(off)"),
    ("show interface [RANGE] detailed", "counters", "show interface ethernet 2/1 detailed",
     "    5 minutes input rate 10000000 bits/sec, 1250000 bytes/sec, 1000 frames/sec"),
    ("show interface [RANGE] overview", "counters", "show interface ethernet 2/1 overview",
     "Ethernet2/1  up     trunk  full        10M        16M       0"),
    ("show interface [RANGE] counters", "counters", "show interface counters",
     "Eth1/1   18446744073709551615              2000              100               10"),
    ("show interface [RANGE] counters brief", "counters", "show interface counters brief",
     "Ethernet2/1            1        1000              2        2000"),
    ("show interface [RANGE] counters detailed", "counters", "show interface port-channel 7 counters detailed",
     "  Rx Bytes:                                           640"),
    ("show interface [RANGE] counters detailed all", "counters", "show interface ethernet 1/1 counters detailed all",
     "  72.                            SQETest = 22"),
    ("show interface [RANGE] counters errors", "counters", "show interface counters errors",
     "Eth1/1            13          14          15          16         35           1"),
    ("show interface [RANGE] counters errors module MODULE", "counters", "show interface counters errors module 2",
     "Eth2/1             0           0           0           0           0           0"),
    ("show interface [RANGE] counters trunk", "counters", "show interface counters trunk",
     "Eth2/1                1200000          600000               0"),
    ("show interface [RANGE] counters storm-control", "counters", "show interface counters storm-control",
     "Eth1/1          100.00           10.25            5.50                    21"),
    ("show interface [RANGE] flowcontrol", "counters", "show interface flowcontrol",
     "Port       Send FlowControl  Receive FlowControl  RxPause TxPause"),
    ("show interface [RANGE] flowcontrol module MODULE", "counters", "show interface flowcontrol module 1",
     "           admin    oper     admin    oper"),
    ("show interface [RANGE] trunk", "optics", "show interface trunk", "Eth2/2     99      trnk-bndl     Po5"),
    ("show interface [RANGE] trunk allowed", "optics", "show interface trunk allowed", "Eth2/1     1,10-30"),
    ("show interface [RANGE] trunk forwarding", "optics", "show interface trunk forwarding", "Eth2/1     1,10-19,21-29"),
    ("show interface [RANGE] trunk detail", "optics", "show interface ethernet 2/2 trunk detail", "    Native Vlan: 99"),
    ("show interface [RANGE] trunk detail module MODULE", "optics", "show interface trunk detail module 2",
     "    Native Vlan: 10"),
    ("show interface [RANGE] trunk detail native-vlan VLANS", "optics", "show interface trunk detail native-vlan 10",
     "    Native Vlan: 10"),
    ("show interface [RANGE] trunk errored", "optics", "show interface trunk errored", "Eth2/1     30"),
    ("show interface [RANGE] transceiver", "optics", "show interface ethernet 1/11 transceiver",
     "Ethernet1/11 sfp not present"),
    ("show interface [RANGE] transceiver details", "optics", "show interface ethernet 1/1 transceiver details",
     "    part number is LW-10G-SR"),
    ("show interface [RANGE] transceiver calibrations", "optics", "show interface ethernet 1/1 transceiver calibrations",
     "    serial number is LW24SR000117"),
    ("show interface [RANGE] transceiver violations", "optics", "show interface ethernet 1/9 transceiver violations",
     "Ethernet1/9  Rx Power     -12.21  -12.00  dBm   -"),
    ("show transceiver", "optics", "show transceiver", "    Nominal bit rate is 10300 MBits/sec"),
    ("show transceiver details", "optics", "show transceiver details", "    part number is LW-10G-SR"),
    ("show transceiver calibrations", "optics", "show transceiver calibrations", "    serial number is LW24SR000117"),
    ("show module MODULE resources", "optics", "show module 3 resources", "Available Shared Buffers    1968           144"),
    ("show interface [RANGE] counters driver", "lab", "show interface counters driver",
     "pmsh: this switch has no table of driver counters. Start the shell with --kernel to show that of this machine."),
    ("show interface [RANGE] hardware", "lab", "show interface hardware",
     "pmsh: this switch has no table of hardware. Start the shell with --kernel to show that of this machine."),
    ("show ip interface [RANGE]", "tables", "show ip interface port-channel 7", "  Address 192.0.2.17/30"),
    ("show ip interface [RANGE] brief", "tables", "show ip interface port-channel 7 brief",
     "port-channel7  192.0.2.17/30  up     --"),
    ("show ipv6 interface [RANGE]", "tables", "show ipv6 interface", "There are no IPv6 addresses."),
    ("show ipv6 interface [RANGE] brief", "tables", "show ipv6 interface brief", "There are no IPv6 addresses."),
    ("show ip arp [RANGE]", "lab", "show ip arp",
     "pmsh: this switch has no table of IPv4 neighbors. Start the shell with --kernel to show that of this machine."),
    ("show ipv6 neighbors [RANGE]", "lab", "show ipv6 neighbors",
     "pmsh: this switch has no table of IPv6 neighbors. Start the shell with --kernel to show that of this machine."),
    ("show lldp neighbors [RANGE]", "lab", "show lldp neighbors",
     "pmsh: this switch has no table of LLDP neighbors. Start the shell with --kernel to show that of this machine."),
    ("show lldp neighbors [RANGE] detail", "lab", "show lldp neighbors detail",
     "pmsh: this switch has no table of LLDP neighbors. Start the shell with --kernel to show that of this machine."),
    ("show mac address-table", "lab", "show mac address-table",
     "pmsh: this switch has no table of MAC addresses. Start the shell with --kernel to show that of this machine."),
    ("show mac address-table interface RANGE", "lab", "show mac address-table interface ethernet 1/1",
     "pmsh: this switch has no table of MAC addresses. Start the shell with --kernel to show that of this machine."),
    ("show mac address-table address MAC", "lab", "show mac address-table address 0200.0000.0009",
     "pmsh: this switch has no table of MAC addresses. Start the shell with --kernel to show that of this machine."),
    ("show mac address-table vlan VLAN", "lab", "show mac address-table vlan 1",
     "pmsh: this switch has no table of MAC addresses. Start the shell with --kernel to show that of this machine."),
    ("show spanning-tree", "lab", "show spanning-tree",
     "pmsh: this switch has no table of bridge ports. Start the shell with --kernel to show that of this machine."),
    ("show spanning-tree interface RANGE", "lab", "show spanning-tree interface ethernet 1/1",
     "pmsh: this switch has no table of bridge ports. Start the shell with --kernel to show that of this machine."),
    ("show panel", "overview", "show panel", "Module 1 of unit 101"),
    ("show kernel-map", "lab", "show kernel-map", "pmsh: this switch is not read from the kernel. Start the shell with --kernel."),
    ("show vlan", "optics", "show vlan", "20    guests                            shut     isolated"),
    ("show clock", "lab", "show clock", "2027-01-15T08:00:00Z"),
    ("show running-config", "configuration", "show running-config", "interface ethernet 1/11-12"),
    ("show running-config interface RANGE", "configuration", "show running-config interface ethernet 1/11",
     "interface ethernet 1/11"),
    ("show startup-config", "configuration", "show startup-config",
     "pmsh: there is no startup-config yet. Type 'copy running-config startup-config' to store one."),
    ("show changes", "configuration", "show changes", "Nothing was changed in this session."),
    ("show diff", "configuration", "show diff", "pmsh: there is no candidate. Type 'configure candidate' first."),
    ("show sessions", "lab", "show sessions | count", "1"),  # this session
    ("show transport", "lab", "show transport", "Messages sent:                    3"),
    ("show version", "lab", "show version", f"Platform:  simulated switch lab from {HERE / 'lab.yaml'}"),
    ("show history", "lab", "show history", "    1  show clock"),
]


def shown(pmsh, switch, line, state):
    command = [pmsh, "--switch", HERE / f"{switch}.yaml", "--clock", "1800000000", "-c", line]
    done = subprocess.run(command, capture_output=True, text=True, check=False,
                          env=os.environ | {"XDG_STATE_HOME": state, "LC_ALL": "C.UTF-8"})
    return [line.rstrip() for line in (done.stdout + done.stderr).splitlines()]


def main():
    pmsh = sys.argv[1]
    known = [syntax for syntax, _ in documents.syntaxes(pmsh) if syntax.split()[0] == "show"]
    rows = [row[0] for row in ROWS]
    faults = [f"{syntax!r} has no row in tests/session/every_display.py" for syntax in known if syntax not in rows]
    faults += [f"{syntax!r} is not in the command reference" for syntax in rows if syntax not in known]
    with tempfile.TemporaryDirectory() as state:
        pathlib.Path(state, "pmsh").mkdir()
        pathlib.Path(state, "pmsh", "history").write_text("show clock\n", encoding="utf-8")
        for syntax, switch, line, expected in ROWS:
            lines = shown(pmsh, switch, line, state)
            if expected not in lines:
                faults.append("\n".join([f"{line}: expected the line", expected, "among", *lines]))
    documents.report(faults, f"{len(known)} show commands")
    print(f"{len(known)} show commands have a row")


if __name__ == "__main__":
    main()
