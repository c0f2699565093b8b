#!/usr/bin/python3
"""What a simulated switch keeps when its daemon is killed: state.py PMSH PMSHD SWITCH OTHER_SWITCH

Needs strace.
"""

import itertools
import json
import os
import pathlib
import pwd
import shutil
import subprocess
import sys
import tempfile

import daemon
from daemon import CLOCK, expect, step
from connections import Terminal

NAME = "lab"
PORT = ("configure", "interface ethernet 1/1")
SHOWN = ("show running-config", "show interface counters | json", "show interface brief | json")


def new_folder():
    return tempfile.mkdtemp()


def journal_in(folder):
    return pathlib.Path(folder, f"{NAME}.journal")


class Switch:
    """Starts the daemon again and again with the same state."""

    def __init__(self, pmsh, pmshd, file):
        self.pmsh, self.pmshd, self.file = pmsh, pmshd, file

    def start(self, state, *options, clock=CLOCK, **more):
        return daemon.Daemon(self.pmshd, "--name", NAME, "--switch", self.file, "--clock", clock, *options, clock=False,
                             state=state, **more)

    def run(self, running, *commands, options=()):
        return daemon.run(self.pmsh, running.socket, *commands, options=options)

    def change(self, running, *commands):
        code, out, error = self.run(running, *commands, options=("--yes",))
        expect((code, error) == (0, ""), f"{commands}: {code}: {out}{error}")

    def shown(self, running):
        """What a person and a program see of the switch."""
        answers = [self.run(running, command) for command in SHOWN]
        for code, _, error in answers:
            expect((code, error) == (0, ""), f"{code}: {error}")
        return [out for _, out, _ in answers]

    def description(self, running):
        code, out, error = self.run(running, "show running-config interface ethernet 1/1")
        expect((code, error) == (0, ""), f"{code}: {error}")
        found = [line.split(None, 1)[1] for line in out.splitlines() if line.startswith("  description ")]
        return found[0] if found else ""

    def refusal(self, *options, state, file=None, **more):
        """Why it does not start."""
        with tempfile.TemporaryDirectory() as folder:
            os.chmod(folder, 0o777)
            done = subprocess.run([self.pmshd, "--name", NAME, "--switch", file or self.file, "--socket", f"{folder}/x.sock",
                                   *options], stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False,
                                  env={**os.environ, "STATE_DIRECTORY": state}, **more)
        expect(done.returncode == 1 and done.stderr.count("\n") == 1, f"{done.returncode}: {done.stderr}")
        return done.stderr


# Each is one change, or several that are acknowledged one by one.
CHANGES = (
    PORT + ("description to the lab",),
    ("configure", "interface ethernet 1/2-5", "shutdown"),
    ("configure", "interface ethernet 1/3", "no shutdown"),
    ("configure", "interface ethernet 1/1", "switchport mode trunk", "switchport trunk allowed vlan 10-20"),
    ("configure", "interface loopback 77", "description created"),
    ("configure", "no interface loopback 0"),
    ("clear counters interface ethernet 1/1",),
    ("configure candidate", "interface ethernet 1/6-8", "description together", "switchport mtu 4000", "commit"),
    ("configure", "interface ethernet 1/9", "description undone", "undo"),
)


def check_killed_after_each_change(switch):
    step("killed after each change")
    state = new_folder()
    seen = set()
    for changes in CHANGES:
        with switch.start(state) as running:
            switch.change(running, *changes)
            before = switch.shown(running)
            running.kill()
            with switch.start(state) as again:
                expect(switch.shown(again) == before, f"not as it was after {changes}: {switch.shown(again)}")
                expect("warning" not in again.log() and "not stored" not in again.log(), again.log())
        seen.add("".join(before))
    expect(len(seen) >= len(CHANGES) - 1, "the changes are not seen")  # the last one is undone

    step("without state it is as in its file")
    with daemon.Daemon(switch.pmshd, "--switch", switch.file) as fresh:
        expect(switch.shown(fresh) != before, "it has the changes")
        switch.change(fresh, *CHANGES[0])
    with daemon.Daemon(switch.pmshd, "--switch", switch.file) as fresh:
        expect(switch.description(fresh) != "to the lab", "it keeps its changes")


def bytes_of(switch, running, port):
    code, out, error = switch.run(running, f"show interface {port} counters | json")
    expect(code == 0, error)
    return next(record["input_bytes"] for record in json.loads(out)["interfaces"])


