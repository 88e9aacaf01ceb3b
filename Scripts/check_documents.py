"""Checks the documents against the repository: the targets of links, the tests and the commands that they name exist, and
the runs of the host that they show succeed. The table of settings has the settings that the host shows.

Arguments: the file with the names of all tests, and the text of the host's help.
"""

import json
import pathlib
import re
import subprocess
import sys

# For an instance of a parameterised test ("Of/Suite.Name/0"), the name of the test.
tests = {re.sub(r"^\w+/|/\w+$", "", name) for name in pathlib.Path(sys.argv[1]).read_text().split()}
help_text = pathlib.Path(sys.argv[2]).read_text()
wrong = []

for name in subprocess.run(["git", "ls-files", "*.md"], check=True, capture_output=True, text=True).stdout.split():
    document = pathlib.Path(name)
    text = document.read_text()
    for target in re.findall(r"\]\(([^)#]+)\)", text):
        if "://" not in target and not (document.parent / target).exists():
            wrong.append(f"{name}: the link target {target} does not exist")
    for command in re.findall(r"(?<![\w./])\./([a-z]\w*)\b", text):
        if not pathlib.Path(command).exists() and f"-o {command}" not in text:  # a program that the text builds
            wrong.append(f"{name}: there is no command ./{command}")
    for run in re.findall(r"`\./run ([^`]+)`", text):
        if subprocess.run(["./run", *run.split()], stdin=subprocess.DEVNULL, capture_output=True).returncode != 0:
            wrong.append(f"{name}: ./run {run} fails")
    for option in re.findall(r"(?:ActionHost|\./run)[^`\n]*?(--[a-z0-9-]+)", text):
        if option not in help_text and option != "--windows":  # that one is an option of ./run itself
            wrong.append(f"{name}: the host has no option {option}")
    if document.name == "Guarantees.md":
        named = re.findall(r"`([A-Z]\w+\.[A-Z]\w+)`", text)
        wrong += [f"{name}: there is no test {test}" for test in named if test not in tests]
        wrong += [f"{name}: a promise without a test: {row}"
                  for row in re.findall(r"^\| (?!Promise|Test|-)(.*) \|$", text, re.M) if "`" not in row.split("|")[-1]]

settings = [json.loads(line) for line in subprocess.run(["./run", "settings", "--json"], check=True, capture_output=True,
                                                        text=True).stdout.splitlines()]
shown = [(setting["section"], setting["key"]) for setting in settings if "key" in setting]
rows = re.findall(r"^\| (\w+) \| (\w+) \| (.*?) ?\|", pathlib.Path("Docs/Settings.md").read_text(), re.M)
documented = {(section, key): default.strip("` ") for section, key, default in rows if section != "Section"}
if shown != list(documented):
    wrong.append("Docs/Settings.md: the table differs from ActionHost settings")
wrong += [f"Docs/Settings.md: the default of {setting['key']} is {setting['value']}"
          for setting in settings if setting.get("source") == "default" and setting["value"] and
          setting["value"] != documented.get((setting["section"], setting["key"]))]

print(*wrong, sep="\n", end="\n" if wrong else "")
sys.exit(1 if wrong else 0)
