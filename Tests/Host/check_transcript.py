"""Runs the commands of a transcript in a shell, in an empty directory, and compares their output with the transcript.

Arguments: the path of the program ActionHost, the transcript, and "windows" if the program is for that system. The lines
of the transcript are

    $ command           a command, which continues on the next lines that begin with "> ";
    # comment           a comment; "# posix: ..." says why the next command is not run with a program for Windows;
    [3]                 the exit code of the command; 0 if the transcript has none;
    anything else       output, on either stream: "..." matches any text within a line, and a line of only "..."
                        matches any number of lines.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

program, transcript = map(pathlib.Path, sys.argv[1:3])
on_windows = sys.argv[3:] == ["windows"]


def steps(lines):
    command, output, is_run, next_is_run = None, [], True, True
    for line in lines:
        if line.startswith("# posix: "):
            next_is_run = not on_windows
        elif line.startswith("$ "):
            if command and is_run:
                yield command, output
            command, output, is_run, next_is_run = line[2:], [], next_is_run, True
        elif line.startswith("> "):
            command += "\n" + line[2:]
        elif line and not line.startswith("# "):
            output.append(line)
    if is_run:
        yield command, output


def form(expected):
    lines = [".*?".join(map(re.escape, line.split("..."))) + "\n" if line != "..." else "(?:.*\n)*?" for line in expected]
    return "".join(lines)


wrong = 0
with tempfile.TemporaryDirectory() as directory:
    environment = os.environ | {"PATH": f"{program.parent}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
    for command, expected in steps(transcript.read_text().splitlines()):
        run = subprocess.run(["sh", "-c", command], cwd=directory, env=environment, text=True, timeout=120,
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        printed = [line for line in run.stdout.splitlines() if line]
        if run.returncode != 0:
            printed.append(f"[{run.returncode}]")
        if not re.fullmatch(form(expected), "".join(line + "\n" for line in printed)):
            wrong += 1
            print(f"$ {command}", *difflib.unified_diff(expected, printed, "expected", "printed", lineterm=""), sep="\n")
sys.exit(1 if wrong else 0)