def check_counters(switch):
    step("counters continue")
    state = new_folder()
    later, port, other = str(int(CLOCK) + 100), "ethernet 1/1", "ethernet 1/2"
    with switch.start(state) as running:
        switch.change(running, f"clear counters interface {port}")
        expect(bytes_of(switch, running, port) == 0, "it is not cleared")
        others = bytes_of(switch, running, other)
        running.kill()
    with switch.start(state, clock=later) as running:
        counted = bytes_of(switch, running, port)
        grown = bytes_of(switch, running, other) - others
        shown = switch.shown(running)
        running.kill()
    expect(counted > 0 and grown > 0, f"{counted} and {grown} bytes in 100 seconds")
    with switch.start(state, clock=later) as running:
        expect(switch.shown(running) == shown, "they differ after a second start")
    with daemon.Daemon(switch.pmshd, "--switch", switch.file, "--clock", later, clock=False) as fresh:
        expect(bytes_of(switch, fresh, port) > counted, "they count from their file")


def strace(call, when, *, signal=None, error=None):
    injected = f"signal={signal}" if signal else f"error={error}"
    return ("strace", "-D", "-f", "-qq", "-o", "/dev/null", "-e", f"trace={call}", "-e",
            f"inject={call}:{injected}:when={when}")


def check_killed_at_each_call(switch):
    """The daemon is killed as a call begins: a change that was acknowledged is there, another one as a whole or not."""
    step("killed at each call of a change")
    state = new_folder()
    with switch.start(state) as running:
        switch.change(running, *PORT, "description number 0")
        running.kill()
    known, kills = "number 0", {"old": 0, "new": 0}
    for call in ("pwrite64", "fdatasync", "ftruncate", "sendmsg", "fsync", "rename"):
        for when in itertools.count(1):
            text = f"{call} {when}"
            try:
                running = switch.start(state, tracer=strace(call, when, signal="SIGKILL"))
            except SystemExit as ended:  # it was killed as it started
                expect("ended with -9" in str(ended), f"{text}: {ended}")
                kills["old"] += 1
                continue
            with running:
                code, _, _ = switch.run(running, *PORT, f"description {text}", options=("--yes",))
                is_alive = running.process.poll() is None
                running.kill()
            with switch.start(state) as again:
                found = switch.description(again)
                again.kill()
            expect(found in (known, text), f"killed at {text}: '{found}' is neither the old nor the new one")
            expect(code != 0 or found == text, f"killed at {text}: the acknowledged change is lost")
            known = found
            if code == 0 and is_alive:
                break
            kills["new" if found == text else "old"] += 1
    expect(min(kills.values()) > 0, f"the kills came too late or too early: {kills}")
    print(f"killed at {sum(kills.values())} calls: {kills}")


def check_failing_disk(switch, running, is_full, is_free, reason, state):
    """Changes are refused while the disk is full. `state` returns the folder with the journal."""
    switch.change(running, *PORT, "description kept")
    is_full()
    before = switch.shown(running)
    code, out, error = switch.run(running, *PORT, "description refused", options=("--yes",))
    expect(code == 3 and "Ethernet1/1: cannot store the change in " in out and reason in out, f"{code}: {out}{error}")
    code, out, error = switch.run(running, "configure", "interface loopback 88", options=("--yes",))
    expect(code == 2 and error.count(reason) == 1, f"{code}: {out}{error}")
    code, out, error = switch.run(running, "clear counters interface ethernet 1/1", options=("--yes",))
    expect(code == 2 and reason in error, f"{code}: {out}{error}")
    expect(switch.shown(running) == before, "a refused change is there")
    is_free()
    switch.change(running, "configure", "interface ethernet 1/2", "description later")
    before = switch.shown(running)
    folder = shutil.copytree(state(), os.path.join(new_folder(), "copy"))
    running.kill()
    with switch.start(folder) as again:
        expect(switch.shown(again) == before, f"not as it was: {again.log()}")
        expect("kept" in switch.description(again) and "not stored" not in again.log(), again.log())


def check_file_size_limit(switch):
    step("a limit of file sizes")
    state = new_folder()
    with switch.start(state) as running:
        def limit(size):
            subprocess.run(["prlimit", "--pid", str(running.process.pid), f"--fsize={size}:"], check=True)
        check_failing_disk(switch, running, lambda: limit(journal_in(state).stat().st_size + 10), lambda: limit("unlimited"),
                           "File too large", lambda: state)


def check_full_disk(switch):
    step("a full disk")
    mounted = ("unshare", "-m", "sh", "-c", 'mount -t tmpfs -o size=64k state "$STATE_DIRECTORY" && exec "$@"', "sh")
    if subprocess.run(["unshare", "-m", "true"], capture_output=True, check=False).returncode != 0:
        print("skipped: a full disk: mounts are not allowed here", flush=True)
        return
    state = new_folder()
    with switch.start(state, tracer=mounted) as running:
        inside = f"/proc/{running.process.pid}/root{state}"

        def fill():
            with open(f"{inside}/fill", "wb", buffering=0) as full:
                try:
                    while full.write(b"x" * 4096):
                        continue
                except OSError:
                    pass
            # The last page of the journal has room for more records, the smallest are those of new interfaces.
            for change in ("interface ethernet 1/2", "description {}"), ("interface loopback 1{:02}",):
                for number in itertools.count():
                    lines = [line.format(number) for line in change]
                    code, out, error = switch.run(running, "configure", *lines, options=("--yes",))
                    if code != 0:
                        break
                expect("No space left on device" in out + error, f"{code}: {out}{error}")

        check_failing_disk(switch, running, fill, lambda: os.unlink(f"{inside}/fill"), "No space left on device",
                           lambda: inside)
        expect("They are refused." in running.log() and "again." in running.log(), running.log())


