#!/usr/bin/python3
"""Types transcripts at a terminal and compares what it shows: transcripts.py [--patience SECONDS] [--daemon PMSHD] PMSH NAME.in...

With --daemon the switch is that of a pmshd of its own, to which the shell connects. What is shown is the same.

NAME.in begins with comments: what the transcript shows, and optional settings,

    # options: --inject-fault statistics=silent     options of the shell
    # switch: lab.yaml                         a file of tests/session or of switches/; none: the options choose one
    # size: 80x24                              columns and rows of the terminal
    # environment: LC_ALL=C NO_COLOR=1         variables

and goes on with what a person types. Empty lines are skipped. A line is typed after the prompt, with Enter at its end:

    show interface<TAB>
    type: show tr?          without Enter
    wait: --More--          waits for this text in place of the prompt; "wait: lab#" waits for a prompt
    screen: first page      keeps what is on the screen, under this title

Keys are written by their names: <TAB> <Ctrl-C> <Up> ...; <resize 40x10> changes the size of the terminal. The clock of the
shell is stopped. The session ends when the program does.

NAME.out, written by hand, is all that a person sees by then: the kept screens, all lines of the session, and the exit code
unless it is 0. "~" is the home directory, which is new. It is compared as a whole.
"""

import argparse
import difflib
import fcntl
import os
import pathlib
import re
import select
import shlex
import socket
import struct
import subprocess
import sys
import tempfile
import termios
import time

from screen import Screen

HERE = pathlib.Path(__file__).resolve().parent
SWITCHES = HERE.parent.parent / "switches"
SETTLED_SECONDS = 0.02  # a prompt after which more is written at once was part of something else

PROMPT = re.compile(r"^\S+# $")
SETTING = re.compile(r"^# (options|switch|size|environment): (.+)$")
KEYS = {
    "TAB": b"\t", "Enter": b"\r", "Backspace": b"\x7f", "Space": b" ",
    "Up": b"\x1b[A", "Down": b"\x1b[B", "Right": b"\x1b[C", "Left": b"\x1b[D", "Home": b"\x01", "End": b"\x05", "Ctrl-C": b"\x03", "Ctrl-D": b"\x04", "Ctrl-L": b"\x0c",
    "Ctrl-R": b"\x12", "Ctrl-U": b"\x15", "Ctrl-W": b"\x17", "Ctrl-Z": b"\x1a",
}
KEY = re.compile("<(" + "|".join(KEYS) + r"|resize (\d+)x(\d+))>")


class Failure(Exception):
    pass


