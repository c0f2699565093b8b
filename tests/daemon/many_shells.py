#!/usr/bin/python3
"""Many shells on one switch: many_shells.py PMSH PMSHD SWITCH

Each has the answers that it would have alone; idle, stopped, slow and killed ones delay no other and leave nothing.
"""

import os
import resource
import signal
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

import daemon
from daemon import LOCAL_NODE, PACKET, PORT_CONFIG, PORT_MANAGER, REQUEST, expect, frame, hello, read_frame, read_frames, step

ANSWERS_UNTIL_CLOSED = 10000  # more than clients of any step: each answer comes after the events that were there before


def check_64_shells(pmsh, switch, file):
    step("64 shells at once")
    command = "show interface ethernet 1/1-4 | json"
    alone = subprocess.run([pmsh, "--switch", file, "--clock", daemon.CLOCK, "-c", command], capture_output=True,
                           env={**os.environ, "TZ": "UTC"}, text=True, check=True).stdout
    with ThreadPoolExecutor(64) as pool:
        for code, out, error in pool.map(lambda _: daemon.run(pmsh, switch.socket, command), range(64)):
            expect((code, out, error) == (0, alone, ""), f"a shell differs: {code} {error}")


def wait_until_closed(switch, before):
    """Until the daemon has no more descriptors than before: what it released by then is seen after its next answer."""
    for _ in range(ANSWERS_UNTIL_CLOSED):
        if switch.descriptors() <= before:
            return
        expect(switch.is_serving(), "it does not serve")
    expect(False, f"it keeps {switch.descriptors() - before} descriptors too many")


def check_idle_clients(switch):
    step("1,024 idle clients")
    resource.setrlimit(resource.RLIMIT_NOFILE, (min(4096, resource.getrlimit(resource.RLIMIT_NOFILE)[1]),) * 2)
    before = switch.descriptors()
    idle = [switch.connect() for _ in range(1024)]
    expect(switch.is_serving(), "it does not serve beside them")
    for client in idle:
        client.close()
    wait_until_closed(switch, before)


def check_flood(switch):
    step("a flood of connections")
    before = switch.descriptors()
    for _ in range(5000):
        switch.connect(greet=False).close()
    wait_until_closed(switch, before)
    expect(switch.is_serving(), "it does not serve afterwards")


def rejected_request(token):
    """A request that the service answers with few bytes."""
    return frame(REQUEST, b"", token=token, node=LOCAL_NODE, sap=PORT_MANAGER, opcode=PORT_CONFIG)


def check_client_that_does_not_read(pmsh, switch):
    step("a client that does not read")
    before = switch.descriptors()
    with switch.connect() as deaf:
        deaf.setblocking(False)
        sent = 0
        try:
            while sent < 100000:
                deaf.send(b"".join(rejected_request(token) for token in range(1, 1001)))
                sent += 1
        except BlockingIOError:
            pass
        expect(0 < sent < 100000, f"the daemon takes any number of requests: {sent}")
        code, _, error = daemon.run(pmsh, switch.socket, "show interface brief")
        expect((code, error) == (0, ""), f"another shell is not served: {error}")

        step("its answers are there when it reads")
        deaf.setblocking(True)
        place = 0
        while place < sent * 1000:
            for kind, token, _ in read_frames(deaf.recv(PACKET)):
                expect((kind, token) == (daemon.REJECT, place % 1000 + 1), f"answer {place} has token {token}")
                place += 1
    wait_until_closed(switch, before)


def check_stopped_shell(pmsh, switch):
    step("a stopped shell")
    stopped = subprocess.Popen([pmsh, "--connect", switch.socket], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    stopped.stdin.write("show interface | json\n")
    stopped.stdin.flush()
    stopped.stdout.read(1)  # it runs
    stopped.send_signal(signal.SIGSTOP)
    try:
        code, _, error = daemon.run(pmsh, switch.socket, "show interface brief")
        expect((code, error) == (0, ""), f"another shell is not served: {error}")
    finally:
        stopped.send_signal(signal.SIGCONT)
    stopped.communicate()
    expect(stopped.returncode == 0, "the stopped shell failed")


def check_killed_clients(switch):
    step("clients that end after each byte of a frame, and with a half message")
    before = switch.descriptors()
    whole = rejected_request(1)
    for size in range(1, len(whole)):
        with switch.connect() as client:
            client.send(whole[:size])
    for _ in range(50):
        with switch.connect() as client:
            client.send(frame(REQUEST, bytes(60000), token=1, node=LOCAL_NODE, sap=PORT_MANAGER, opcode=PORT_CONFIG, flags=1))
    with switch.connect(greet=False) as client:
        client.send(hello()[:-1])
    wait_until_closed(switch, before)
    expect(switch.is_serving(), "it does not serve afterwards")


def check_no_descriptors(pmsh, switch):
    step("no free descriptors")
    before = switch.descriptors()
    limits = resource.prlimit(switch.process.pid, resource.RLIMIT_NOFILE)
    resource.prlimit(switch.process.pid, resource.RLIMIT_NOFILE, (before + 4, limits[1]))
    clients = [switch.connect(greet=False) for _ in range(20)]
    while "no shell can be accepted: Too many open files" not in switch.log():
        expect(switch.process.poll() is None, "it ended")
    expect(switch.log().count("no shell can be accepted") == 1, "it is logged again and again")

    step("waiting clients are accepted later")
    for client in clients[:10]:
        client.close()
    resource.prlimit(switch.process.pid, resource.RLIMIT_NOFILE, limits)
    clients[-1].send(hello())
    expect(read_frame(clients[-1].recv(PACKET))[0] == daemon.WELCOME, "the last one is not greeted")
    code, _, error = daemon.run(pmsh, switch.socket, "show interface mgmt0 brief")
    expect((code, error) == (0, ""), f"a shell is not served: {error}")
    for client in clients:
        client.close()
    wait_until_closed(switch, before)


def main():
    pmsh, pmshd, file = sys.argv[1:]
    with daemon.Daemon(pmshd, "--switch", file) as switch:
        check_64_shells(pmsh, switch, file)
        check_stopped_shell(pmsh, switch)
        check_client_that_does_not_read(pmsh, switch)
        check_killed_clients(switch)
        check_flood(switch)
        check_idle_clients(switch)
        check_no_descriptors(pmsh, switch)


if __name__ == "__main__":
    main()