def check_disk_error(switch):
    step("an error of the disk")
    state = new_folder()
    with switch.start(state) as running:
        switch.change(running, *PORT, "description kept")
    # The first change after the start is not written to the disk.
    with switch.start(state, tracer=strace("fdatasync", 1, error="EIO")) as running:
        code, out, error = switch.run(running, *PORT, "description refused", options=("--yes",))
        expect(code == 3 and "Input/output error" in out, f"{code}: {out}{error}")
        expect(switch.description(running) == "kept", "a refused change is there")
        switch.change(running, "configure", "interface ethernet 1/2", "description later")
        before = switch.shown(running)
        running.kill()
    with switch.start(state) as again:
        expect(switch.shown(again) == before, "not as it was")


def check_damage(switch, other_file):
    state = new_folder()
    with switch.start(state) as running:
        for text in ("one", "two", "three"):
            switch.change(running, *PORT, f"description {text}")
        running.kill()
    journal = journal_in(state)
    whole = journal.read_bytes()

    step("a second daemon is refused")
    with switch.start(state) as running:
        expect(f"another pmshd uses the state in '{journal}'" in switch.refusal(state=state), "it starts")
        expect(running.is_serving(), "the first one does not serve any more")

    step("another switch is refused")
    expect("is of a switch with other modules or interfaces" in switch.refusal(state=state, file=other_file), "it starts")

    step("a torn last change is dropped")
    journal.write_bytes(whole[:-1])
    with switch.start(state) as running:
        expect(switch.description(running) == "two", "it is not dropped")
        expect(f"the last change in '{journal}' was not stored completely, at byte " in running.log(), running.log())

    step("damage is refused")
    journal.write_bytes(whole[:40] + bytes([whole[40] ^ 1]) + whole[41:])
    error = switch.refusal(state=state)
    expect(f"the state in '{journal}' is damaged at byte 0: " in error and "--new-state" in error, error)
    with switch.start(state, "--new-state") as running:
        expect(f"the old state is in '{journal}.1'." in running.log(), running.log())
        expect(switch.description(running) not in ("one", "two", "three"), "it has the old state")
    expect(pathlib.Path(f"{journal}.1").read_bytes()[41:] == whole[41:], "the old state is not kept")

    step("a folder that cannot be written")
    error = switch.refusal(state="/proc/none")
    expect("cannot make the folder of '/proc/none/lab.journal': " in error and "--stateless" in error, error)
    if os.geteuid() != 0:
        print("skipped: a folder of another user: needs root, to become another user", flush=True)
        return
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)
        user = pwd.getpwnam("nobody")
        error = switch.refusal(state=folder, user=user.pw_uid, group=user.pw_gid, extra_groups=[])
        expect(f"cannot open '{folder}/lab.journal.lock': Permission denied." in error, error)


def check_unconfirmed_commit(switch):
    for is_confirmed in (False, True):
        step(f"killed {'after' if is_confirmed else 'before'} the confirmation of a commit")
        state = new_folder()
        with switch.start(state) as running:
            switch.change(running, *PORT, "description before")
            before = switch.shown(running)
            shell = Terminal([switch.pmsh, "--connect", running.socket], {**os.environ, "TERM": "dumb", "TZ": "UTC"})
            shell.read_until("# ")
            for line in ("configure candidate", "interface ethernet 1/1-3", "description unconfirmed",
                         "commit confirmed 3600", *(["confirm"] if is_confirmed else [])):
                shell.type(line)
                shell.read_until("# ")
            expect(switch.description(running) == "unconfirmed", "it is not committed")
            if is_confirmed:
                before = switch.shown(running)
            running.kill()
            os.close(shell.descriptor)
            os.waitpid(shell.process, 0)
        with switch.start(state) as again:
            expect(switch.shown(again) == before, f"not as it was: {again.log()}")
            expect(("was not confirmed" in again.log()) != is_confirmed, again.log())


def main():
    pmsh, pmshd, file, other_file = sys.argv[1:]
    os.environ |= {"XDG_STATE_HOME": new_folder()}
    switch = Switch(pmsh, pmshd, file)
    check_killed_after_each_change(switch)
    check_counters(switch)
    check_killed_at_each_call(switch)
    check_file_size_limit(switch)
    check_full_disk(switch)
    check_disk_error(switch)
    check_damage(switch, other_file)
    check_unconfirmed_commit(switch)


if __name__ == "__main__":
    main()
