"""Runs the host's commands with --json and checks each line against the tables of shapes in the documents: a line must
have exactly the members of one table, in their order and with their types. Each table must be used.

Arguments: the path of the program ActionHost, and the document.
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

TIME = r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.(\d{3}|\d{7})"
is_number = lambda value: isinstance(value, (int, float)) and not isinstance(value, bool)
TYPES = {
    "text": lambda value: isinstance(value, str),
    "time": lambda value: isinstance(value, str) and re.fullmatch(TIME + r"[+-]\d\d:\d\d", value),
    "UTC time": lambda value: isinstance(value, str) and re.fullmatch(TIME + "Z", value),
    "number": is_number,
    "whole number": lambda value: is_number(value) and isinstance(value, int),
    "true or false": lambda value: isinstance(value, bool),
    "list of texts": lambda value: isinstance(value, list) and all(isinstance(item, str) for item in value),
    "object of numbers": lambda value: isinstance(value, dict) and all(map(is_number, value.values())),
}
TREE = '<node name="a" type=""/>'
WRONG = r"write \Commands\ManagedObjectsDataCollectionCommand\A\B Command=wrong"
RUNS = [
    ["--every", "20ms", "--watch", "A/B", "--polling", "5", "--duration", "1500ms", "--do", "500ms start A B",
     "--do", "500ms " + WRONG, "--do", "500ms start A C", "--do", "900ms status", "--do", "900ms tree"],
    ["log"], ["log", "--slow", "3"], ["next", "1h", "06:00:00", "--local"], ["explain", "1h", "06:00:00", "0s"],
    ["check", "--config", "host.ini"], ["compare", "tree.xml", "tree.xml"], ["settings"],
]


def shapes(document):
    tables = re.findall(r"^### (.*)\n\n\| Member \| Type \| Meaning \|\n\|---\|---\|---\|\n((?:\|.*\n)+)", document, re.M)
    return {name: dict(re.findall(r"^\| (\w+) \| (.*?) \|", rows, re.M)) for name, rows in tables}


def is_of(kind, value):
    if kind.endswith(" or null"):
        return value is None or is_of(kind.removesuffix(" or null"), value)
    return value == kind.strip('"') if kind.startswith('"') else bool(TYPES[kind](value))


def fits(shape, line):
    return list(line) == list(shape) and all(is_of(kind, line[member]) for member, kind in shape.items())


program, document = sys.argv[1:]
known = shapes(pathlib.Path(document).read_text())
used, wrong = set(), []
with tempfile.TemporaryDirectory() as directory:
    pathlib.Path(directory, "tree.xml").write_text(TREE)
    pathlib.Path(directory, "host.ini").write_text("every = 1h\nwatch = A/B\n")
    environment = os.environ | {"GS_Logger_Path": directory, "TZ": "Asia/Tokyo"}
    for arguments in RUNS:
        run = subprocess.run([program, *arguments, "--json"], cwd=directory, env=environment, stdin=subprocess.DEVNULL,
                             stdout=subprocess.PIPE, text=True, timeout=120)
        for line in run.stdout.splitlines():
            matching = [name for name, shape in known.items() if fits(shape, json.loads(line))]
            if len(matching) == 1:
                used.update(matching)
            else:
                wrong.append(f"{arguments[0]}: fits {len(matching)} shapes: {line[:300]}")
wrong += [f"{document}: no line has the shape '{name}'" for name in known if name not in used]
print(*wrong[:20], sep="\n", end="\n" if wrong else "")
sys.exit(1 if wrong or not known else 0)
