#!/usr/bin/python3
"""Validates what every command writes for '| json' against the published JSON Schema: documents.py PMSH SCHEMA SWITCH...

Readers must accept keys that they do not know; the program must not write any: documents are validated against a closed form
of the schema, in which no object has other properties than those that are described. The list of commands and the display
of each come from the command reference. Needs python3-jsonschema.
"""

import copy
import json
import os
import re
import signal
import subprocess
import sys
import tempfile

import jsonschema


def closed(schema):
    """The schema without room for unknown properties."""
    if isinstance(schema, list):
        return [closed(item) for item in schema]
    if not isinstance(schema, dict):
        return schema
    made = {key: closed(value) for key, value in schema.items()}
    if isinstance(schema.get("properties"), dict) and "type" in schema:
        made.setdefault("additionalProperties", False)
    return made


class Checker:
    def __init__(self, pmsh, schema):
        self.pmsh = pmsh
        self.faults = []
        self.count = 0
        jsonschema.Draft202012Validator.check_schema(schema)
        # What follows the definition of its display in closed form also follows the whole schema, which has them all.
        self.published = {entry["$ref"].removeprefix("#/$defs/") for entry in schema["anyOf"]}
        self.schema = closed(schema)
        self.validators = {}
        self.state = tempfile.TemporaryDirectory()
        self.environment = {**os.environ, "XDG_STATE_HOME": self.state.name}

    def fault(self, line, text):
        self.faults.append(f"{line}: {text}")

    def validator(self, display):
        if display not in self.validators:
            of_display = {"$ref": f"#/$defs/{display}", "$defs": self.schema["$defs"]}
            self.validators[display] = jsonschema.Draft202012Validator(of_display)
        return self.validators[display]

    def check(self, line, text, display=None, exit_code=None):
        """A document as the program wrote it; `display` that it must have."""
        self.count += 1
        try:
            document = json.loads(text)
        except ValueError as error:
            return self.fault(line, f"not one document: {error}: {text[:200]!r}")
        if display is not None and document.get("display") != display:
            return self.fault(line, f"display {document.get('display')!r}, not {display!r}")
        if document.get("display") not in self.schema["$defs"]:
            return self.fault(line, f"display {document.get('display')!r} is not published")
        for error in self.validator(document["display"]).iter_errors(document):
            self.fault(line, f"/{'/'.join(map(str, error.path))}: {error.message[:200]}")
        if document["display"] not in self.published:
            self.fault(line, f"display {document['display']!r} is not among those of the whole schema")
        if exit_code is not None and document.get("exit_code") != exit_code:
            self.fault(line, f"says exit code {document.get('exit_code')}, and ended with {exit_code}")
        return document

    def run(self, switch, line, display=None, stdin=None):
        options = ["--switch", switch] + (["-c", line] if stdin is None else [])
        done = subprocess.run([self.pmsh, *options], input=stdin, capture_output=True, text=True, check=False,
                              env=self.environment)
        return self.check(f"{os.path.basename(switch)}: {line}", done.stdout, display, done.returncode), done


def syntaxes(pmsh):
    """The commands of the reference, with the name of their display."""
    reference = subprocess.run([pmsh, "--print-command-reference"], capture_output=True, text=True, check=True).stdout
    return re.findall(r"^\| `([^`]+)` \| [^|]+ \| `?([a-z_]+)`? \|$", reference, re.MULTILINE)


def commands(pmsh):
    """Lines for all interfaces, with the name of their display."""
    for syntax, display in syntaxes(pmsh):
        line = re.sub(r"\[[^\]]*\] ?", "", syntax).strip()
        line = line.replace("RANGE", "ethernet 1/1").replace("MODULE", "2").replace("VLANS", "1-300").replace("VLAN", "10").replace("PORT", "0").replace("MAC", "0200.0000.0009")
        if line.split()[0] not in ("show", "clear"):
            continue
        if re.search("[A-Z]", line):
            sys.exit(f"{syntax!r}: the walks have no value of this argument; tests/session/documents.py gives them one")
        yield line, display


