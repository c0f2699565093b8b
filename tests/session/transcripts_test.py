#!/usr/bin/python3
"""Tests of transcripts.py and its screen: transcripts_test.py PMSH."""

import pathlib
import subprocess
import sys
import tempfile

from screen import Screen

HERE = pathlib.Path(__file__).resolve().parent
BANNER = "pmsh on lab. Type '?' for the next word, 'help' for all commands.\n"
TYPED = "# A switch.\nshow clock\nexit\n"
SHOWN = BANNER + "lab# show clock\n2027-01-15T08:00:00Z\nlab# exit\n"


def expect_equal(found, expected, what):
    if found != expected:
        sys.exit(f"{what}: {found!r}, not {expected!r}")


def check_screen(written, expected, columns=10, rows=3):
    for size in (1, len(written)):  # sequences and characters may come in parts
        screen = Screen(columns, rows)
        for at in range(0, len(written), size):
            screen.feed(written[at: at + size])
        expect_equal(screen.everything(), expected, repr(written))


def check_screens():
    check_screen(b"one\r\ntwo", ["one", "two"])
    check_screen(b"one\rT\b\bt", ["tne"])
    check_screen(b"0123456789ab", ["0123456789", "ab"])
    check_screen(b"0123456789\r\nab", ["0123456789", "ab"])
    check_screen("\u00fc\u20ac".encode(), ["\u00fc\u20ac"])
    check_screen(b"abc\x1b[2D\x1b[K!", ["a!"])
    check_screen(b"abc\r\x1b[C\x1b[@X\x1b[C\x1b[P", ["aXb"])
    check_screen(b"a\r\nb\r\nc\r\nd\x1b[H!", ["a", "!", "c", "d"])
    check_screen(b"a\r\nb\r\nc\r\nd\x1b[H\x1b[J!", ["a", "!"])
    check_screen(b"a\x1b[1;31mred\x1b[m", ["ared"])
    check_screen(b"--More--\r        \rb\a", ["b"])


def run_transcript(pmsh, typed, shown):
    with tempfile.TemporaryDirectory() as directory:
        file = pathlib.Path(directory, "sample.in")
        file.write_text(typed, encoding="utf-8")
        if shown is not None:
            file.with_suffix(".out").write_text(shown, encoding="utf-8")
        done = subprocess.run([HERE / "transcripts.py", pmsh, file], capture_output=True, text=True, check=False)
    return done.returncode, done.stdout


def main():
    pmsh = sys.argv[1]
    print("step: screen", flush=True)
    check_screens()
    print("step: a transcript as expected", flush=True)
    expect_equal(run_transcript(pmsh, TYPED, SHOWN), (0, ""), "as expected")
    print("step: transcripts that differ", flush=True)
    ended = "line 4: the program ended before"
    for typed, shown, fault in (
            (TYPED, SHOWN.replace("Z", "X"), "+2027-01-15T08:00:00Z\n"),
            (TYPED, SHOWN + "more\n", "-more\n"),
            (TYPED, None, "+lab# exit\n"),
            (TYPED.replace("exit", "quit\nexit"), SHOWN, f"{ended} the prompt came\n"),
            (TYPED.replace("exit", "exit\nwait: more"), SHOWN, f"{ended} 'more' came\n"),
            (TYPED.replace("A", "options: --wrong\n#"), SHOWN, "the program ended before the prompt came\n")):
        code, text = run_transcript(pmsh, typed, shown)
        expect_equal(code, 1, "exit code")
        if fault not in text:
            sys.exit(f"{fault!r} is not in {text!r}")


if __name__ == "__main__":
    main()
