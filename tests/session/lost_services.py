#!/usr/bin/env python3
"""No answer is lost in silence: lost_services.py SHELL SWITCH_FILE...

Every show command while one service is lost, refuses, is silent or answers with less than it promises, and while one client library
is missing: when the output is not what it is otherwise, the exit code is not 0 and standard error names the service or the library; the
structured form names it, too.
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

FAULTS = ["lost", "reject", "cut:3", "cut:14"]  # in all commands
SILENT = "silent"                     # a second for each request: in commands about one interface
ARGUMENTS = {"MODULE": "2", "VLANS": "1-200", "RANGE": "ethernet 1/1", "MAC": "0200.0000.0009"}


def run(shell, switch, command, options=()):
    done = subprocess.run(
        [shell, "--switch", switch, "--clock", "1700000000", "--wait", "1", *options, "-c", command],
        stdin=subprocess.DEVNULL, capture_output=True, text=True, env={**os.environ, "TZ": "UTC", "USER": "tester"}, check=False)
    tree = str(pathlib.Path(shell).resolve().parent.parent)  # 'show version' names the file of the command library
    shown = re.sub(r"(?<=root)( +)[0-9]+ +|(?<=\"process\":)[0-9]+", " PROCESS ", done.stdout)  # of 'show sessions'
    return done.returncode, shown.replace(tree, ""), done.stderr


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
    code, _, error = run(shell, switch, "help", ["--inject-fault", "none=lost"])
    assert code == 1, error
    return re.search(r"Expected one of (.*)\.", error).group(1).split(", ")


def tree_without(library, shell, root):
    """The shell in a tree of its own that has all libraries but one. The loader finds them from where the program lies."""
    tree = pathlib.Path(root, library)
    libraries = pathlib.Path(shell).resolve().parent.parent / "lib"
    (tree / "bin").mkdir(parents=True)
    (tree / "lib").mkdir()
    shutil.copy2(shell, tree / "bin" / "pmsh")
    for other in libraries.iterdir():
        if other.name != library:
            (tree / "lib" / other.name).symlink_to(other)
    return str(tree / "bin" / "pmsh")


def client_libraries(shell):
    """Those that the command library opens by name: all but itself and the host as a library."""
    libraries = pathlib.Path(shell).resolve().parent.parent / "lib"
    return sorted(it.name for it in libraries.glob("lib*.so") if it.name not in ("libpmcli_common.so", "libpmhost.so"))


def fault_of(shell, switch, command, undisturbed, service, fault):
    """What is wrong with the command under a fault of a service, or None. Without a fault the "service" is a library that is missing."""
    code, out, error = run(shell, switch, command, ["--inject-fault", f"{service}={fault}"] if fault else [])
    if out == undisturbed:
        return None
    if code == 0:
        return f"its output changes and it exits with 0: {error.strip()[:200]}"
    if code not in (2, 3, 4, 5):
        return f"it exits with {code}: {error.strip()[:200]}"
    if f"'{service}'" not in error:
        return f"standard error does not name '{service}': {error.strip()[:200]}"
    if command.endswith("json"):
        try:
            document = json.loads(out)
        except ValueError as reason:
            return f"no document: {reason}: {out[:100]}"
        if not any(f"'{service}'" in message["text"] for message in document["messages"]):
            return f"the document does not name '{service}': {document['messages'][:3]}"
    return None


def main():
    shell, switches = sys.argv[1], sys.argv[2:]
    faults, runs = [], 0
    if not os.path.exists(shell):
        print(f"skipped: everything: {shell} is not built")
        sys.exit(77)
    libraries = client_libraries(shell)
    assert len(libraries) == 7, libraries
    with tempfile.TemporaryDirectory() as root, ThreadPoolExecutor(12 * os.cpu_count()) as pool:  # many only wait
        os.environ["XDG_STATE_HOME"] = os.path.join(root, "state")
        shells = {library: tree_without(library, shell, root) for library in libraries}
        for switch in switches:
            print(f"step: {os.path.basename(switch)}", flush=True)
            code, _, error = run(shell, switch, "write")  # for 'show startup-config'
            assert code == 0, error
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
                jobs += [(reduced, switch, command, out, library, None) for library, reduced in shells.items()]
            for job, fault in zip(jobs, pool.map(lambda it: fault_of(*it), jobs)):
                runs += 1
                if fault:
                    cause = f"with {job[4]}={job[5]}" if job[5] else f"without {job[4]}"
                    faults.append(f"{os.path.basename(switch)}: {job[2]} {cause}: {fault}")
    print(f"{runs} runs")
    for fault in faults:
        print(fault)
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
