#!/usr/bin/python3
"""The metrics of the daemon, over HTTP and as Prometheus reads them: metrics.py PMSH PMSHD SWITCH RULES

RULES is the file with the alerts; that with their tests is beside it. Prometheus is Debian's: its service is not used.
"""

import http.client
import json
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import urllib.parse

import daemon
from daemon import expect, step

OPENMETRICS = "application/openmetrics-text; version=1.0.0; charset=utf-8"
PLAIN = "text/plain; version=0.0.4; charset=utf-8"
PORT = "Ethernet1/1"
MOST_CONNECTIONS = 16


class Reader(http.client.HTTPConnection):
    """A connection to the metrics of a daemon."""

    def __init__(self, switch):
        place = re.search(r"gives metrics at http://(\S+):(\d+)/metrics\.", switch.log())
        expect(place, f"no address is logged: {switch.log()}")
        super().__init__(place[1].strip("[]"), int(place[2]))

    def get(self, path="/metrics", method="GET", accept="", body=None):
        """Status, headers and body of an answer."""
        self.request(method, path, body, {"Accept": accept} if accept else {})
        answer = self.getresponse()
        return answer.status, answer.headers, answer.read().decode()


def number(text):
    return int(text) if text.isdigit() else float(text)


def metrics_of(switch):
    """The samples of a page, by their name with its labels."""
    status, _, body = Reader(switch).get()
    expect(status == 200, f"{status}: {body}")
    lines = [line.rpartition(" ") for line in body.splitlines() if line[0] != "#"]
    return {name: number(value) for name, _, value in lines}


def of_port(switch, name, values):
    return values[f'pmshd_{name}{{switch="{switch}",interface="{PORT}"}}']


def show(pmsh, switch, command):
    """The records of a show command."""
    code, out, error = daemon.run(pmsh, switch.socket, f"{command} | json")
    expect((code, error) == (0, ""), f"{code}: {error}")
    return json.loads(out)["interfaces"]


def check_start(pmshd, file):
    step("an address that is in use ends the daemon with a sentence")
    with socket.create_server(("127.0.0.1", 0)) as taken, tempfile.TemporaryDirectory() as folder:
        port = taken.getsockname()[1]
        begun = [pmshd, "--switch", file, "--socket", os.path.join(folder, "x.sock"), "--metrics"]
        done = subprocess.run([*begun, f":{port}"], capture_output=True, text=True, check=False)
        expect(done.returncode == 2, f"{done.returncode}: {done.stderr}")
        expect(f"cannot listen at 127.0.0.1:{port} for metrics: Address already in use. Choose another address with "
               "--metrics." in done.stderr, done.stderr)
        expect(not os.listdir(folder), "a socket is left over")

        step("a text that is not an address is a wrong option")
        done = subprocess.run([*begun, "localhost"], capture_output=True, text=True, check=False)
        expect(done.returncode == 1 and "'localhost' is not an address" in done.stderr, f"{done.returncode}: {done.stderr}")

    step("IPv6 is in brackets")
    if not os.path.exists("/proc/net/if_inet6"):
        print("skipped: metrics_ipv6: this machine has no IPv6")
        return
    with daemon.Daemon(pmshd, "--switch", file, "--metrics", "[::1]:0") as switch:
        expect(Reader(switch).get("/")[0] == 200, "there is no start page")


def check_pages(switch):
    step("the pages, their types and both formats")
    reader = Reader(switch)  # one connection for all of them
    status, headers, body = reader.get("/")
    expect((status, headers["Content-Type"]) == (200, "text/html; charset=utf-8") and "/metrics" in body, body)
    status, headers, body = reader.get()
    expect((status, headers["Content-Type"]) == (200, PLAIN), headers)
    expect("# TYPE pmshd_interface_input_bytes_total counter\n" in body and "# EOF" not in body, body[:1000])
    status, headers, body = reader.get(accept="application/openmetrics-text;version=1.0.0,text/plain;q=0.5")
    expect((status, headers["Content-Type"]) == (200, OPENMETRICS), headers)
    expect("# TYPE pmshd_interface_input_bytes counter\n" in body and body.endswith("\n# EOF\n"), body[-1000:])
    size = headers["Content-Length"]

    status, headers, body = reader.get(method="HEAD", accept="application/openmetrics-text")
    expect((status, headers["Content-Type"], body) == (200, OPENMETRICS, ""), headers)
    expect(abs(int(headers["Content-Length"]) - int(size)) < 1000, f"{size}: {headers}")
    expect(reader.get(method="HEAD", path="/")[::2] == (200, ""), "HEAD of / has a body")

    step("other pages and methods are refused")
    for path in ("/x", "/metrics/", "/metricsx", "/../metrics"):
        status, _, body = reader.get(path)
        expect((status, body) == (404, "Nothing is here. The metrics are at /metrics.\n"), f"{path}: {status} {body}")
    expect(reader.get("/metrics?a=b")[0] == 200, "a query is refused")
    for method in ("POST", "PUT", "DELETE", "OPTIONS"):
        status, headers, body = Reader(switch).get(method=method, body=b"x" * 100_000 if method != "DELETE" else None)
        expect((status, headers["Allow"], body) == (405, "GET, HEAD", "Use GET or HEAD.\n"), f"{method}: {status} {body}")

    step("promtool finds nothing to correct")
    body = reader.get()[2]
    done = subprocess.run(["promtool", "check", "metrics"], input=body, capture_output=True, text=True, check=False)
    expect((done.returncode, done.stdout + done.stderr) == (0, ""), done.stdout + done.stderr)


