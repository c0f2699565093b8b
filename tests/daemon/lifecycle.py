#!/usr/bin/python3
"""How the daemon starts and ends: lifecycle.py PMSH PMSHD SWITCH"""

import os
import pwd
import shutil
import signal
import socket
import stat
import subprocess
import sys
import tempfile

import daemon
from daemon import expect, step


def start_and_fail(pmshd, *options, environment=None, **popen):
    done = subprocess.run([pmshd, *options], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          env={**os.environ, **(environment or {})}, check=False, **popen)
    return done.returncode, done.stderr


def check_signals(pmshd, file):
    for number in (signal.SIGTERM, signal.SIGINT):
        step(f"{number.name} ends it and removes the socket")
        with daemon.Daemon(pmshd, "--switch", file) as switch:
            with switch.connect() as client:
                switch.process.send_signal(number)
                expect(switch.process.wait() == 0, f"it exits with {switch.process.returncode}")
                expect(client.recv(daemon.PACKET) == b"", "a client is not closed")
            expect(not os.path.exists(switch.socket), "the socket is there")
            expect(f"ended by {number.name}." in switch.log(), "it is not logged")


def check_stale_socket(pmsh, pmshd, file):
    step("the socket of a killed daemon is taken over")
    with daemon.Daemon(pmshd, "--switch", file) as first:
        first.kill()
        expect(stat.S_ISSOCK(os.stat(first.socket).st_mode), "the socket is not left over")
        with daemon.Daemon(pmshd, "--switch", file, folder=first.folder, stale=True) as second:
            expect(daemon.run(pmsh, second.socket, "show interface mgmt0 brief")[0] == 0, "it does not serve")


def check_second_daemon(pmshd, file):
    step("a second daemon is refused with the name")
    with daemon.Daemon(pmshd, "--switch", file, "--name", "lab") as switch:
        code, error = start_and_fail(pmshd, "--switch", file, "--name", "lab", "--socket", switch.socket)
        expect(code == 1 and "the switch 'lab' is running already" in error, f"{code}: {error}")
        expect(switch.is_serving(), "the first one does not serve any more")


def check_other_file(pmshd, file):
    step("a file is not replaced by a socket")
    with tempfile.NamedTemporaryFile() as other:
        code, error = start_and_fail(pmshd, "--switch", file, "--socket", other.name)
        expect(code == 1 and f"'{other.name}' is a file and not a socket" in error and os.path.isfile(other.name),
               f"{code}: {error}")


def check_wrong_options(pmshd, file):
    step("wrong options")
    for options, reason in (
            (["--switch", "/nonexistent.yaml"], "/nonexistent.yaml"),
            (["--switch", file, "--name", "a/b"], "'a/b' is not a name"),
            (["--switch", file, "--name", "." * 3], "'...' is not a name"),
            (["--switch", file, "--socket", "/" + "x" * 120], "too long for a socket"),
            (["--switch", file, "--socket", "/proc/none/x.sock"], "'/proc/none'"),
            (["--replay", "/nonexistent"], "/nonexistent")):
        code, error = start_and_fail(pmshd, *options)
        expect(code == 1 and reason in error, f"{options}: {code}: {error}")


def check_usual_place(pmsh, pmshd, file):
    step("the usual place of a user's switch")
    if os.geteuid() != 0:
        print("skipped: the usual place of a user's switch: needs root, to become another user", flush=True)
        return
    user = pwd.getpwnam("nobody")
    runtime = tempfile.mkdtemp()
    os.chmod(runtime, 0o700)
    os.chown(runtime, user.pw_uid, user.pw_gid)
    # The leak checker may not trace a process that changed its user: it would try for ever.
    checks = ":".join(filter(None, [os.environ.get("ASAN_OPTIONS"), "detect_leaks=0"]))
    environment = {"XDG_RUNTIME_DIR": runtime, "HOME": runtime, "ASAN_OPTIONS": checks}
    as_user = {"user": user.pw_uid, "group": user.pw_gid, "extra_groups": []}
    path = os.path.join(runtime, "pmsh", "lab.sock")
    with subprocess.Popen([pmshd, "--stateless", "--switch", file, "--name", "lab"], stderr=subprocess.PIPE, text=True,
                          env={**os.environ, **environment}, **as_user) as running:
        expect(f"serves the switch 'lab' at {path}." in running.stderr.readline(), "it is not at the usual place")
        expect(stat.S_IMODE(os.stat(path).st_mode) == 0o600, "others may connect")
        expect(stat.S_IMODE(os.stat(os.path.dirname(path)).st_mode) == 0o700, "others may look into the folder")
        code, error = start_and_fail(pmshd, "--switch", file, "--name", "lab", environment=environment, **as_user)
        expect(code == 1 and f"the switch 'lab' is running already, at '{path}'" in error, f"{code}: {error}")

        done = subprocess.run([pmsh, "--connect", "lab", "-c", "show interface mgmt0 brief"], capture_output=True, text=True,
                              env={**os.environ, **environment}, check=False, **as_user)
        expect(done.returncode == 0 and "192.0.2.10" in done.stdout, f"{done.returncode}: {done.stderr}")
        done = subprocess.run([pmsh, "--connect", "lub", "-c", "show interface mgmt0 brief"], capture_output=True, text=True,
                              env={**os.environ, **environment}, check=False, **as_user)
        expect("no switch 'lub' is running" in done.stderr and "connect to one of lab" in done.stderr, done.stderr)

        step("a socket of another user is refused")
        other = {**as_user, "user": user.pw_uid - 1}
        os.chmod(runtime, 0o711)
        os.chmod(os.path.dirname(path), 0o711)
        done = subprocess.run([pmsh, "--connect", path, "-c", "show interface"], capture_output=True, text=True,
                              env={**os.environ, **environment}, check=False, **other)
        expect(done.returncode == 2 and "permission denied for the switch" in done.stderr, done.stderr)
        running.terminate()
    expect(not os.path.exists(path), "the socket is there")

    step("no place for the socket")
    shutil.rmtree(runtime)
    code, error = start_and_fail(pmshd, "--switch", file, environment={**environment, "XDG_RUNTIME_DIR": ""}, **as_user)
    expect(code == 1 and "XDG_RUNTIME_DIR is not set. Name a socket with --socket." in error, f"{code}: {error}")


