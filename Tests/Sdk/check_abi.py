"""Compares the binary interface of a build with the checked-in list: the functions that each library exports, and the
layouts, slots and ids that AbiLayouts prints.

    check_abi.py <list> <nm> <program AbiLayouts> <library>...

Weak symbols are not listed: they are instances of the standard library's templates, which each binary may have. Neither
are those with which a build counts what its tests reach.
"""

import difflib
import pathlib
import subprocess
import sys


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()


def main():
    checked_in, nm, layouts, *libraries = sys.argv[1:]
    actual = output_of(layouts)
    for library in libraries:
        symbols = [line.split(" ", 2) for line in output_of(nm, "-DC", "--defined-only", library)]
        actual += sorted(f"export {pathlib.Path(library).name.split('.so')[0]}: {name}"
                         for _, kind, name in symbols if kind not in "VWvw" and "llvm" not in name)
    expected = pathlib.Path(checked_in).read_text().splitlines()
    difference = list(difflib.unified_diff(expected, actual, checked_in, "this build", lineterm="", n=0))
    if not difference:
        return 0
    kept = pathlib.Path(layouts).with_name("Abi.txt")
    kept.write_text("\n".join(actual) + "\n")
    print(*difference, sep="\n")
    print(f"A removed or changed line breaks existing clients. After an intended addition: cp {kept} {checked_in}")
    return 1


sys.exit(main())