def check_values(pmsh, switch):
    step("values are those of show commands")

    values = metrics_of(switch)
    compared = 0
    for record in (*show(pmsh, switch, "show interface"), *show(pmsh, switch, "show interface counters detailed all")):
        if record["interface"].startswith("mgmt"):  # a device of this machine, which counts on
            continue
        labels = f'{{switch="campus-dist-1",interface="{record["interface"]}"}}'
        for key, value in record.items():
            name = f"pmshd_interface_{key}_total{labels}"
            if isinstance(value, int):
                compared += name in values
                expect(values.get(name, value) == value, f"{name}: {values.get(name)} and {value}")
            elif value is None:
                expect(name not in values, f"{name}: {values.get(name)} and null")
        speed = f"pmshd_interface_speed_bytes_per_second{labels}"
        expect(values.get(speed) == (record.get("speed_mbps") or 0) * 125_000 or "speed_mbps" not in record
               or (record["speed_mbps"] is None and speed not in values), f"{speed}: {values.get(speed)}")
    expect(compared > 1000, f"only {compared} values were compared")

    compared = 0
    for record in show(pmsh, switch, "show interface transceiver details"):
        if record.get("temperature_c") is None:
            continue
        labels = f'switch="campus-dist-1",interface="{record["interface"]}"'
        for key, name, factor in (("temperature_c", "temperature_celsius", 1), ("voltage_v", "voltage_volts", 1),
                                  ("current_ma", "current_amperes", 1000), ("tx_power_dbm", "tx_power_dbm", 1),
                                  ("rx_power_dbm", "rx_power_dbm", 1)):
            lane = "" if factor == 1 and not key.endswith("dbm") else ',lane="1"'
            measured = values.get(f"pmshd_transceiver_{name}{{{labels}{lane}}}")
            expect((measured is None) == (record[key] is None), f"{labels}: {key}")
            if measured is not None:
                compared += 1
                expect(abs(measured * factor - record[key]) < 0.01, f"{labels} {key}: {measured} and {record[key]}")
    expect(compared > 20, f"only {compared} values of modules were compared")

    step("a link that goes down and up is counted")
    before = of_port("campus-dist-1", "interface_link_changes_total", values)
    down = ("configure", "interface ethernet 1/1", "shutdown")
    expect(daemon.run(pmsh, switch.socket, *down, options=("--yes",))[0] == 0, "the port is not shut down")
    values = metrics_of(switch)
    expect(of_port("campus-dist-1", "interface_admin_up", values) == 0, "it is enabled")
    expect(of_port("campus-dist-1", "interface_oper_up", values) == 0, "it is up")
    up = ("configure", "interface ethernet 1/1", "no shutdown")
    expect(daemon.run(pmsh, switch.socket, *up, options=("--yes",))[0] == 0, "the port stays shut down")
    values = metrics_of(switch)
    expect(of_port("campus-dist-1", "interface_oper_up", values) == 1, "it stays down")
    expect(of_port("campus-dist-1", "interface_link_changes_total", values) == before + 2, "changes are not counted")

    step("sessions and requests are counted")
    name = 'pmshd_request_duration_seconds_count{switch="campus-dist-1",service="port-manager"}'
    expect(values['pmshd_sessions{switch="campus-dist-1"}'] == 0, "sessions are counted that ended")
    with switch.connect() as client:
        client.send(daemon.frame(daemon.REQUEST, token=1, node=daemon.LOCAL_NODE, sap=daemon.PORT_MANAGER,
                                 opcode=daemon.PORT_CONFIG))
        client.recv(daemon.PACKET)
        after = metrics_of(switch)
        expect(after['pmshd_sessions{switch="campus-dist-1"}'] == 1, "a session is not counted")
        expect(after[name] == values[name] + 1, f"{values[name]} and {after[name]} requests")


