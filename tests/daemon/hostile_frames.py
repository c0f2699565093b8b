#!/usr/bin/python3
"""Frames that no shell sends: hostile_frames.py PMSH PMSHD SWITCH

Each ends the client that sent them, with a reason for it and in the log, and no other one.
"""

import os
import random
import socket
import struct
import sys

import daemon
from daemon import HEAD, HELLO, LOCAL_NODE, MORE_FOLLOWS, PACKET, PORT_CONFIG, PORT_MANAGER, REFUSAL, REQUEST, expect, frame, hello, step

SO_SNDBUFFORCE = 32


def request(payload=b"", **fields):
    return frame(REQUEST, payload, **{"token": 1, "node": LOCAL_NODE, "sap": PORT_MANAGER, "opcode": PORT_CONFIG, **fields})


# What is sent after a hello, and a part of the reason.
AFTER_HELLO = [
    ("a cut head", [request()[:23]], "a frame of 23 bytes is shorter than its head"),
    ("a length above the payload", [request(b"abc", size=4)], "a frame promises 4 bytes and has 3"),
    ("the largest length", [request(b"abc", size=0xFFFFFFFF)], "a frame promises 4294967295 bytes and has 3"),
    ("a length below the payload", [request(b"abc", size=1)], "a frame of 2 bytes is shorter than its head"),
    ("kind 0", [frame(0)], "unknown kind of frame: 0"),
    ("kind 255", [frame(255)], "unknown kind of frame: 255"),
    ("a second hello", [hello()], "a frame of kind 1 is no request"),
    ("an answer", [frame(5, token=3)], "a frame of kind 5 is no request"),
    ("unknown flags", [request(flags=0x80)], "unknown flags of a frame: 0x80"),
    ("an unknown service", [request(sap=4242)], "no service has access point 4242"),
    ("an unknown opcode", [request(opcode=0x7FFFFFFF)], "the service 'port-manager' has no opcode 2147483647"),
    ("a cursor of a service without any", [frame(7, token=1, node=LOCAL_NODE, sap=179)],
     "no service with cursors has access point 179"),
    ("news", [frame(8, token=1)], "a frame of kind 8 is no request"),
    ("an unknown node", [request(node=4242)], "no service has access point 179 at node 0x1092"),
    ("the frames of two messages mixed", [request(b"a", flags=MORE_FOLLOWS), request(b"b", token=2)],
     "a frame comes between those of a message"),
    ("an endless message", [request(b"", flags=MORE_FOLLOWS)], "a frame without bytes says that more follow"),
]

BEFORE_HELLO = [
    ("a request first", [request()], "its first frame is no hello"),
    ("another version", [hello(version=2)], "it has version 2 of the protocol"),
    ("a hello without its mark", [frame(HELLO, b"ssh!" + bytes(12))], "its hello is damaged"),
    ("a cut hello", [frame(HELLO, hello()[HEAD.size:-1])], "its hello is damaged"),
    ("a hello with a lying text", [frame(HELLO, b"pmsh" + struct.pack(">II", 1, 0xFFFFFFFF))], "its hello is damaged"),
    ("a text of another protocol", [b"GET / HTTP/1.1\r\nHost: switch\r\n\r\n"], "unknown kind of frame"),
]


def read_to_end(client):
    """What the daemon sends until it closes the connection."""
    packets = []
    while True:
        try:
            packet = client.recv(PACKET)
        except ConnectionResetError:
            continue
        if not packet:
            return packets
        packets.append(packet)


def send_all(client, packets):
    for packet in packets:
        try:
            client.send(packet)
        except (BrokenPipeError, ConnectionResetError):
            return


def check(switch, name, packets, reason, greet):
    step(name)
    before = len(switch.log())
    with switch.connect(greet) as client:
        send_all(client, packets)
        answers = read_to_end(client)
    expect(answers, "the client is not told why")
    kind, _, payload = daemon.read_frame(answers[-1])
    expect(kind == REFUSAL and reason in payload.decode(), f"the reason for the client: {payload}")
    log = switch.log()[before:]
    expect(reason in log and f"process {os.getpid()}" in log, f"the log has no such reason: {log}")


def check_too_long(switch):
    step("a packet above 1 MiB")
    with switch.connect() as client:
        try:
            client.setsockopt(socket.SOL_SOCKET, SO_SNDBUFFORCE, 8 * PACKET)
        except PermissionError:
            print("skipped: a packet above 1 MiB: only root may have such a buffer", flush=True)
            return
        packet = request(bytes(PACKET))
        client.send(packet)
        answers = read_to_end(client)
    expect(f"a packet of {len(packet)} bytes" in daemon.read_frame(answers[-1])[2].decode(), f"another reason: {answers}")


def check_message_limit(switch):
    step("a message above 16 MiB")
    part = request(bytes(64 * 1024), flags=MORE_FOLLOWS)
    with switch.connect() as client:
        send_all(client, [part] * 257)
        read_to_end(client)
    expect("a message is longer than 16777216 bytes" in switch.log(), "it is not logged")


def check_garbage(switch):
    step("garbage")
    bytes_of = random.Random(1).randbytes
    for size in (*range(1, 40), 1000, 60000):
        with switch.connect(greet=size % 2 == 0) as client:
            send_all(client, [bytes_of(size)])
            expect(read_to_end(client), f"{size} bytes do not end the client")


def main():
    pmsh, pmshd, file = sys.argv[1:]
    with daemon.Daemon(pmshd, "--switch", file) as switch:
        with switch.connect() as other:
            for name, packets, reason in BEFORE_HELLO:
                check(switch, name, packets, reason, greet=False)
            for name, packets, reason in AFTER_HELLO:
                check(switch, name, packets, reason, greet=True)
            check_too_long(switch)
            check_message_limit(switch)
            check_garbage(switch)

            step("the other client is served")
            other.send(request(opcode=PORT_CONFIG, token=77))
            expect(daemon.read_frame(other.recv(PACKET))[:2] == (daemon.REJECT, 77), "it has no answer")
        code, out, error = daemon.run(pmsh, switch.socket, "show interface mgmt0 brief")
        expect((code, error) == (0, "") and "mgmt0" in out, f"a shell is not served: {code} {error}")


if __name__ == "__main__":
    main()