def activated(pmshd, file, descriptors, **popen):
    """Starts the daemon as systemd does: sockets from descriptor 3 on."""
    def pass_sockets():
        for place, descriptor in enumerate(descriptors):
            os.dup2(descriptor, 3 + place)
            os.set_inheritable(3 + place, True)
        os.environ.update({"LISTEN_PID": str(os.getpid()), "LISTEN_FDS": str(len(descriptors))})
        os.execv(pmshd, [pmshd, "--stateless", "--switch", file, "--clock", daemon.CLOCK])

    launcher = os.fork()
    if launcher == 0:
        try:
            os.dup2(popen["stderr"], 2)
            pass_sockets()
        finally:
            os._exit(99)
    return launcher


def check_activation(pmsh, pmshd, file):
    step("the socket of systemd")
    folder = tempfile.mkdtemp()
    path, log = os.path.join(folder, "x.sock"), os.path.join(folder, "log")
    with socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET) as listening, open(log, "wb") as errors:
        listening.bind(path)
        listening.listen()
        process = activated(pmshd, file, [listening.fileno()], stderr=errors.fileno())
        code, out, error = daemon.run(pmsh, path, "show interface mgmt0 brief")
        expect(code == 0 and "192.0.2.10" in out, f"{code}: {error}")
        os.kill(process, signal.SIGTERM)
        expect(os.waitstatus_to_exitcode(os.waitpid(process, 0)[1]) == 0, "it failed")
        expect(os.path.exists(path), "the socket of systemd was removed")

        step("another socket than one of packets")
        with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as stream:
            stream.bind(os.path.join(folder, "stream.sock"))
            stream.listen()
            process = activated(pmshd, file, [stream.fileno()], stderr=errors.fileno())
            expect(os.waitstatus_to_exitcode(os.waitpid(process, 0)[1]) == 1, "it starts")
    with open(log, encoding="utf-8") as text:
        expect("Use one ListenSequentialPacket= in the socket unit." in text.read(), "it does not say why")


def check_socket_activate(pmsh, pmshd, file):
    step("systemd-socket-activate")
    if shutil.which("systemd-socket-activate") is None:
        print("skipped: systemd-socket-activate: it is not installed", flush=True)
        return
    path = os.path.join(tempfile.mkdtemp(), "x.sock")
    with subprocess.Popen(["systemd-socket-activate", "--seqpacket", "-l", path, pmshd, "--stateless", "--switch", file],
                          stderr=subprocess.DEVNULL) as running:
        while not os.path.exists(path):
            pass
        code, out, error = daemon.run(pmsh, path, "show interface mgmt0 brief")
        expect(code == 0 and "192.0.2.10" in out, f"{code}: {error}")
        running.terminate()


def check_watchdog(pmshd, file):
    step("the watchdog is notified")
    with daemon.Daemon(pmshd, "--switch", file, environment={"WATCHDOG_USEC": "200000"}) as switch:
        switch.notified.settimeout(None)
        while b"WATCHDOG=1" not in switch.notified.recv(4096):
            pass
        switch.process.terminate()
        while b"STOPPING=1" not in switch.notified.recv(4096):
            pass


def main():
    pmsh, pmshd, file = sys.argv[1:]
    check_signals(pmshd, file)
    check_stale_socket(pmsh, pmshd, file)
    check_second_daemon(pmshd, file)
    check_other_file(pmshd, file)
    check_wrong_options(pmshd, file)
    check_usual_place(pmsh, pmshd, file)
    check_activation(pmsh, pmshd, file)
    check_socket_activate(pmsh, pmshd, file)
    check_watchdog(pmshd, file)


if __name__ == "__main__":
    main()