def properties_of(schema):
    """Every described property, with its key."""
    if isinstance(schema, list):
        for item in schema:
            yield from properties_of(item)
    if not isinstance(schema, dict):
        return
    if isinstance(schema.get("properties"), dict):
        yield from schema["properties"].items()
    for part in schema.values():
        yield from properties_of(part)


def check_times(checker):
    """Moments are times of one form, whatever they are called."""
    times = {"time", "last_link_flapped", "last_counters_cleared", "changed_at", "clock_time"}
    found = {key: described.get("$ref") for key, described in properties_of(checker.schema["$defs"]) if key in times}
    if found != dict.fromkeys(times, "#/$defs/value_time"):
        checker.fault("schema", f"times are {found}")
    if checker.schema["$defs"]["value_time"].get("format") != "date-time":
        checker.fault("schema", "times have no format")


def check_titles(checker):
    for key, described in properties_of(checker.schema["$defs"]):
        if not described.get("title") or not described.get("description"):
            checker.fault("schema", f"{key!r} lacks a title or a description")


def check_damage(checker, switch):
    """A validator that accepts everything would prove nothing: documents that are damaged must not pass."""
    document, _ = checker.run(switch, "show interface ethernet 1/1 brief | json", "brief")

    def is_refused(change):
        damaged = copy.deepcopy(document)
        change(damaged, damaged["interfaces"][0])
        return not checker.validator("brief").is_valid(damaged)

    damages = {
        "a text for a number": lambda _, record: record.update(mtu_bytes="1500"),
        "no address": lambda _, record: record.update(ip_address="nowhere"),
        "a word that there is not": lambda _, record: record.update(state="sideways"),
        "no interface": lambda _, record: record.update(interface=None),
        "an unknown key": lambda _, record: record.update(color="red"),
        "a missing key": lambda _, record: record.pop("state"),
        "a reason that there is not": lambda _, record: record["absent"].update(mtu_bytes="lost"),
        "no time": lambda whole, _: whole.pop("time"),
        "another display": lambda whole, _: whole.update(display="status"),
    }
    for what, change in damages.items():
        if not is_refused(change):
            checker.fault("damaged document", f"{what} is accepted")


def check_watch(checker, switch):
    """Two readings, each a document on a line; records of interfaces have rates, those of other lists have none."""
    for shown, display, records, has_rates in (
            ("show interface ethernet 1/1 counters", "counters", "interfaces", True),
            ("show interface ethernet 1/31 trunk errored", "trunk_errored", "interfaces", True),
            ("show interface ethernet 1/1 overview", "overview", "interfaces", True),
            ("show running-config interface ethernet 1/1", "running_config", "commands", False),
            ("show vlan", "vlans", "vlans", False), ("show panel", "panel", "ports", True)):
        line = f"watch 1 {shown} | json"
        with subprocess.Popen([checker.pmsh, "--switch", switch, "-c", line], stdout=subprocess.PIPE, text=True) as watch:
            readings = [watch.stdout.readline() for _ in range(2)]
            watch.send_signal(signal.SIGINT)
        for reading in readings:
            document = checker.check(line, reading, display)
            found = document[records][:1] if document else []
            if [("rates" in record) for record in found] != [has_rates]:
                checker.fault(line, f"rates, not as expected, in {found}")


ARGUMENTS = {"RANGE": "ethernet 1/1", "MODULE": "2", "VLANS": "10-20", "PORT": "0", "SECONDS": "5", "BYTES": "2112", "MAC": "0200.0000.0009",
             "COUNT": "3", "VLAN": "10", "CHANNEL": "1", "CHANGES": "1", "LINES": "0", "WORD": "counters", "TEXT": "some words", "FILE": "saved",
             "SESSION": "7"}


