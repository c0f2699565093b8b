"""Connections to a switch that end in the middle, and shells at a terminal."""

import os
import pty
import select
import socket
import threading

from daemon import PACKET


class Cutter:
    """A socket whose connection to the switch ends after so many packets, in both directions together."""

    def __init__(self, target, path):
        self.target, self.path = target, path
        self.left = 0
        self.listening = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.listening.bind(path)
        self.listening.listen()
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        while True:
            shell, _ = self.listening.accept()
            with shell, socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET) as switch:
                switch.connect(self.target)
                self.forward({shell: switch, switch: shell})

    def forward(self, other):
        while self.left > 0:
            for ready in select.select(list(other), [], [])[0]:
                packet = ready.recv(PACKET)
                if not packet:
                    return
                other[ready].send(packet)
                self.left -= 1
                if self.left == 0:
                    return


class Terminal:
    def __init__(self, command, environment):
        self.process, self.descriptor = pty.fork()
        if self.process == 0:
            os.execvpe(command[0], command, environment)
        self.seen = ""

    def read_until(self, text):
        """What is shown up to this text."""
        while text not in self.seen:
            self.seen += os.read(self.descriptor, 4096).decode()
        found, self.seen = self.seen.split(text, 1)
        return found

    def type(self, line):
        os.write(self.descriptor, line.encode() + b"\r")
        self.read_until(line)
