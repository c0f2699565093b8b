#!/usr/bin/python3
"""Compares the two forms of every display of interfaces: both_forms.py PMSH RECORDED_SHELL DISTINCT SWITCH...

For each show command and each interface of a switch, every number, name, address, elapsed time and cell of the text must be in
the record that the command writes for '| json'. RECORDED_SHELL is the shell over a machine whose kernel is recorded. DISTINCT
is a switch file in which every counter has a value of its own: no two keys of a record may have the same number there.
"""

import datetime
import json
import re
import subprocess
import sys

import documents

CLOCK = 1_700_000_000
SMALLEST_COUNTER = 100_000  # of the switch whose counters are distinct; other numbers are smaller, or of their own

# Keys that have the same number there nevertheless.
SAME = {
    ("input_packets", "input_trunk_packets"): "all packets of a trunk are those of a trunk",
    ("output_packets", "output_trunk_packets"): "the same",
}

# What is no value: a pattern, and why. The rest of the line is compared.
EXCEPTIONS = [
    (r"^ *\d+\. +\S+ *=", "a line of all counters: its place in the list, and its label"),
    (r"^  +[A-Z][^:=]*: ", "a label and its colon; sizes of packets and layers are part of it"),
    (r"^  (32|64) [Bb]it [Cc]ounters:$", "a heading"),
    (r"(?<=[\d-])/255\b", "the scale of reliability and loads"),
    (r"\(rate is 1 min avg\)", "a heading; the record has the interval of the rates"),
    (r"^    5 minutes (in|out)put rate 0 bits/sec, 0 bytes/sec, 0 frames/sec$",
     "a line without tags, which has 0 for what is not known"),
    (r"^error: invalid if index type\(\d+\)$", "an error, which is a message of the document"),
    (r"\b(9|50|62\.5)/125mm\b|^  Rx Power \(\d\)", "a kind of fibre and the order of a coefficient: part of the key"),
    (r"(?<=\d)\.\d+(?= km\(s\))", "a length in units of 100 m after that in kilometres, which the record has"),
    (r"\\x[0-9a-f]{0,2}", "a byte that cannot be shown"),
]

# Words of rows that are no values: of labels, and for what is null.
NO_VALUES = {"address", "bia", "auto", "none"}

# The short words for reasons, and how the reason of the record begins.
SHORT_REASONS = {"notConnect": "Link failure", "sfpAbsent": "SFP not present",
                 "noOperMemb": "No operational members", "errDisable": "Error disabled"}

# Keys that have another value in one display, and why.
ELSEWHERE = {
    "address": "the table of addresses has that of the router for switched ports, too",
    "media_type": "the table of states has it of the line card's ports only",
    "input_trunk_packets": "the table of trunks has none of loopbacks",
    "output_trunk_packets": "the same",
    "input_packets_per_second": "the brief table has averages of the last half minute",
    "output_packets_per_second": "the same",
}

KINDS = {"Eth": "Ethernet", "Po": "port-channel", "Lo": "loopback"}
TOKEN = re.compile(r"""
    (?P<mac>\b[0-9a-f]{4}\.[0-9a-f]{4}\.[0-9a-f]{4}\b)
  | (?P<ipv4>\b\d+\.\d+\.\d+\.\d+\b)
  | (?P<satellite>^\d+/\d+/\d+\b)
  | (?P<name>\b(?:Ethernet|Eth|port-channel|Po|loopback|Lo|mgmt|Vethernet|fc)(?:\d+/)*\d+(?:\.\d+)?\b)
  | (?P<hex>\b0x[0-9a-f]+\b)
  | (?P<weeks>\d+week\(s\)\ \d+day\(s\))
  | (?P<days>\b\d+d\d\dh\b)
  | (?P<clock>\b\d\d:\d\d:\d\d\b)
  | (?P<average>\b\d+\ (?:minute|second)s?\b)
  | (?P<number>-?\d+(?:\.\d+)?)""", re.VERBOSE | re.MULTILINE)


def full_name(name):
    kind, number = re.match(r"([A-Za-z-]+)(.*)", name).groups()
    return KINDS.get(kind, kind) + number


def value_of(kind, text):
    """A token in the form in which records are searched."""
    if kind == "name":
        return full_name(text)
    if kind == "satellite":  # where its short name does not fit
        return "Ethernet" + text
    if kind == "number":
        return float(text) if "." in text else int(text)
    if kind == "hex":
        return int(text, 16)
    if kind == "average":
        count, unit = text.split()
        return int(count) * (60 if unit.startswith("minute") else 1)
    return text


