#!/usr/bin/python3
"""A connection that ends after each of its packets: killed_daemon.py PMSH PMSHD SWITCH RELEASED_PMSH RELEASED_PMSHD

The shell reports it once, with exit code 2, and a document stays one document. A shell at a terminal connects again with
its next line.
"""

import itertools
import json
import os
import pathlib
import re
import subprocess
import sys
import threading
from concurrent.futures import ThreadPoolExecutor

import daemon
from connections import Cutter, Terminal
from daemon import expect, step

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "session"))
import documents as every_document  # noqa: E402 pylint: disable=wrong-import-position
import lost_services  # noqa: E402 pylint: disable=wrong-import-position

LOST = "was lost."


def cut_at_each_packet(pmsh, cutter, command):
    """Returns how many packets the command needs, and how many of the cuts left a document."""
    documents = 0
    for count in range(1, 10000):
        cutter.left = count
        code, out, error = daemon.run(pmsh, cutter.path, command)
        if LOST not in error:
            expect(code != 0 or error == "", f"it is done and reports {error}")
            return count, documents
        where = f"{command}, cut after {count} packets:"
        expect(code == 2, f"{where} it exits with {code}: {error}")
        expect(error.count(LOST) == 1 and len(error.splitlines()) == 1, f"{where} standard error is {error}")
        if command.endswith("json") and (out or documents):
            expect(json.loads(out)["messages"], f"{where} the document has no message")
            documents += 1
    sys.exit("it is never done")


def lines_of_settings(pmsh):
    """Each setting of an interface once."""
    for syntax, display in every_document.syntaxes(pmsh):
        line = re.sub(r"\[[^\]]*\] ?", "", syntax).strip()
        if display == "settings" and not line.startswith("undo"):
            yield re.sub(r"\b[A-Z]+\b", lambda it: every_document.ARGUMENTS.get(it[0], it[0]), line)


def cut_setting(pmsh, cutter, line):
    """The sentence comes once for each command; without its mode, which needs the switch, a command says so."""
    commands = ("configure", "interface ethernet 1/1", line)
    for count in range(1, 10000):
        cutter.left = count
        code, _, error = daemon.run(pmsh, cutter.path, *commands, options=("--yes",))
        if LOST not in error:
            return
        expect(code == 2, f"{line}, cut after {count} packets: it exits with {code}: {error}")
        lost = [it for it in error.splitlines() if it.endswith(LOST)]
        others = [it for it in error.splitlines() if it not in lost and " Type '" not in it]
        expect(1 <= len(lost) <= len(commands) and len(set(lost)) == 1 and not others,
               f"{line}, cut after {count} packets: standard error is {error}")
    sys.exit(f"{line} is never done")


def show_commands(pmsh):
    """Every show command over all interfaces, as a document where it has one."""
    lines = list(lost_services.commands_of(pmsh))
    return [it for it in lines if f"{it} | json" not in lines and lost_services.ARGUMENTS["RANGE"] not in it]


def check_every_command(pmsh, pmshd, file):
    """Each worker has a connection of its own that is cut."""
    numbers, own = itertools.count(), threading.local()

    def cutter_of_worker(switch):
        if not hasattr(own, "cutter"):
            own.cutter = Cutter(switch.socket, os.path.join(switch.folder, f"cut{next(numbers)}.sock"))
        return own.cutter

    with daemon.Daemon(pmshd, "--switch", file) as switch, ThreadPoolExecutor(2 * os.cpu_count()) as pool:
        before = switch.descriptors()
        for what, lines, cut in (("show command", show_commands(pmsh), cut_at_each_packet),
                                 ("setting", list(lines_of_settings(pmsh)), cut_setting)):
            step(f"killed at each packet of every {what}")
            expect(len(lines) > 30, f"only {len(lines)}: {lines}")
            for _ in pool.map(lambda line, cut=cut: cut(pmsh, cutter_of_worker(switch), line), lines):
                pass
        while switch.descriptors() > before:
            expect(switch.is_serving(), "it does not serve")


