#!/usr/bin/env python3
"""Runs the tests of built presets: run_tests.py [-j JOBS] [-k PATTERN] BUILD_DIRECTORY...

Each directory holds a tests.json with its test programs. Programs of GoogleTest run many tests per process, on all cores. When
a process ends in the middle, the test that was running has failed, and the others go on in a new process. Scripts print
"step: NAME" before each of their steps, and "skipped: NAME: REASON" for what this machine cannot do; a script that fails has
failed in its current step. A failed test is shown with its output and with the command that runs it alone.

-k runs only the tests whose name contains PATTERN. The last line is "tests: N passed, N failed, N skipped", followed by the
names of what was skipped. Exits with 1 unless all that ran has passed and something ran. Nothing here limits how long a test
may take; once a minute the tests that are still running are named.
"""
import argparse
import collections
import json
import os
import pathlib
import re
import shlex
import signal
import subprocess
import sys
import threading
import time

LARGEST_BATCH = 64  # tests per process
REMINDER_SECONDS = 60
SCRIPT_SKIPPED = 77  # exit code of a script that this machine cannot run at all

EVENT = re.compile(r"\[( RUN      |       OK |  FAILED  |  SKIPPED )\] ([A-Za-z0-9_/]+\.[A-Za-z0-9_/]+)(?: \(\d+ ms\)|,.*)?$")

Result = collections.namedtuple("Result", "name outcome detail command")


def how_it_ended(code):
    if code < 0:
        return f"ended by signal {-code} ({signal.Signals(-code).name})"
    if code > 128 and code - 128 in set(signal.Signals):  # an emulator reports the signal of its program so
        return f"ended by signal {code - 128} ({signal.Signals(code - 128).name})"
    return f"exited with {code}"


class Report:
    """Collects results from all threads and prints what failed."""

    def __init__(self):
        self.lock = threading.Lock()
        self.results = []
        self.running = {}  # thread -> (name, since)
        self.seconds = collections.Counter()  # by name

    def start(self, name):
        self.stop()
        with self.lock:
            self.running[threading.get_ident()] = (name, time.monotonic())

    def stop(self):
        with self.lock:
            name, since = self.running.pop(threading.get_ident(), (None, 0))
            if name is not None:
                self.seconds[name] += time.monotonic() - since

    def add(self, name, outcome, detail="", command=()):
        with self.lock:
            self.results.append(Result(name, outcome, detail, command))
            if outcome == "failed":
                print(f"FAILED: {name}\n{detail.rstrip()}\n  run it alone: {shlex.join(command)}\n", flush=True)

    def take_back(self, name):
        with self.lock:
            self.results = [result for result in self.results if result.name != name]

    def remind(self):
        now = time.monotonic()
        with self.lock:
            for name, since in self.running.values():
                if now - since > REMINDER_SECONDS:
                    print(f"still running for {int(now - since)} s: {name}", file=sys.stderr, flush=True)

    def summary(self, slowest):
        for name, seconds in self.seconds.most_common(slowest):
            print(f"{seconds:7.1f} s  {name}")
        count = collections.Counter(result.outcome for result in self.results)
        skipped = [result for result in self.results if result.outcome == "skipped"]
        for result in skipped:
            print(f"SKIPPED: {result.name}: {result.detail}")
        for result in self.results:
            if result.outcome == "failed":
                print(f"FAILED: {result.name}\n  run it alone: {shlex.join(result.command)}")
        names = ": " + ", ".join(result.name for result in skipped) if skipped else ""
        print(f"tests: {count['passed']} passed, {count['failed']} failed, {count['skipped']} skipped{names}")
        return 0 if count["passed"] and not count["failed"] else 1


