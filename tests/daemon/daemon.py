"""A running pmshd, shells on it, and frames by hand: for the tests of this folder."""

import os
import pathlib
import re
import signal
import socket
import struct
import subprocess
import sys
import tempfile

CLOCK = "1700000000"
HEAD = struct.Struct(">IBBHIIII")  # size, kind, flags, zero, token, node, access point, opcode
HELLO, WELCOME, REFUSAL, REQUEST, ANSWER, REJECT = range(1, 7)
MORE_FOLLOWS = 1
LOCAL_NODE = 0xFE000000
PORT_MANAGER = 179
PORT_CONFIG = 301  # an opcode of the port manager; it rejects a request without a range
PACKET = 1024 * 1024
CLOCK_SHOWN = re.compile(r"[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]{8}Z\n")


def frame(kind, payload=b"", token=0, node=0, sap=0, opcode=0, flags=0, size=None):
    return HEAD.pack(len(payload) if size is None else size, kind, flags, 0, token, node, sap, opcode) + payload


def text(value):
    return struct.pack(">I", len(value)) + value


def hello(version=1, terminal=b""):
    return frame(HELLO, b"pmsh" + struct.pack(">I", version) + text(b"test") + text(terminal))


def read_frames(packet):
    """Kind, token and payload of each frame of a packet."""
    while packet:
        size, kind, _, _, token, _, _, _ = HEAD.unpack_from(packet)
        end = HEAD.size + size
        assert end <= len(packet), packet
        yield kind, token, packet[HEAD.size:end]
        packet = packet[end:]


def read_frame(packet):
    """The same of a packet of one frame."""
    frame_of_packet, = read_frames(packet)
    return frame_of_packet


class Daemon:
    """pmshd at a socket in a folder of its own. It is ready when the constructor returns. It forgets all changes at its
    end, unless `state` names the folder that keeps them. `tracer` is a command that runs it, such as strace."""

    def __init__(self, program, *options, folder=None, stale=False, clock=True, environment=None, state=None, tracer=()):
        self.folder = folder or tempfile.mkdtemp()
        self.socket = os.path.join(self.folder, "x.sock")
        assert stale or not os.path.exists(self.socket)
        self.log_file = os.path.join(self.folder, "log")
        ready = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        notify = os.path.join(self.folder, "notify")
        if os.path.exists(notify):
            os.unlink(notify)
        ready.bind(notify)
        with open(self.log_file, "ab") as log:
            self.process = subprocess.Popen(
                [*tracer, program, *(["--clock", CLOCK] if clock else []), "--socket", self.socket,
                 *([] if state else ["--stateless"]), *options],
                stdin=subprocess.DEVNULL, stderr=log,
                env={**os.environ, "NOTIFY_SOCKET": notify, **({"STATE_DIRECTORY": state} if state else {}),
                     **(environment or {})})
        ready.settimeout(1)
        while True:
            try:
                if b"READY=1" in ready.recv(4096):
                    break
            except TimeoutError:
                if self.process.poll() is not None:
                    sys.exit(f"pmshd ended with {self.process.returncode}: {self.log()}")
        self.notified = ready

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.terminate()
            if self.process.wait() != 0 and sys.exc_info()[0] is None:
                sys.exit(f"pmshd ended with {self.process.returncode}: {self.log()}")
        self.notified.close()

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()

    def log(self):
        return pathlib.Path(self.log_file).read_text(encoding="utf-8")

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def connect(self, greet=True):
        """A connection by hand."""
        made = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        made.connect(self.socket)
        if greet:
            made.send(hello())
            kind, _, _ = read_frame(made.recv(PACKET))
            assert kind == WELCOME, kind
        return made

    def is_serving(self):
        """Whether a new client has an answer."""
        with self.connect():
            return True


def run(shell, target, *commands, options=(), environment=None):
    """Runs commands in a shell on the switch; returns exit code, output and errors."""
    lines = [word for command in commands for word in ("-c", command)]
    done = subprocess.run([shell, "--connect", target, *options, *lines], stdin=subprocess.DEVNULL, capture_output=True,
                          text=True, env={**os.environ, "TZ": "UTC", **(environment or {})}, check=False)
    return done.returncode, done.stdout, done.stderr


class Shell:
    """A shell that runs a line when it is written, with its output and its errors together."""

    def __init__(self, shell, switch):
        self.process = subprocess.Popen([shell, "--connect", switch.socket], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True, env={**os.environ, "TZ": "UTC"})

    def run(self, *lines):
        """What the lines print, up to the sign that the last one has ended."""
        self.process.stdin.write("".join(line + "\n" for line in (*lines, "show clock")))
        self.process.stdin.flush()
        shown = []
        for line in self.process.stdout:
            if CLOCK_SHOWN.fullmatch(line):
                return "".join(shown)
            shown.append(line)
        sys.exit(f"the shell ended: {''.join(shown)}")

    def kill(self):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()

    def end(self):
        out, _ = self.process.communicate()
        return self.process.returncode, out


class Watch:
    """A running "watch events": its titles have been read, so events come."""

    def __init__(self, pmsh, switch, command="watch events"):
        self.process = subprocess.Popen([pmsh, "--connect", switch.socket, "-c", command], stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, env={**os.environ, "TZ": "UTC"})
        expect("Kind" in self.process.stdout.readline(), "there are no titles")

    def read_until(self, text):
        for line in self.process.stdout:
            if text in line:
                return line
        sys.exit(f"'{text}' does not come: {self.process.stderr.read()}")

    def interrupt(self):
        self.process.send_signal(signal.SIGINT)
        self.process.communicate()
        return self.process.returncode


def step(name):
    print(f"step: {name}", flush=True)


def expect(is_so, what):
    if not is_so:
        sys.exit(what)