# A row of a table, or a line with a label; the rest is cells.
ROW = re.compile(r"^(?:(?:Ethernet|Eth|port-channel|Po|loopback|Lo|mgmt)[\d/.]+ +(?!is |sfp )|  +(?!Note)[A-Z][^:=]*: +)(.*)$")
WORD = re.compile(r"[A-Za-z][A-Za-z-]*")


def words(line):
    """The words of cells; names of interfaces are compared as such."""
    row = ROW.match(line)
    return WORD.findall(re.sub(TOKEN, " ", row[1])) if row else []


def tokens(text):
    for token in TOKEN.finditer(text):
        yield token.lastgroup, value_of(token.lastgroup, token.group())


def leaves(value):
    if isinstance(value, dict):
        value = list(value.values())
    if isinstance(value, list):
        for item in value:
            yield from leaves(item)
    elif value is not None and not isinstance(value, bool):
        yield value


def elapsed_texts(moment, now):
    """How displays show the time that has passed since a moment."""
    seconds = int((now - moment).total_seconds())
    days, hours = seconds // 86400, seconds % 86400 // 3600
    return {f"{days // 7}week(s) {days % 7}day(s)", f"{days}d{hours:02d}h",
            f"{seconds // 3600:02d}:{seconds % 3600 // 60:02d}:{seconds % 60:02d}"}


def moment(text):
    return datetime.datetime.strptime(text, "%Y-%m-%dT%H:%M:%SZ")


def derived(record):
    """How displays show some numbers of a record: rates in whole millions of bits, lengths of fibres by their codes."""
    for key in ("input_bits_per_second", "output_bits_per_second"):
        if record.get(key) is not None:
            yield record[key] // 1_000_000
    yield from {82: (80,)}.get(record.get("length_50um_m"), ())
    yield from {26: (20, 30)}.get(record.get("length_62um_m"), ())


def values(document):
    """All that a document says of interfaces, and what follows from it."""
    found = set()
    now = moment(document["time"])
    for record in document["interfaces"]:
        found.update(derived(record))
    for leaf in leaves(document["interfaces"]):
        if isinstance(leaf, (int, float)):
            found.add(leaf)
        elif re.fullmatch(r"0x[0-9a-f]+", leaf):
            found |= {leaf, int(leaf, 16)}
        elif re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", leaf):
            found |= elapsed_texts(moment(leaf), now)
        else:
            found |= {value for _, value in tokens(leaf)}
    return found


def is_known(kind, value, known):
    if value in known or kind == "number" and -value in known:
        return True
    if kind == "name":  # as wide as its column
        return any(isinstance(it, str) and it.startswith(value) for it in known)
    # Members of 32 bits carry the largest number for what is larger; the lists of loopbacks show the low 32 bits.
    return any(isinstance(it, int) and it > 0xFFFFFFFF and value in (0xFFFFFFFF, it & 0xFFFFFFFF) for it in known)


def missing(text, document):
    """The tokens of a text that a document lacks, with their lines."""
    known = values(document)
    reasons = [record.get("state_reason") or "" for record in document["interfaces"]]
    known_words = {word for leaf in leaves(document["interfaces"]) for word in WORD.findall(str(leaf).lower())}
    for line in text.splitlines():
        for word in words(line):  # as wide as its column
            if any(reason.startswith(SHORT_REASONS.get(word, "?")) for reason in reasons):
                continue
            if word not in NO_VALUES and not any(it.startswith(word.lower()) for it in known_words):
                yield word, line
        rest = line
        for pattern, _ in EXCEPTIONS:
            rest = re.sub(pattern, "", rest)
        for kind, value in tokens(rest):
            if not is_known(kind, value, known):
                yield value, line


class Shell:
    """A program with the options of its switch, at a stopped clock."""

    def __init__(self, command):
        self.command = [*command, "--clock", str(CLOCK), "--keep-going"]

    def run(self, lines):
        """The text and the document of each line, which is run without and with '| json'."""
        script = "".join(f"{line}\n{line} | json\n" for line in lines)
        done = subprocess.run([*self.command, "-f", "-"], input=script, capture_output=True, text=True, check=False)
        decoder = json.JSONDecoder()
        at = 0
        for line in lines:
            start = done.stdout.find('{"schema_version"', at)
            if start < 0:
                raise RuntimeError(f"{line}: no document: {done.stdout[at:at + 200]} {done.stderr[-200:]}")
            document, end = decoder.raw_decode(done.stdout, start)
            yield line, done.stdout[at:start], document
            at = end + 1

    def interfaces(self):
        (_, _, document), = self.run(["show interface brief"])
        return [record["interface"] for record in document["interfaces"]]