class GoogleTests:
    """A test program, of which batches of tests run."""

    def __init__(self, prefix, entry, report):
        self.prefix = prefix
        self.command = entry["command"]
        self.report = report

    def full_name(self, test):
        return f"{self.prefix}{test}"

    def alone(self, test):
        return [*self.command, f"--gtest_filter={test}"]

    def list(self, pattern):
        """The tests whose full name contains the pattern."""
        command = [*self.command, "--gtest_list_tests"]
        try:
            found = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=False)
            trouble = how_it_ended(found.returncode) if found.returncode != 0 else ""
        except OSError as error:
            trouble = str(error)
        if trouble:
            self.report.add(self.prefix + "list of tests", "failed", trouble, command)
            return []
        tests, suite = [], ""
        for line in found.stdout.splitlines():
            name = line.split("#")[0].rstrip()
            if line.startswith("  "):
                tests.append(suite + name.strip())
            elif name.endswith("."):
                suite = name
        tests = [test for test in tests if pattern in self.full_name(test)]
        for test in tests:
            if "DISABLED_" in test:
                self.report.add(self.full_name(test), "skipped", "disabled")
        return [test for test in tests if "DISABLED_" not in test]

    def run(self, tests):
        """Runs a batch. Returns the tests that still have to run because the process ended before them."""
        left = collections.OrderedDict.fromkeys(tests)
        current, last, output, failures = None, None, [], 0
        process = subprocess.Popen([*self.command, f"--gtest_filter={':'.join(tests)}", "--gtest_color=no"],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        outside = []  # lines between tests
        for raw in process.stdout:
            line = raw.decode(errors="replace")
            event = EVENT.search(line.rstrip("\n"))
            if event is None or (current is None and event.group(2) not in left):
                (output if current is not None else outside).append(line)
                continue
            kind, name = event.group(1).strip(), event.group(2)
            if kind == "RUN":
                current, output = name, []
                self.report.start(self.full_name(name))
            elif name == current:
                left.pop(name, None)
                detail = "".join(output) + line[:event.start()]
                if kind == "OK":
                    self.report.add(self.full_name(name), "passed")
                elif kind == "SKIPPED":
                    self.report.add(self.full_name(name), "skipped", reason_of_skip(detail))
                else:
                    failures += 1
                    self.report.add(self.full_name(name), "failed", detail, self.alone(name))
                current, last = None, name
        code = process.wait()
        self.report.stop()
        if current is not None:
            left.pop(current, None)
            self.report.add(self.full_name(current), "failed", "".join(output) + how_it_ended(code), self.alone(current))
        elif left and len(left) == len(tests):
            # Not one test has begun: nothing would change in another process.
            for test in left:
                self.report.add(self.full_name(test), "failed", "".join(outside) + how_it_ended(code), self.alone(test))
            left.clear()
        elif left:
            # Between two tests: what the one before left behind ended the process.
            self.report.add(self.full_name(last) + " (behind the test)", "failed", "".join(outside) + how_it_ended(code),
                            self.alone(last))
        elif code != 0 and not failures:
            self.blame(tests, "".join(outside) + how_it_ended(code))
        return list(left)

    def blame(self, tests, output):
        """All tests passed, but the process failed at its end, as it does with a leak: finds the test that causes it."""
        for test in tests:
            alone = subprocess.run(self.alone(test), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT, check=False)
            if alone.returncode != 0:
                detail = alone.stdout.decode(errors="replace") + how_it_ended(alone.returncode)
                self.report.take_back(self.full_name(test))
                self.report.add(self.full_name(test) + " (end of process)", "failed", detail, self.alone(test))
                return
        self.report.add(f"{self.prefix}{tests[0]} ... {tests[-1]} (end of process)", "failed", output,
                        [*self.command, f"--gtest_filter={':'.join(tests)}"])


def reason_of_skip(output):
    lines = [line.strip() for line in output.splitlines() if line.strip() and not line.endswith(": Skipped")]
    return lines[-1] if lines else "no reason given"


class Script:
    """A script with steps."""

    def __init__(self, prefix, entry, report):
        self.name = prefix + entry["name"]
        self.command = entry["command"]
        self.report = report

    def run(self):
        self.report.start(self.name)
        process = subprocess.Popen(self.command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT)
        step, output, is_named = None, [], False
        for raw in process.stdout:
            line = raw.decode(errors="replace")
            if line.startswith("step: "):
                self.passed(step)
                step, output = line[len("step: "):].strip(), []
                self.report.start(f"{self.name}: {step}")
            elif line.startswith("skipped: "):
                what, _, why = line[len("skipped: "):].strip().partition(": ")
                self.report.add(f"{self.name} {what}", "skipped", why)
                is_named = True
            else:
                output.append(line)
        code = process.wait()
        self.report.stop()
        if code == SCRIPT_SKIPPED:
            if not is_named:
                self.report.add(self.name, "skipped", "no reason given")
            return
        if code == 0:
            self.passed(step or "")
            return
        where = f": {step}" if step else ""
        self.report.add(self.name + where, "failed", "".join(output) + how_it_ended(code), self.command)

    def passed(self, step):
        if step is not None:
            self.report.add(f"{self.name}: {step}" if step else self.name, "passed")


class Queue:
    """Batches and scripts, handed out to the threads. Scripts come first: they take longest."""

    def __init__(self, scripts, programs, jobs):
        self.lock = threading.Lock()
        self.scripts = collections.deque(scripts)
        self.programs = collections.deque((program, collections.deque(tests)) for program, tests in programs if tests)
        self.jobs = jobs

    def take(self):
        with self.lock:
            if self.scripts:
                return self.scripts.popleft(), None
            if not self.programs:
                return None
            program, tests = self.programs[0]
            size = max(1, min(LARGEST_BATCH, len(tests) // (2 * self.jobs)))
            batch = [tests.popleft() for _ in range(size)]
            if not tests:
                self.programs.popleft()
            return program, batch


def work(queue, report):
    while (item := queue.take()) is not None:
        what, batch = item
        try:
            if batch is None:
                what.run()
            while batch:
                batch = what.run(batch)
        except Exception as error:  # pylint: disable=broad-except; no test may get lost
            report.add(f"{batch or what.name}", "failed", f"could not be run: {error}", what.command)


def read_directory(directory, pattern, report):
    listed = json.loads((directory / "tests.json").read_text())
    scripts, programs = [], []
    for entry in listed["scripts"]:
        script = Script(f"{directory.name}/", entry, report)
        if pattern in script.name:
            scripts.append(script)
    for entry in listed["programs"]:
        program = GoogleTests(f"{directory.name}/{entry['name']}/", entry, report)
        programs.append((program, program.list(pattern)))
    return scripts, programs


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("-j", dest="jobs", type=int, default=len(os.sched_getaffinity(0)) + 1,
                        help="threads; default: one more than cores, for tests that wait")
    parser.add_argument("-k", dest="pattern", default="", help="only tests whose name contains PATTERN")
    parser.add_argument("--slowest", metavar="N", type=int, default=0, help="list the N tests and steps that took longest")
    parser.add_argument("directories", nargs="+", type=pathlib.Path)
    options = parser.parse_args()

    report = Report()
    scripts, programs = [], []
    for directory in options.directories:
        found = read_directory(directory.resolve(), options.pattern, report)
        scripts += found[0]
        programs += found[1]
    queue = Queue(scripts, programs, options.jobs)
    threads = [threading.Thread(target=work, args=(queue, report), daemon=True) for _ in range(options.jobs)]
    for thread in threads:
        thread.start()
    last_reminder = time.monotonic()
    for thread in threads:
        while thread.is_alive():
            thread.join(timeout=1)
            if time.monotonic() - last_reminder >= REMINDER_SECONDS:
                last_reminder = time.monotonic()
                report.remind()
    return report.summary(options.slowest)


if __name__ == "__main__":
    sys.exit(main())