def lines_of_session(pmsh):
    """Every command of the shell but those that others follow, in an order in which it can be typed."""
    general, configuring, settings = [], [], []
    for syntax, display in syntaxes(pmsh):
        words = syntax.split()
        written = {re.sub(r"\[[^\]]*\] ?", "", syntax).strip(), re.sub(r"[\[\]]", "", syntax)}
        lines = sorted(re.sub(r"\b[A-Z]+\b", lambda it: ARGUMENTS.get(it[0], it[0]), line) for line in written)
        if words[0] in ("watch", "do", "configure", "end", "exit", "quit"):
            continue
        kind = settings if display == "settings" and words[0] != "undo" else general
        if words[0] in ("abort", "interface", "confirm", "discard") or words[:2] == ["no", "interface"]:
            kind = configuring
        kind.extend((line, display) for line in lines)
    yield from general
    yield from (("configure", "text"), *configuring, ("end", "text"), ("configure terminal", "text"))
    yield from (("interface ethernet 1/1", "text"), *settings, ("undo 2", "settings"), ("show changes", "changes"))
    yield from (("exit", "text"), ("exit", "text"), ("quit", "text"))


def check_session(checker, switch):
    """One document for each line of a session, whether it is refused or done."""
    lines = list(lines_of_session(checker.pmsh))
    if len(lines) < 150:
        checker.fault("session", f"only {len(lines)} lines")
    with tempfile.TemporaryDirectory() as state:
        written = "".join(f"{line} | json\n" for line, _ in lines)
        command = [os.path.abspath(checker.pmsh), "--switch", os.path.abspath(switch), "--yes"]
        done = subprocess.run(command, input=written, cwd=state, env=dict(os.environ, XDG_STATE_HOME=state),
                              capture_output=True, text=True, check=False)
    documents, left, decoder = [], done.stdout.lstrip(), json.JSONDecoder()
    while left:
        _, end = decoder.raw_decode(left)
        documents.append(left[:end])
        left = left[end:].lstrip()
    if len(documents) != len(lines):
        checker.fault("session", f"{len(documents)} documents of {len(lines)} lines")
    for (line, display), document in zip(lines, documents):
        found = checker.check(f"session: {line}", document, display)
        if found is not None and not line.startswith(found["command"]):
            checker.fault(f"session: {line}", f"document of {found['command']!r}")


def check_refused_lines(checker, switch):
    """Exactly one document, also when a line does not run."""
    for line in ("show nothing | json", "show interface ethernet 9/9 | json", "show interface ethernet 1/4-1 brief | json",
                 "show interface | json | include (", "show interface | count | json", "show module 99 resources | json",
                 "configure | json | jsn", "show \"x | json", "configure ' | json", "interface 'ethernet 1/1 | json",
                 "show interface brief \"| json"):
        document, done = checker.run(switch, line)
        if done.returncode == 0 or not done.stderr:
            checker.fault(line, f"exit code {done.returncode}, standard error {done.stderr!r}")
        errors = [] if document is None else [it for it in document["messages"] if it["severity"] == "error"]
        if not errors:
            checker.fault(line, "no error among the messages")


def report(faults, checked):
    """Ends the program when there are faults; `checked` says in how much they were found."""
    for fault in faults[:40]:
        print(fault)
    if faults:
        sys.exit(f"{len(faults)} faults in {checked}")


def main():
    pmsh, schema_file, *switches = sys.argv[1:]
    with open(schema_file, encoding="utf-8") as file:
        checker = Checker(pmsh, json.load(file))
    lines = list(commands(pmsh))
    if len(lines) < 40:
        sys.exit(f"the command reference lists only {len(lines)} commands")
    for switch in switches:
        checker.run(switch, "show startup-config | json", "startup_config")  # there is none yet
        checker.run(switch, "write | json", "text")
        for line, display in lines:
            checker.run(switch, f"{line} | json", display)
        check_refused_lines(checker, switch)
    check_session(checker, switches[0])
    check_times(checker)
    check_titles(checker)
    check_damage(checker, switches[0])
    check_watch(checker, switches[0])
    report(checker.faults, f"{checker.count} documents")
    print(f"{checker.count} documents of {len(lines)} commands follow the schema")


if __name__ == "__main__":
    main()
