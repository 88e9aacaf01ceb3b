"""Builds every C++ example of the documents and of the installed headers against an installed SDK, and runs those that
are whole programs.

    build_examples.py <source folder> <compiler> <options of the compiler>

An example is a fenced block that begins with ```cpp in a document, or lines of a header's comment that are indented by
four further columns. An example that contains `int main` is built as it is and run with the module's path. Any other
one is compiled as the body of a function, behind the declarations of PRELUDE. pkg-config finds the SDK.
"""

import concurrent.futures
import pathlib
import re
import subprocess
import sys
import tempfile

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wnon-virtual-dtor", "-Werror", "-Wno-unused-variable",
            "-Wno-unused-local-typedefs"]

# What the text around an example has introduced.
PRELUDE = """
#include <cstdio>
#include "ConfigServer/ConfigServer.h"
#include "DataCollection/CreateActionManager.h"
#include "DataCollection/TriggerStrategy.h"
#include "DataCollection/Version.h"
#include "Harbor/Object.h"
#include "ModuleBroker/Registration.h"
[[maybe_unused]] extern const Harbor::Module module;
[[maybe_unused]] extern const Harbor::ComponentPtr<DataCollection::ActionManagement::IActionManager> manager;
[[maybe_unused]] extern const Harbor::ComponentPtr<DataCollection::ActionManagement::IActionListener> listener;
extern Harbor::ComponentPtr<DataCollection::ActionManagement::IActionSubscription> subscription;
"""


def pkg_config(*arguments):
    run = subprocess.run(["pkg-config", *arguments, "orv-action-manager"], check=True, capture_output=True, text=True)
    return run.stdout.split()


def examples(source, headers):
    for document in [source / "README.md", *sorted((source / "Docs").rglob("*.md"))]:
        for block in re.findall(r"^```cpp\n(.*?)^```", document.read_text(), re.M | re.S):
            yield document, block
    for header in sorted(headers.rglob("*.h")):
        # Blocks of comment lines; a line of "//" without text does not end a block.
        for block in re.findall(r"(?:^//(?: {5}.*)?\n)+", header.read_text(), re.M):
            lines = [line[7:] for line in block.splitlines()]
            if any(line.rstrip().endswith((";", "}")) for line in lines):
                yield header, "\n".join(lines) + "\n"


def build(number, origin, text, work, compiler):
    """Returns what went wrong, or an empty text."""
    is_program = "int main" in text
    if is_program:
        code = text
    else:
        includes = re.match(r"(#include .*\n|\n)*", text).group()
        code = f"{PRELUDE}{includes}void Example() {{\n{text[len(includes):]}}}\n"
    file = work / f"example{number}.cpp"
    file.write_text(code)
    output = ["-o", str(file.with_suffix(""))] if is_program else ["-fsyntax-only"]
    libraries = pkg_config("--libs") if is_program else []
    command = [*compiler, *WARNINGS, str(file), *output, *pkg_config("--cflags"), *libraries]
    built = subprocess.run(command, capture_output=True, text=True)
    if built.returncode != 0:
        return f"{origin}: an example does not compile:\n{text}\n{built.stderr}"
    if is_program:
        program = [str(file.with_suffix("")), *pkg_config("--variable=module")]
        ran = subprocess.run(program, capture_output=True, text=True, timeout=120)
        if ran.returncode != 0 or not ran.stdout or ran.stderr:
            return f"{origin}: an example ends with {ran.returncode}\n{ran.stdout}{ran.stderr}"
    return ""


def main():
    source, compiler = pathlib.Path(sys.argv[1]), [sys.argv[2], *" ".join(sys.argv[3:]).split()]
    headers = pathlib.Path(*pkg_config("--variable=includedir"))
    found = list(examples(source, headers))
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(2) as pool:
        tasks = [pool.submit(build, number, origin, text, pathlib.Path(folder), compiler)
                 for number, (origin, text) in enumerate(found)]
        wrong = [task.result() for task in tasks if task.result()]
    print(*wrong, sep="\n", end="\n" if wrong else "")
    of_documents = sum(origin.suffix == ".md" for origin, _ in found)
    print(f"{of_documents} examples of documents, {len(found) - of_documents} of headers, {len(wrong)} wrong")
    return 1 if wrong or of_documents == 0 or of_documents == len(found) else 0


sys.exit(main())
