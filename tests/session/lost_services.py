#!/usr/bin/env python3
"""No answer is lost in silence: lost_services.py SHELL SWITCH_FILE...

Every show command while one service is lost, refuses, is silent or answers with less than it promises: when the output is not what it
is otherwise, the exit code is not 0 and standard error names the service; the structured form names it, too.
"""
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

FAULTS = ["lost", "reject", "cut:3", "cut:14"]  # in all commands
SILENT = "silent"                     # a second for each request: in commands about one interface
ARGUMENTS = {"MODULE": "2", "VLANS": "1-200", "RANGE": "ethernet 1/1"}


def run(shell, switch, command, options=()):
    done = subprocess.run(
        [shell, "--switch", switch, "--clock", "1700000000", "--wait", "1", *options, "-c", command],
        stdin=subprocess.DEVNULL, capture_output=True, text=True, env={**os.environ, "TZ": "UTC", "USER": "tester"}, check=False)
    return done.returncode, done.stdout, done.stderr


def commands_of(shell):
    """The show commands of the reference, without optional words and with the structured form where there is one."""
    page = subprocess.run([shell, "--print-command-reference"], capture_output=True, text=True, check=True).stdout
    for words, display in re.findall(r"^\| (?:<code>|`)(show [^`<]*)(?:</code>|`) \| [^|]* \| ([^|]*) \|$", page, re.M):
        if "[RANGE]" in words:
            yield " ".join(ARGUMENTS.get(word.strip("[]"), word) for word in words.split())
        words = re.sub(r"\[[^]]*\] ?", "", words).strip()
        words = " ".join(ARGUMENTS.get(word, word) for word in words.split())
        yield words
        if display.strip():
            yield words + " | json"


def services_of(shell, switch):
    code, _, error = run(shell, switch, "help", ["--provoke", "none=lost"])
    assert code == 1, error
    return re.search(r"It is one of (.*)\.", error).group(1).split(", ")


def fault_of(shell, switch, command, undisturbed, service, fault):
    """What is wrong with the command under a fault, or None."""
    code, out, error = run(shell, switch, command, ["--provoke", f"{service}={fault}"])
    if out == undisturbed:
        return None
    if code == 0:
        return f"its output changes and it exits with 0: {error.strip()[:200]}"
    if code not in (2, 3, 4, 5):
        return f"it exits with {code}: {error.strip()[:200]}"
    if f"'{service}'" not in error:
        return f"standard error does not name the service: {error.strip()[:200]}"
    if command.endswith("json"):
        try:
            document = json.loads(out)
        except ValueError as reason:
            return f"no document: {reason}: {out[:100]}"
        if not any(f"'{service}'" in message["text"] for message in document["messages"]):
            return f"the document does not name the service: {document['messages'][:3]}"
    return None


def main():
    shell, switches = sys.argv[1], sys.argv[2:]
    faults, runs = [], 0
    if not os.path.exists(shell):
        print(f"skipped: everything: {shell} is not built")
        sys.exit(77)
    with ThreadPoolExecutor(12 * os.cpu_count()) as pool:  # many only wait
        for switch in switches:
            print(f"step: {os.path.basename(switch)}", flush=True)
            commands = list(commands_of(shell))
            assert len(commands) > 40, commands
            services = services_of(shell, switch)
            jobs = []
            for command, (code, out, error) in zip(commands, pool.map(lambda it: run(shell, switch, it), commands)):
                if code not in (0, 1, 3, 4):
                    faults.append(f"{switch}: {command}: exits with {code} undisturbed: {error.strip()[:200]}")
                is_about_one = ARGUMENTS["RANGE"] in command
                jobs += [(shell, switch, command, out, service, fault) for service in services
                         for fault in ([SILENT] if is_about_one else FAULTS)]
            for job, fault in zip(jobs, pool.map(lambda it: fault_of(*it), jobs)):
                runs += 1
                if fault:
                    faults.append(f"{os.path.basename(switch)}: {job[2]} with {job[4]}={job[5]}: {fault}")
    print(f"{runs} runs")
    for fault in faults:
        print(fault)
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