class Session:
    """The shell at a pseudo-terminal, in a home directory of its own."""

    def __init__(self, program, arguments, settings, home, patience):
        columns, rows = map(int, settings.get("size", "80x24").split("x"))
        self.screen = Screen(columns, rows)
        self.home = home
        self.patience = patience
        self.pictures = []
        self.consumed = 0  # of the text of the screen
        self.master, self.slave = os.openpty()
        self.set_size(columns, rows)
        self.child = os.fork()
        if self.child == 0:
            os.close(self.master)
            os.login_tty(self.slave)
            os.chdir(home)
            os.execve(program, [program, *arguments], environment_of(settings, home))

    def set_size(self, columns, rows):
        self.screen.resize(columns, rows)
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def type(self, text):
        at = 0
        for key in [*KEY.finditer(text), None]:
            self.write(text[at: key.start() if key else len(text)].encode())
            if key is None:
                return
            at = key.end()
            if key[2]:
                self.set_size(int(key[2]), int(key[3]))
            else:
                self.write(KEYS[key[1]])

    def write(self, keys):
        while keys:
            keys = keys[os.write(self.master, keys):]

    def read(self, seconds):
        """What comes within this time; nothing is 0 characters."""
        if not select.select([self.master], [], [], seconds)[0]:
            return b""
        written = os.read(self.master, 65536)
        self.screen.feed(written)
        return written

    def is_at_prompt(self):
        """Whether all keys were read, and the line editor waits for a new line."""
        is_raw = not termios.tcgetattr(self.master)[3] & termios.ICANON
        unread_keys = struct.unpack("i", fcntl.ioctl(self.slave, termios.FIONREAD, b"\0\0\0\0"))[0]
        is_prompt = is_raw and unread_keys == 0 and PROMPT.match(self.screen.in_front_of_cursor())
        return is_prompt and not self.read(SETTLED_SECONDS)

    def has_ended(self):
        return os.waitid(os.P_PID, self.child, os.WEXITED | os.WNOHANG | os.WNOWAIT) is not None

    def wait_for(self, is_there, what):
        deadline = time.monotonic() + self.patience
        while not is_there():
            written = self.read(0.05)
            if not written and self.has_ended() and not self.read(0):
                raise Failure(f"the program ended before {what} came")
            if time.monotonic() > deadline:
                raise Failure(f"{what} did not come")

    def wait_for_prompt(self):
        self.wait_for(lambda: "\n" in self.screen.text[self.consumed:] and self.is_at_prompt(), "the prompt")
        self.consumed = len(self.screen.text)

    def wait_for_text(self, text):
        self.wait_for(lambda: text in self.screen.text[self.consumed:], repr(text))
        self.consumed = self.screen.text.index(text, self.consumed) + len(text)
        if PROMPT.match(text + " "):
            self.wait_for(self.is_at_prompt, "the prompt")

    def keep_screen(self, title):
        while self.read(SETTLED_SECONDS):
            continue
        self.pictures += [f"--- {title} ---", *self.screen.visible()]

    def finish(self):
        """Waits for the end of the program, and returns all that was seen."""
        deadline = time.monotonic() + self.patience
        status = None
        while status is None:
            self.read(0.02)
            if self.has_ended():
                status = os.waitpid(self.child, 0)[1]
                self.child = 0
            elif time.monotonic() > deadline:
                raise Failure("the program did not end")
        while self.read(0):
            continue
        lines = [*self.pictures, "--- session ---"] if self.pictures else []
        lines += self.screen.everything()
        while lines and not lines[-1]:
            lines.pop()
        code = os.waitstatus_to_exitcode(status)
        lines = [line.replace(self.home, "~") for line in lines]
        return lines + ([f"(exit code {code})"] if code else [])

    def close(self):
        os.close(self.master)  # hangs the terminal up
        os.close(self.slave)
        if self.child:
            os.kill(self.child, 9)
            os.waitpid(self.child, 0)


class Daemon:
    """A pmshd that owns the switch, ready for shells."""

    def __init__(self, program, arguments, home):
        self.socket = f"{home}/switch.sock"
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as ready:
            ready.bind(f"{home}/ready.sock")
            environment = environment_of({}, home) | {"NOTIFY_SOCKET": f"{home}/ready.sock"}
            self.process = subprocess.Popen([program, *arguments, "--stateless", "--socket", self.socket], env=environment,
                                            stderr=subprocess.PIPE, text=True)
            while not select.select([ready], [], [], 0.1)[0]:
                if self.process.poll() is not None:
                    raise Failure(f"pmshd ended: {self.process.stderr.read()}")
        pathlib.Path(home, "ready.sock").unlink()

    def finish(self):
        self.process.terminate()
        _, log = self.process.communicate()
        return [] if self.process.returncode == 0 else [f"pmshd ended with {self.process.returncode}: {log}"]


CLOCK = ["--clock", "1800000000"]
SWITCH_OPTIONS = ["--giant", "--hardware-defaults"]


