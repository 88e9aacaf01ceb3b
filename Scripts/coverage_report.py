"""Reads the output of llvm-cov export from standard input, and prints the branches of the product that no test takes and
the percentages of lines and branches that the tests reach.

A branch in a template or a macro counts once, and as taken if any of its instances took it. Exits 1 below a goal.
"""

import collections
import json
import os
import sys

LINES_GOAL, BRANCHES_GOAL = 95.0, 90.0
PARTS = ("DataCollectionCore", "HarborCore")


def branches_of(file):
    """Yields the place of each condition in the sources, and how often it was true and false."""
    for line, column, _, _, taken, not_taken, *_ in file["branches"]:
        yield (file["filename"], line, column), taken, not_taken
    for expansion in file["expansions"]:
        for line, column, _, _, taken, not_taken, _, source, *_ in expansion["branches"]:
            yield (expansion["filenames"][source], line, column), taken, not_taken


def main():
    good = True
    shares = []
    files = json.load(sys.stdin)["data"][0]["files"]
    for part in PARTS:
        lines = covered = 0
        taken_branches = collections.Counter()
        for file in files:
            if not os.path.relpath(file["filename"]).startswith(part + "/"):
                continue
            lines += file["summary"]["lines"]["count"]
            covered += file["summary"]["lines"]["covered"]
            for place, taken, not_taken in branches_of(file):
                taken_branches[*place, "true"] += taken
                taken_branches[*place, "false"] += not_taken
        missed = sorted(place for place, count in taken_branches.items() if count == 0)
        for name, line, column, side in missed:
            print(f"{os.path.relpath(name)}:{line}:{column}: never {side}")
        of_lines = 100.0 * covered / lines
        of_branches = 100.0 - 100.0 * len(missed) / len(taken_branches)
        good &= of_lines >= LINES_GOAL and of_branches >= BRANCHES_GOAL
        shares.append(f"{part}: {of_lines:.1f} % of {lines} lines, {of_branches:.1f} % of {len(taken_branches)} branches")
    print(*shares, sep="\n")
    return 0 if good else 1


sys.exit(main())