def check_hostile_readers(switch):
    step("silent, slow and damaged readers delay nobody")
    before = switch.descriptors()
    place = Reader(switch)
    silent = [socket.create_connection((place.host, place.port)) for _ in range(3 * MOST_CONNECTIONS)]
    for index, each in enumerate(silent):
        if index % 3 == 1:
            each.send(b"GET /metrics HTTP/1.1\r\nHost: x\r\nX-Long: " + b"y" * 1000)  # and no end
        if index % 3 == 2:
            each.send(b"GET /metrics HTTP/1.1\r\nHost: x\r\n\r\n")  # and never reads
    shells = 10  # whose ends the daemon may not have seen yet
    for _ in range(shells):
        expect(switch.is_serving(), "a shell is not served")
    most = before + MOST_CONNECTIONS + shells
    expect(switch.descriptors() <= most < before + len(silent), f"{switch.descriptors()} descriptors, {before} before")
    expect(switch.process.poll() is None, "the daemon ended")
    for each in silent:
        each.close()
    expect(place.get()[0] == 200, "a reader is not served afterwards")
    place.close()

    for head in (b"\x00\xff\n\r\n\r\n", b"GET\r\n\r\n", b"GET / HTTP/9.9\r\n\r\n", b"GET /metrics HTTP/1.1\r\n\r\n",
                 b"x" * 100_000 + b"\r\n\r\n", b"POST /metrics HTTP/1.1\r\nContent-Length: 99999999999\r\n\r\n"):
        with socket.create_connection((place.host, place.port)) as damaged:
            try:
                damaged.sendall(head)
                damaged.shutdown(socket.SHUT_WR)
                while damaged.recv(65536):
                    pass
            except ConnectionError:
                pass
    expect(Reader(switch).get()[0] == 200, "a reader is not served after damaged ones")
    while switch.descriptors() > before:
        time.sleep(0.05)


