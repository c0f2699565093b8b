#!/usr/bin/python3
"""What a daemon captured answers as its switch did: capture.py PMSH PMSHD SWITCH"""

import datetime
import json
import os
import stat
import struct
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

import daemon
from daemon import expect, step
from same_output import SESSION, commands_of

FILE_HEAD = struct.Struct(">8sII")
RECORD_HEAD = struct.Struct(">IIB3xQQQ")  # size, checksum, sender, client, monotonic and wall time in nanoseconds


def run(pmsh, options, command=None, lines=""):
    done = subprocess.run([pmsh, *options, *(["-c", command] if command else [])], input=lines, capture_output=True,
                          text=True, env={**os.environ, "TZ": "UTC", "USER": "tester"}, check=False)
    return done.returncode, done.stdout, done.stderr


def read(capture):
    """Sender, client, wall time in nanoseconds and the frame of each record."""
    with open(capture, "rb") as file:
        data = file.read()
    expect(FILE_HEAD.unpack_from(data) == (b"pmshfrm\n", 1, 1), data[:16])
    at = FILE_HEAD.size
    while at < len(data):
        size, _, sender, client, _, wall = RECORD_HEAD.unpack_from(data, at)
        at += RECORD_HEAD.size
        yield sender, client, wall, data[at:at + size]
        at += size


def check_all_commands(pmsh, pmshd, file, capture):
    step("every show command shows the same bytes without daemon and switch")
    commands = list(commands_of(pmsh))
    expect(len(commands) > 100, f"the reference has only {len(commands)} commands")
    with daemon.Daemon(pmshd, "--switch", file, "--capture", capture) as switch, ThreadPoolExecutor(os.cpu_count()) as pool:
        options = ["--connect", switch.socket]
        shown = list(pool.map(lambda it: run(pmsh, options, it), commands))
    expect(stat.S_IMODE(os.stat(capture).st_mode) == 0o600, "others can read it")
    frames = list(read(capture))
    expect({frame[0] for frame in frames} == {1, 2}, "one side is missing")
    expect({frame[1] for frame in frames} == set(range(1, len(commands) + 1)), "a shell is missing")

    def compare(place):
        replayed = run(pmsh, ["--replay-frames", capture], commands[place])
        expect(replayed == shown[place], f"{commands[place]}: shown {shown[place]}\nreplayed {replayed}")

    with ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(compare, range(len(commands))))

    step("a request that was not recorded is named")
    code, out, error = run(pmsh, ["--replay-frames", capture], "show interface ethernet 1/2 brief")
    expect(code == 2 and error.startswith(f"pmsh: the capture '{capture}' has no answer to this request: opcode ")
           and error.count("\n") == 1, f"{code}: {out}{error}")


def check_session(pmsh, pmshd, file, capture):
    step("a session that changes settings is replayed, also of a daemon that was killed")
    with daemon.Daemon(pmshd, "--switch", file, "--capture", capture) as switch:
        lines = SESSION + "show sessions\nshow clock\nclock advance 60\nshow clock\nshow interface ethernet 1/1\n"
        shown = run(pmsh, ["--connect", switch.socket], lines=lines)
        switch.kill()
    for _ in range(2):
        replayed = run(pmsh, ["--replay-frames", capture], lines=lines)
        expect(replayed == shown, f"shown {shown}\nreplayed {replayed}")


