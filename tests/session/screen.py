"""What a person sees at a terminal: bytes that a program writes become lines of text."""

import codecs
import re

SEQUENCE = re.compile(r"\x1b(?:\[(?P<arguments>[0-9;?]*)(?P<command>[@-~])|[()][0AB]|[=>78M])")
UNFINISHED = re.compile(r"\x1b(?:\[[0-9;?]*|[()]?)$")


class Screen:
    """A vt100 of `columns` and `rows` with all lines that left it at its top. Colours and modes are not kept."""

    def __init__(self, columns, rows):
        self.columns, self.rows = columns, rows
        self.lines = [""]
        self.row, self.column = 0, 0
        self.text = ""  # all printed characters and newlines, in the order in which they came
        self.unread = ""
        self.decoder = codecs.getincrementaldecoder("utf-8")(errors="replace")

    def resize(self, columns, rows):
        self.columns, self.rows = columns, rows

    def feed(self, written):
        text = self.unread + self.decoder.decode(written)
        self.unread, at = "", 0
        while at < len(text):
            if text[at] != "\x1b":
                self.character(text[at])
                at += 1
            elif sequence := SEQUENCE.match(text, at):
                self.sequence(sequence)
                at = sequence.end()
            elif UNFINISHED.match(text, at):
                self.unread = text[at:]
                return
            else:
                raise ValueError(f"unknown sequence {text[at:at + 8]!r}")

    def top(self):
        return max(0, len(self.lines) - self.rows)

    def in_front_of_cursor(self):
        return self.lines[self.row][: self.column].ljust(self.column)

    def visible(self):
        return [line.rstrip() for line in self.lines[self.top():]]

    def everything(self):
        return [line.rstrip() for line in self.lines]

    def move(self, row, column):
        self.row = max(self.top(), min(row, self.top() + self.rows - 1))
        self.column = max(0, min(column, self.columns - 1))
        while len(self.lines) <= self.row:
            self.lines.append("")

    def line_feed(self):
        self.text += "\n"
        self.row += 1
        if self.row == len(self.lines):
            self.lines.append("")

    def character(self, it):
        if it == "\n":
            self.line_feed()
        elif it == "\r":
            self.column = 0
        elif it == "\b":
            self.column = max(0, min(self.column, self.columns - 1) - 1)
        elif it == "\t":
            self.column = min(self.column // 8 * 8 + 8, self.columns - 1)
        elif it >= " " and it != "\x7f":
            if self.column == self.columns:  # the last column wraps with the next character
                self.column = 0
                self.line_feed()
            line = self.lines[self.row].ljust(self.column)
            self.lines[self.row] = line[: self.column] + it + line[self.column + 1:]
            self.column += 1
            self.text += it
        elif it not in "\a\0":
            raise ValueError(f"unknown control character {it!r}")

    def sequence(self, found):
        command = found["command"]
        if command is None or command in "mhl":
            return
        numbers = [int(number or 0) for number in found["arguments"].split(";")]
        count = max(1, numbers[0])
        line = self.lines[self.row]
        if command in "ABCD":
            rows, columns = {"A": (-1, 0), "B": (1, 0), "C": (0, 1), "D": (0, -1)}[command]
            self.move(self.row + rows * count, self.column + columns * count)
        elif command == "H":
            self.move(self.top() + count - 1, max(1, numbers[-1] if len(numbers) > 1 else 1) - 1)
        elif command == "K":
            blank = " " * (self.column + 1)
            self.lines[self.row] = {0: line[: self.column], 1: blank + line[self.column + 1:], 2: ""}[numbers[0]]
        elif command == "J":
            if numbers[0] == 0:
                self.lines[self.row] = line[: self.column]
                del self.lines[self.row + 1:]
            else:
                top = self.top()
                self.lines[top:] = [""] * (self.row - top + 1)
        elif command == "P":
            self.lines[self.row] = line[: self.column] + line[self.column + count:]
        elif command == "@":
            self.lines[self.row] = line.ljust(self.column)[: self.column] + " " * count + line[self.column:]
        else:
            raise ValueError(f"unknown sequence {found[0]!r}")
