#!/usr/bin/env python3
"""Counts the tests in CTest's JUnit files: count_results.py FILE...

The last line is "tests: N passed, N failed, N skipped"; skipped and failed tests are named above it. Exits with 1 unless all
that ran has passed and something ran.
"""
import sys
import xml.etree.ElementTree as xml


def outcome(case):
    if case.get("status") == "run":
        return "passed"
    return "failed" if case.get("status") == "fail" else "skipped"


def main():
    count = {"passed": 0, "failed": 0, "skipped": 0}
    for path in sys.argv[1:]:
        for case in xml.parse(path).getroot().iter("testcase"):
            result = outcome(case)
            count[result] += 1
            if result != "passed":
                print(f"{result.upper()}: {case.get('name')}")
    print("tests: {passed} passed, {failed} failed, {skipped} skipped".format(**count))
    return 1 if count["failed"] or not count["passed"] else 0


sys.exit(main())