def check_running_clock(pmsh, pmshd, file, capture):
    step("a clock that runs shows the time of the recording")
    with daemon.Daemon(pmshd, "--switch", file, "--capture", capture, clock=False) as switch:
        expect(run(pmsh, ["--connect", switch.socket], "show clock | json")[0] == 0, "the clock is not shown")
    seconds = {wall // 10**9 for _, _, wall, _ in read(capture)}
    replayed = [run(pmsh, ["--replay-frames", capture], "show clock | json") for _ in range(2)]
    expect(replayed[0] == replayed[1], replayed)
    text = json.loads(replayed[0][1])["clock"]["clock_time"]
    moment = int(datetime.datetime.fromisoformat(text.replace("Z", "+00:00")).timestamp())
    expect(moment in seconds, f"{moment} and {seconds}")


def check_events(pmsh, pmshd, folder):
    step("events are replayed as often as they came")
    space = f"pmclicapture{os.getpid()}"
    if subprocess.run(["ip", "netns", "add", space], capture_output=True, check=False).returncode != 0:
        print("skipped: capture_events: network namespaces are not allowed here")
        return
    launcher = os.path.join(folder, "pmshd-in-space")
    with open(launcher, "w", encoding="utf-8") as script:
        script.write(f'#!/bin/sh\nexec ip netns exec {space} {pmshd} "$@"\n')
    os.chmod(launcher, 0o700)
    capture = os.path.join(folder, "events")
    words = ["-c", "watch events count 2"]
    try:
        with daemon.Daemon(launcher, "--name", "events", "--kernel", "--capture", capture, clock=False) as switch:
            with subprocess.Popen([pmsh, "--connect", switch.socket, *words], stdout=subprocess.PIPE, text=True) as watch:
                shown = watch.stdout.readline()
                subprocess.run(["ip", "-n", space, "link", "add", "left", "type", "veth", "peer", "name", "right"], check=True)
                shown += watch.stdout.read()
    finally:
        subprocess.run(["ip", "netns", "del", space], check=True)
    expect(shown.count("added: veth") == 2, shown)
    replayed = subprocess.run([pmsh, "--replay-frames", capture, *words], capture_output=True, text=True, check=False)
    expect((replayed.returncode, replayed.stdout, replayed.stderr) == (0, shown, ""), f"{shown}\n{replayed}")


def check_full_disk(pmsh, pmshd, file, folder):
    step("a full disk ends the capture, and the switch is served on")
    launcher = os.path.join(folder, "pmshd")
    with open(launcher, "w", encoding="utf-8") as script:
        script.write(f'#!/bin/sh\nulimit -f 100\nexec {pmshd} "$@"\n')
    os.chmod(launcher, 0o700)
    capture = os.path.join(folder, "full")
    with daemon.Daemon(launcher, "--switch", file, "--capture", capture) as switch:
        options = ["--connect", switch.socket]
        first = run(pmsh, options, "show interface ethernet 1/1")
        for _ in range(3):
            expect(run(pmsh, options, "show running-config")[0] == 0, "a shell is not served")
            for _ in range(10):
                expect(run(pmsh, options, "show interface")[0] == 0, "a shell is not served")
        line = "the capture ended, the switch is served on: File too large."
        expect(switch.log().count(line) == 1, switch.log())
    # It ends with a whole frame.
    expect(run(pmsh, ["--replay-frames", capture], "show interface ethernet 1/1") == first, "what it has is lost")


def check_hostile_frames(pmsh, pmshd, file, capture):
    step("bytes that are no frames are not captured")
    with daemon.Daemon(pmshd, "--switch", file, "--capture", capture) as switch:
        for packet in (b"x", daemon.frame(99), daemon.frame(daemon.REQUEST, size=1000), daemon.hello(version=9),
                       daemon.frame(daemon.REQUEST)):
            with switch.connect(greet=False) as client:
                client.send(packet)
                while client.recv(daemon.PACKET):
                    pass
        shown = run(pmsh, ["--connect", switch.socket], "show version")
    expect(run(pmsh, ["--replay-frames", capture], "show version") == shown, "it cannot be replayed")


def check_refused_files(pmsh, pmshd, file, folder, capture):
    step("files that are no captures are refused")
    with open(capture, "rb") as whole:
        data = whole.read()
    other = os.path.join(folder, "other")
    for changed, at, text in ((data[:1000], None, " bytes"), (b"\x7fELF" + data[4:], 0, "this is not a capture of frames"),
                              (data[:60] + bytes([data[60] ^ 1]) + data[61:], 20, "the checksum"), (b"", 0, "this is not")):
        with open(other, "wb") as made:
            made.write(changed)
        code, out, error = run(pmsh, ["--replay-frames", other], "show version")
        place = f"pmsh: '{other}', byte " + ("" if at is None else f"{at}: ")
        expect((code, out) == (1, "") and error.startswith(place) and text in error, f"{code}: {out}{error}")
    code, _, error = run(pmsh, ["--replay-frames", folder + "/none"], "show version")
    expect((code, error) == (1, f"pmsh: cannot read the capture '{folder}/none': No such file or directory.\n"), error)
    code, _, error = run(pmsh, ["--replay-frames", other, "--switch", file], "show version")
    expect(code == 1 and "excludes" in error, error)

    step("a capture does not follow links")
    link = os.path.join(folder, "link")
    os.symlink(capture, link)
    begun = [pmshd, "--switch", file, "--socket", folder + "/x.sock", "--capture", link]
    done = subprocess.run(begun, capture_output=True, text=True, check=False)
    expect(done.returncode == 1 and f"cannot write the capture '{link}': it is a symbolic link." in done.stderr,
           f"{done.returncode}: {done.stderr}")
    with open(capture, "rb") as whole:
        expect(whole.read() == data, "the file is another one")


def main():
    pmsh, pmshd, file = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        os.environ |= {"XDG_STATE_HOME": folder, "LC_ALL": "C.UTF-8", "TZ": "UTC"}
        capture = os.path.join(folder, "frames")
        check_session(pmsh, pmshd, file, capture)
        check_running_clock(pmsh, pmshd, file, capture)
        check_hostile_frames(pmsh, pmshd, file, capture)
        check_all_commands(pmsh, pmshd, file, capture)
        check_refused_files(pmsh, pmshd, file, folder, capture)
        check_events(pmsh, pmshd, folder)
        check_full_disk(pmsh, pmshd, file, folder)


if __name__ == "__main__":
    main()