def commands(pmsh):
    """Show commands of interfaces, with room for one."""
    for line, display in documents.commands(pmsh):
        if line.startswith("show interface ") or line == "show interface":
            # The overview rounds its numbers for people ("1.84G"); its own tests compare it with the record.
            # A record of the violations is a value and no interface.
            if display not in ("text", "overview", "transceiver_violations"):
                yield line.replace("show interface", "show interface {}", 1)


class Checker:
    def __init__(self):
        self.faults = []
        self.compared = 0
        self.tokens = 0

    def compare(self, line, text, document):
        self.compared += 1
        self.tokens += sum(1 for _ in tokens(text))
        return [f"{line}: {value} of {row!r} is not in the record" for value, row in missing(text, document)]

    def compare_all(self, shell, lines):
        """Returns what the lines wrote."""
        faulty, written = {}, list(shell.run(lines))
        for line, text, document in written:
            if faults := self.compare(line, text, document):
                faulty[line] = faults
        # Counters of a device of this machine move between two commands: they are read again.
        for _ in range(3):
            if not faulty:
                break
            again = {line: self.compare(line, text, document) for line, text, document in shell.run(list(faulty))}
            faulty = {line: faults for line, faults in again.items() if faults}
        for faults in faulty.values():
            self.faults += faults
        return written

    def check_one_value(self, written):
        """A key of an interface has the same value in every display."""
        seen = {}
        for line, _, document in written:
            for record in document["interfaces"]:
                for key in record.keys() - {"absent"} - ELSEWHERE.keys():
                    value, first = seen.setdefault((record["interface"], key), (record[key], line))
                    if record[key] != value:
                        self.faults.append(f"{line}: {key} is {record[key]!r}, and {value!r} in {first}")

    def check_distinct(self, written):
        """No two keys carry the same counter."""
        for line, _, document in written:
            for record in document["interfaces"]:
                keys = {}
                for key, value in record.items():
                    if isinstance(value, int) and value >= SMALLEST_COUNTER:
                        keys.setdefault(value, []).append(key)
                for value, same in keys.items():
                    if len(same) > 1 and tuple(same) not in SAME:
                        self.faults.append(f"{line}: {', '.join(same)} are {value}")


def check_damage(checker, shell):
    """A comparison that accepts everything would prove nothing: a changed text must be noticed."""
    damages = [
        ("a counter", "show interface ethernet 1/1 flowcontrol", "100226", "100927"),
        ("a rate", "show interface ethernet 1/1 counters brief", r"(?m)^(Ethernet1/1 +)(\d+)", r"\g<1>1\g<2>"),
        ("a MAC address", "show interface ethernet 1/1 mac-address", "0200.", "0300."),
        ("an IPv4 address", "show interface ethernet 1/2", "192.0.2.1", "192.0.2.7"),
        ("a name", "show interface ethernet 1/1 status", "Eth1/1", "Eth1/3"),
        ("an elapsed time", "show interface ethernet 1/1 detailed", "2d03h", "2d04h"),
        ("a cell", "show interface ethernet 1/1 status", " up ", " down "),
    ]
    for what, line, old, new in damages:
        (_, text, document), = shell.run([line])
        damaged = re.sub(old, new, text, count=1)
        if damaged == text:
            checker.faults.append(f"{line}: no {old!r} in {text!r}")
        elif checker.compare(line, text, document) or not checker.compare(line, damaged, document):
            checker.faults.append(f"{line}: {what} that is changed is not noticed")


def main():
    pmsh, recorded, distinct, *switches = sys.argv[1:]
    checker = Checker()
    lines = list(commands(pmsh))
    if len(lines) < 30:
        sys.exit(f"the command reference lists only {len(lines)} commands of interfaces")
    shells = [Shell([pmsh, "--switch", switch]) for switch in (distinct, *switches)]
    recorded_machine = Shell([recorded, "--kernel", "--session-counters"])
    for shell in (*shells, recorded_machine):
        for interface in shell.interfaces():
            kind, number = re.match(r"([A-Za-z-]+)(.*)", interface).groups()
            of_interface = [line.format(f"{kind} {number}") for line in lines]
            written = checker.compare_all(shell, of_interface)
            if shell is not recorded_machine and kind != "mgmt":  # whose device may be one of this machine
                checker.check_one_value(written)
            if shell is shells[0]:
                checker.check_distinct(written)
    check_damage(checker, shells[0])
    documents.report(checker.faults, f"{checker.compared} comparisons")
    print(f"{checker.tokens} values in {checker.compared} texts of {len(lines)} commands are in the records")


if __name__ == "__main__":
    main()
