"""Runs the host on a pseudo-terminal, types commands while it prints calls, and checks what the screen shows.

Argument: the path of the program ActionHost.
"""

import fcntl
import os
import pty
import re
import select
import struct
import sys
import termios
import time

LONGEST_WAIT = 60


class Screen:
    """A terminal that shows a long line on several rows, as often as its window's width requires."""

    def __init__(self, descriptor):
        self.descriptor, self.lines, self.column, self.pending = descriptor, [""], 0, b""
        self.resize(100)

    def resize(self, width):
        self.width = width
        fcntl.ioctl(self.descriptor, termios.TIOCSWINSZ, struct.pack("HHHH", 40, width, 0, 0))

    def read(self):
        ready, _, _ = select.select([self.descriptor], [], [], 0.05)
        try:
            self.pending += os.read(self.descriptor, 65536) if ready else b""
        except OSError:  # the program has closed the terminal
            return
        text = self.pending.decode(errors="ignore")
        self.pending = self.pending[len(text.encode()):]
        for piece in re.findall(r"\x1b\[[\d;]*[A-Za-z]|[\r\n\x07]|[^\x1b\r\n\x07]+", text):
            self.take(piece)

    def take(self, piece):
        row = self.column - self.column % self.width
        line = self.lines[-1]
        if piece == "\r":
            self.column = row
        elif piece == "\n":
            self.lines.append("")
            self.column = 0
        elif piece == "\x1b[J":
            self.lines[-1] = line[:self.column]
        elif piece.startswith("\x1b"):
            assert piece.endswith("m"), f"unexpected sequence {piece!r}"
        else:
            self.lines[-1] = line[:self.column] + piece + line[self.column + len(piece):]
            self.column += len(piece)

    def wait_until(self, what, condition, always=lambda: True):
        end = time.monotonic() + LONGEST_WAIT
        while not condition():
            assert time.monotonic() < end, f"no {what} on the screen:\n" + "\n".join(self.lines)
            self.read()
            assert always(), f"wrong while waiting for {what}:\n" + "\n".join(self.lines)

    def calls(self):
        return sum("Schedule" in line for line in self.lines)


def main():
    child, descriptor = pty.fork()
    if child == 0:
        os.environ.pop("NO_COLOR", None)
        os.environ.update(TERM="xterm", GS_Logger_MaxSeverity="NONE")
        os.execv(sys.argv[1], ["ActionHost", "--polling", "10", "--every", "100ms", "--name", "größer", "--watch", "A/B"])
    screen = Screen(descriptor)
    last = lambda: screen.lines[-1]
    type_keys = lambda text: os.write(descriptor, text.encode())

    screen.wait_until("status line", lambda: last().startswith("next ") and screen.calls() > 0)

    # What is typed stays on the last line while calls are printed above it.
    type_keys("statü")
    screen.wait_until("typed text", lambda: last() == "> statü")
    calls = screen.calls()
    screen.wait_until("five more calls", lambda: screen.calls() >= calls + 5, lambda: last() in ("", "> statü"))
    type_keys("\x7f\x1b[Dux\x08s\r")
    screen.wait_until("table", lambda: any(line.endswith("left       worst") for line in screen.lines))
    assert "> status" in screen.lines, "the command is not among the lines"
    screen.wait_until("status line after the command", lambda: last().startswith("next "))
    type_keys("nonsense word\x17\x15alive\n")
    screen.wait_until("answer", lambda: any(line.startswith("alive: ") for line in screen.lines))
    assert "> alive" in screen.lines, "the line was not removed"

    # A narrower window: the line is cut to it, and no part of an old one stays behind.
    screen.wait_until("status line", lambda: last().startswith("next "))
    screen.resize(40)
    calls = screen.calls()
    screen.wait_until("three more calls", lambda: screen.calls() >= calls + 3)
    screen.wait_until("cut status line", lambda: last().startswith("next ") and len(last()) == 39)
    assert not any(line.startswith("next ") for line in screen.lines[:-1]), "a part of a status line was left"

    type_keys("quit\n")
    screen.wait_until("end", lambda: last() == "" and any(line.startswith("alive: 0") for line in screen.lines))
    assert not any(line.startswith("next ") for line in screen.lines), "a status line was left at the end"
    assert termios.tcgetattr(descriptor)[3] & termios.ECHO, "the terminal does not show what is typed any more"
    _, status = os.waitpid(child, 0)
    assert os.waitstatus_to_exitcode(status) == 0, f"ended with {status}"


main()