class FailingSockets:
    """While it lives, the daemon can make no socket."""

    def __init__(self, switch):
        self.tracer = subprocess.Popen(
            ["strace", "-p", str(switch.process.pid), "-o", "/dev/null", "-e", "trace=socket",
             "-e", "inject=socket:error=ENOBUFS"], stdin=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        expect("attached" in self.tracer.stderr.readline(), "strace does not attach")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.tracer.send_signal(signal.SIGINT)
        self.tracer.communicate()


def check_lost_switch(pmshd):
    step("a switch that cannot be read is a sentence, and the daemon goes on")
    with daemon.Daemon(pmshd, "--name", "kernel", "--kernel", "--metrics", "0", clock=False) as switch:
        reader = Reader(switch)
        status, _, body = reader.get()
        expect(status == 200 and 'interface="' in body, f"{status}: {body}")
        with FailingSockets(switch):
            for _ in range(2):
                status, headers, body = reader.get()
                expect((status, headers["Content-Type"]) == (503, "text/plain; charset=utf-8"), f"{status}: {headers}")
                expect(re.fullmatch(r"The switch cannot be read: .*No buffer space available\.\n", body), body)
        expect(switch.log().count("The switch cannot be read") == 1, switch.log())
        expect(reader.get()[0] == 200, "it cannot be read again")


def check_rules(rules):
    step("the alerts are valid, and their tests pass")
    folder, name = os.path.split(rules)
    test = name.replace(".yaml", "-test.yaml")
    for words in (("check", "rules", name), ("test", "rules", test)):
        done = subprocess.run(["promtool", *words], cwd=folder, capture_output=True, text=True, check=False)
        expect(done.returncode == 0, f"{words}: {done.stdout}{done.stderr}")


def low_ports(values):
    """The interfaces with a lane that receives less than the lower warning of its module."""
    found = set()
    for name, power in values.items():
        lane = re.fullmatch(r'pmshd_transceiver_rx_power_dbm{(.*interface="(.*)"),lane=".*"}', name)
        if lane and power < values.get(f'pmshd_transceiver_rx_power_limit_dbm{{{lane[1]},limit="low_warning"}}', power):
            found.add(lane[2])
    return found


class Prometheus:
    """A server at a free port of the loopback that reads a daemon and evaluates the alerts."""

    def __init__(self, switch, rules):
        self.folder = tempfile.mkdtemp()
        target = Reader(switch)
        with open(os.path.join(self.folder, "prometheus.yml"), "w", encoding="utf-8") as file:
            # A reading that takes longer on a busy machine fails; the next one is waited for.
            json.dump({"global": {"scrape_interval": "1s", "scrape_timeout": "1s", "evaluation_interval": "1s"},
                       "rule_files": [rules],
                       "scrape_configs": [{"job_name": "switch", "static_configs": [
                           {"targets": [f"{target.host}:{target.port}"]}]}]}, file)
        self.process = None
        while self.process is None:
            self.start()

    def start(self):
        """A port that another program takes meanwhile is replaced."""
        with socket.create_server(("127.0.0.1", 0)) as free:
            self.port = free.getsockname()[1]
        log = os.path.join(self.folder, "log")
        with open(log, "w", encoding="utf-8") as file:
            process = subprocess.Popen(
                ["prometheus", "--config.file", os.path.join(self.folder, "prometheus.yml"), "--storage.tsdb.path",
                 os.path.join(self.folder, "data"), "--web.listen-address", f"127.0.0.1:{self.port}"],
                stdin=subprocess.DEVNULL, stdout=file, stderr=file)
        while process.poll() is None:
            try:
                reader = http.client.HTTPConnection("127.0.0.1", self.port)
                reader.request("GET", "/-/ready")
                if reader.getresponse().status == 200:
                    self.process = process
                    return
            except OSError:
                pass
            time.sleep(0.1)
        with open(log, encoding="utf-8") as file:
            text = file.read()
        expect("address already in use" in text, f"prometheus ended with {process.returncode}: {text}")

    def ask(self, path, **parameters):
        reader = http.client.HTTPConnection("127.0.0.1", self.port)
        reader.request("GET", f"/api/v1/{path}?{urllib.parse.urlencode(parameters)}")
        answer = json.loads(reader.getresponse().read())
        expect(answer["status"] == "success", answer)
        return answer["data"]

    def query(self, expression):
        """The values of a query, by the interface."""
        return {each["metric"].get("interface", ""): float(each["value"][1])
                for each in self.ask("query", query=expression)["result"]}

    def wait_until(self, is_so):
        while not is_so():
            expect(self.process.poll() is None, f"prometheus ended with {self.process.returncode}")
            time.sleep(0.1)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait()
        shutil.rmtree(self.folder)


def check_prometheus(pmsh, switch, rules):
    step("Prometheus reads the switch")

    def input_bytes():
        return show(pmsh, switch, "show interface ethernet 1/1")[0]["input_bytes"]

    with Prometheus(switch, rules) as server:
        series = f'pmshd_interface_input_bytes_total{{interface="{PORT}"}}'
        first = input_bytes()
        server.wait_until(lambda: server.query(f"count_over_time({series}[1h])").get(PORT, 0) >= 2)
        samples = server.query(f"min_over_time({series}[1h])"), server.query(f"max_over_time({series}[1h])")
        expect(samples == ({PORT: first}, {PORT: first}), f"{samples} and {first}")
        server.wait_until(lambda: server.ask("targets")["activeTargets"][0]["health"] == "up")

        step("a rate of Prometheus is that of two shows of the counters")
        seconds = 45
        expect(daemon.run(pmsh, switch.socket, f"clock advance {seconds}")[0] == 0, "the clock stands")
        second = input_bytes()
        expect(second > first, "nothing was received")
        server.wait_until(lambda: server.query(series) == {PORT: second})
        # By the clock of the switch, which is stopped between the two: not by that of this machine.
        rate = server.query(f"rate({series}[1h]) / on (switch) rate(pmshd_clock_timestamp_seconds[1h])")
        expected = (second - first) / seconds
        expect(set(rate) == {""} and abs(rate[""] / expected - 1) < 1e-9, f"{rate} and {expected} bytes per second")
        expect(server.query(f"max_over_time({series}[1h]) - min_over_time({series}[1h])") == {PORT: second - first},
               "the samples are others")

        step("the alerts work on the metrics of a switch")

        def all_rules():
            return [rule for group in server.ask("rules")["groups"] for rule in group["rules"]]

        def ports_with(alert):
            return {each["labels"]["interface"] for rule in all_rules() if rule["name"] == alert for each in rule["alerts"]}

        low = low_ports(metrics_of(switch))
        expect(low, "no module of the switch receives too little")
        server.wait_until(lambda: ports_with("TransceiverReceivePowerLow") == low)
        expect(all(rule["health"] == "ok" for rule in all_rules()), all_rules())


def main():
    pmsh, pmshd, file, rules = sys.argv[1:]
    if shutil.which("prometheus") is None or shutil.which("promtool") is None:
        sys.exit("prometheus and promtool are missing: apt-get install prometheus")
    check_start(pmshd, file)
    with daemon.Daemon(pmshd, "--switch", file, "--metrics", "0") as switch:
        check_pages(switch)
        check_values(pmsh, switch)
        check_hostile_readers(switch)
    check_lost_switch(pmshd)
    check_rules(os.path.abspath(rules))
    with daemon.Daemon(pmshd, "--switch", file, "--metrics", "0") as switch:
        check_prometheus(pmsh, switch, os.path.abspath(rules))


if __name__ == "__main__":
    main()