def check_reconnection(pmsh, pmshd, file):
    step("a shell at a terminal connects again")
    prompt = "# "
    with daemon.Daemon(pmshd, "--switch", file) as first:
        environment = {**os.environ, "TERM": "dumb", "XDG_STATE_HOME": first.folder}
        terminal = Terminal([pmsh, "--connect", first.socket], environment)
        terminal.read_until(prompt)
        terminal.type("show interface mgmt0 brief")
        expect("192.0.2.10" in terminal.read_until(prompt), "the first line has no answer")
        first.kill()
        terminal.type("show interface mgmt0 brief")
        shown = terminal.read_until(prompt)
        expect("192.0.2.10" not in shown and shown.count("pmsh: ") == 1, f"the lost switch is not reported once: {shown}")
        with daemon.Daemon(pmshd, "--switch", file, folder=first.folder, stale=True):
            terminal.type("show interface mgmt0 brief")
            shown = terminal.read_until(prompt)
            expect("192.0.2.10" in shown and "pmsh: " not in shown, f"it does not connect again: {shown}")
            terminal.type("exit")
            expect(os.waitstatus_to_exitcode(os.waitpid(terminal.process, 0)[1]) == 0, "the shell failed")


def check_several_commands(pmsh, cutter, command, count):
    step("later commands fail at once")
    cutter.left = count // 2
    code, out, error = daemon.run(pmsh, cutter.path, command, "show interface status")
    expect(code == 2 and "connected" not in out, f"exit code {code}, output {out}")
    expect(error.count(LOST) == len(error.splitlines()) == 2, f"not one sentence for each command: {error}")


def check_no_switch(pmsh, folder):
    step("no switch")
    code, out, error = daemon.run(pmsh, "lab", "show interface", environment={"XDG_RUNTIME_DIR": folder})
    expect((code, out) == (2, "") and error.startswith("pmsh: no switch 'lab' is running: start it with 'pmshd --name lab'"),
           f"{code}: {error}")
    code, _, error = daemon.run(pmsh, f"{folder}/none.sock", "show interface")
    expect(code == 2 and f"start it with 'pmshd --socket {folder}/none.sock'" in error, f"{code}: {error}")
    code, _, error = daemon.run(pmsh, "../lab", "show interface")
    expect(code == 2 and "no switch is running at '../lab'" in error, f"{code}: {error}")
    code, _, error = daemon.run(pmsh, "a b", "show interface")
    expect(code == 2 and "'a b' is not the name of a switch" in error, f"{code}: {error}")


def check_stopped_daemon(pmsh, switch):
    step("a switch that does not answer")
    switch.process.send_signal(daemon.signal.SIGSTOP)
    try:
        shell = subprocess.Popen([pmsh, "--connect", switch.socket, "-c", "show interface brief"], stdout=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE)
        shell.terminate()  # the wait for its hello ends with the shell
        shell.communicate()
    finally:
        switch.process.send_signal(daemon.signal.SIGCONT)


def main():
    pmsh, pmshd, file, released_pmsh, released_pmshd = sys.argv[1:]
    with daemon.Daemon(pmshd, "--switch", file) as switch:
        cutter = Cutter(switch.socket, os.path.join(switch.folder, "cut.sock"))
        for command in ("show interface ethernet 1/1", "show interface ethernet 1/1-2 brief | json",
                        "show interface ethernet 1/1 transceiver details | json"):
            step(f"killed at each packet of {command}")
            count, documents = cut_at_each_packet(pmsh, cutter, command)
            expect(count > 5, f"only {count} packets")
            # The shell begins with requests of its own, before the document.
            expect(documents > count / 3 or not command.endswith("json"), f"only {documents} documents")
        check_several_commands(pmsh, cutter, command, count)
        check_stopped_daemon(pmsh, switch)
        check_no_switch(pmsh, switch.folder)
        expect(" is ended: " not in switch.log(), f"shells were ended: {switch.log()}")
    check_reconnection(pmsh, pmshd, file)
    if os.path.exists(released_pmshd):
        check_every_command(released_pmsh, released_pmshd, file)
    else:
        print(f"skipped: every command: {released_pmshd} is not built", flush=True)


if __name__ == "__main__":
    main()