def arguments_of(settings):
    """Those that choose the switch, and those of the shell itself."""
    switch = settings.get("switch", "lab.yaml")
    of_switch, of_shell = [], shlex.split(settings.get("options", ""))
    if switch != "none":
        of_switch = ["--switch", str(HERE / switch if (HERE / switch).exists() else SWITCHES / switch)]
    for option in SWITCH_OPTIONS:
        if option in of_shell:
            at = of_shell.index(option)
            end = at + (2 if option == "--giant" else 1)
            of_switch += of_shell[at:end]
            del of_shell[at:end]
    return CLOCK + of_switch, of_shell


def environment_of(settings, home):
    kept = re.compile("PATH|LD_.*|[A-Z]+SAN_OPTIONS")
    usual = {name: value for name, value in os.environ.items() if kept.fullmatch(name)}
    usual |= {"TERM": "vt100", "LC_ALL": "C.UTF-8", "PAGER": "cat", "HOME": home, "XDG_STATE_HOME": f"{home}/state"}
    return usual | dict(it.split("=", 1) for it in shlex.split(settings.get("environment", "")))


def read_transcript(file):
    """Its settings and what is typed, as pairs of what to do and a text."""
    settings, steps = {}, []
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        if not steps and line.startswith("#"):
            if found := SETTING.match(line):
                settings[found[1]] = found[2].strip()
        elif found := re.match(r"^type: (.*)<Enter>$", line):
            steps.append((number, "line", found[1]))
        elif found := re.match(r"^(type|wait|screen): (.+)$", line):
            steps.append((number, found[1], found[2].rstrip()))
        elif line.strip():
            steps.append((number, "line", line))
    return settings, steps


def play(session, steps):
    after_line = True  # the first prompt
    for number, what, text in steps:
        try:
            if after_line and what != "wait":
                session.wait_for_prompt()
            after_line = what == "line"
            if what == "line":
                session.consumed = len(session.screen.text)
                session.type(text + "<Enter>")
            elif what == "type":
                session.type(text)
            elif what == "wait":
                session.wait_for_text(text)
            else:
                session.keep_screen(text)
        except Failure as failure:
            raise Failure(f"line {number}: {failure}") from failure
    return session.finish()


def faults_of(pmsh, pmshd, file, patience):
    """The difference of what is shown from what is expected, as lines."""
    settings, steps = read_transcript(file)
    of_switch, of_shell = arguments_of(settings)
    with tempfile.TemporaryDirectory() as home:
        daemon = Daemon(pmshd, of_switch, home) if pmshd else None
        chosen = ["--connect", daemon.socket] if daemon else of_switch
        session = Session(pmsh, chosen + of_shell, settings, home, patience)
        failure = []
        try:
            shown = play(session, steps)
        except (Failure, ValueError) as error:
            failure = [f"{file.name}: {error}"]
            shown = session.screen.everything()
        finally:
            session.close()
            failure += daemon.finish() if daemon else []
    expected_file = file.with_suffix(".out")
    expected = expected_file.read_text(encoding="utf-8").splitlines() if expected_file.exists() else []
    return failure + list(difflib.unified_diff(expected, shown, expected_file.name, "shown", n=3, lineterm=""))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--patience", type=float, default=600, metavar="SECONDS", help="of a wait for what never comes")
    parser.add_argument("--daemon", type=os.path.abspath, metavar="PMSHD", help="of whose switch the shell is")
    parser.add_argument("pmsh", type=os.path.abspath)
    parser.add_argument("transcripts", nargs="+", type=pathlib.Path, metavar="NAME.in")
    options = parser.parse_args()
    failed = 0
    for file in options.transcripts:
        if faults := faults_of(options.pmsh, options.daemon, file, options.patience):
            daemon = ["--daemon", options.daemon] if options.daemon else []
            alone = shlex.join([sys.argv[0], *daemon, options.pmsh, str(file)])
            print(*faults, f"run it alone: {alone}", sep="\n", flush=True)
            failed += 1
    sys.exit(f"{failed} of {len(options.transcripts)} transcripts differ" if failed else 0)


if __name__ == "__main__":
    main()
