"""Checks every #include against the floors of the rooms: a room includes only itself and rooms on lower floors.

    check_floors.py            reports each include that does not lead to a lower floor, each pair of rooms that include
                               each other, each file outside of the rooms, and an outdated table in the documents;
                               exits 1 if it reports anything
    check_floors.py --table    prints the table as Docs/Architecture.md shows it
"""

import pathlib
import re
import subprocess
import sys

COMMON = "HarborCore/Sources/Common"
SOURCES = "DataCollectionCore/Sources"

# From the lowest floor to the highest. Rooms on one floor do not include each other. A room is a folder with all folders
# below it that are not rooms themselves.
FLOORS = [
    {"Platform": "the operating system's functions that the code calls"},
    {"Neighbours": "the contracts of the two closed libraries"},
    {"HarborCore/Include": "the base types that cross a component boundary"},
    {"DataCollectionCore/Include": "what a client includes: interfaces, records, ids",
     f"{COMMON}/Base": "codes and their exception, text, formats, streams, locks, threads"},
    {f"{COMMON}/Settings": "settings, module paths, registry, data directory",
     "StandIns/NodeFabric": "the node store", "StandIns/ModuleBroker": "the broker of named instances"},
    {f"{COMMON}/Logging": "the log, its file, function traces"},
    {f"{COMMON}/Failures": "the texts of failures, the edge of a method"},
    {f"{COMMON}/Components": "component objects, the module object, the list of living objects",
     f"{COMMON}/Nodes": "node handles, dumps, modification records"},
    {f"{SOURCES}/Schedules": "the arithmetic of schedules",
     f"{SOURCES}/Comparison": "the comparison of configuration trees"},
    {f"{SOURCES}/Subsystems/ActionManager": "manager, worker, cycle, subscriptions, commands, strategies"},
    {f"{SOURCES}/Module": "the export, the load order, the class table",
     "StandIns/ConfigServer": "a configuration service for hosts and tests"},
    {"Host/Base": "the host's failures, output formats, and the loaded module"},
    {"Host/Console": "terminal, signals, standard input, environment"},
    {"Host/Schedules": "schedules as text, their preview and explanation",
     "Host/Settings": "the module's settings", "Host/Compare": "comparing two configuration trees"},
    {"Host/Log": "reading a log and showing it"},
    {"Host/Run": "registering at the module, and reporting each call"},
    {"Host/CommandLine": "options, configuration file, help"},
    {"Host": "the console host"},
    {"Tests": "tests", "Benchmarks": "benchmarks", "Fuzz": "fuzzers", "Docs/Samples": "sample clients"},
]
LEVEL = {room: level for level, rooms in enumerate(FLOORS) for room in rooms}

# Where an include is searched, after the folder of the including file.
ROOTS = ["Platform/Include", "Platform/Common", "Platform/Posix", "Platform/Windows", "Neighbours/Include",
         "HarborCore/Include", "HarborCore/Sources", "DataCollectionCore/Include", SOURCES,
         "StandIns/NodeFabric/Include", "StandIns/ModuleBroker/Include", "StandIns/ConfigServer/Include", "Tests", "Tests/HarborCore",
         "Tests/Module", "Tests/Platform", "Benchmarks", "Fuzz", "."]


def room_of(path):
    return next((str(folder) for folder in path.parents if str(folder) in LEVEL), None)


def table():
    lines = ["| Floor | Rooms |", "|---|---|"]
    for level, rooms in reversed(list(enumerate(FLOORS))):
        names = "; ".join(f"`{name}`: {what}" for name, what in rooms.items())
        lines.append(f"| {level} | {names} |")
    return "\n".join(lines)


def main():
    if "--table" in sys.argv:
        print(table())
        return 0
    listing = subprocess.run(["git", "ls-files", "*.h", "*.cpp"], check=True, capture_output=True, text=True)
    files = {pathlib.Path(name) for name in listing.stdout.split()}
    wrong, needs = [], set()
    for file in sorted(files):
        room = room_of(file)
        if room is None:
            wrong.append(f"{file}: its folder is not a room of the table")
            continue
        for included in re.findall(r'^#include "([^"]+)"', file.read_text(), re.M):
            target = next((path for path in [file.parent / included, *(pathlib.Path(root) / included for root in ROOTS)]
                           if path in files), None)
            other = room_of(target) if target else None
            if target is None:
                wrong.append(f"{file}: {included} is not found")
            if other in (None, room):
                continue
            needs.add((room, other))
            if LEVEL[other] >= LEVEL[room]:
                wrong.append(f"{file}: {included} is on floor {LEVEL[other]}, its own room on floor {LEVEL[room]}")
    wrong += [f"{a} and {b} include each other" for a, b in needs if a < b and (b, a) in needs]
    if table() not in pathlib.Path("Docs/Architecture.md").read_text():
        wrong.append("Docs/Architecture.md: the table of floors differs from check_floors.py --table")
    print(*wrong, sep="\n", end="\n" if wrong else "")
    return 1 if wrong else 0


sys.exit(main())
