#!/usr/bin/env python3
"""Runs what the documents show and compares what it prints: documents SOURCES PROGRAMS [FILE...]

In a in_block block marked as console, a line "$ COMMAND" is run by bash, and the lines behind it are what it prints. A line
"..." stands for any number of lines. All commands of a document share a folder with the samples, what a run over them
leaves, and the results of a night of five pairs."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sources, programs = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
environment = os.environ | {"PATH": f"{programs}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8", "TZ": "UTC"}
documents = [pathlib.Path(name) for name in sys.argv[3:]]
documents = documents or [sources / "README.md", *sorted((sources / "docs").glob("*.md"))]


def blocks(text):
    """The command and the expected lines of each command in the blocks, with its line number."""
    shown, in_block, in_console = [], False, False
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith("```"):
            in_block = not in_block
            in_console = in_block and line == "```console"
        elif in_console and line.startswith("$ "):
            shown.append((number, line[2:], []))
        elif line.startswith("$ ") and in_block:
            raise SystemExit(f"line {number}: the block shows a command and is not marked as console")
        elif in_console:
            shown[-1][2].append(line)
    return shown


def agrees(expected, found):
    pattern = "".join(r"(?:.*\n)*" if line == "..." else re.escape(line) + r"\n" for line in expected)
    return re.fullmatch(pattern, "".join(line + "\n" for line in found)) is not None


def furnish(folder):
    first, second = (sources / "samples" / name for name in ("first.rvf", "second.rvf"))
    for name in ("samples", "before", "after"):
        (folder / name).mkdir()
    for target in (folder, folder / "samples"):
        shutil.copy(first, target)
        shutil.copy(second, target)
    for name in ("household", "motor", "travel", "gone"):
        shutil.copy(first, folder / "before" / f"{name}.rvf")
    (folder / "before/damaged.rvf").write_bytes(first.read_bytes()[:900])
    for name in ("household", "motor", "damaged"):
        shutil.copy(second, folder / "after" / f"{name}.rvf")
    shutil.copy(first, folder / "after/travel.rvf")
    for command in ("rvfcompare -COMPARE=first.rvf,second.rvf -POS_TOLERANCE=5",
                    "rvfjobs before after --out results -- -POS_TOLERANCE=5"):
        run(command, folder)


def run(command, folder):
    result = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, timeout=60, check=False,
                            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return result.stdout.decode("utf-8", "replace").rstrip().splitlines()


faults = commands = 0
for document in documents:
    with tempfile.TemporaryDirectory() as name:
        furnish(pathlib.Path(name))
        for number, command, expected in blocks(document.read_text()):
            commands += 1
            found = run(command, name)
            while expected and expected[-1] == "":
                expected.pop()
            if not agrees(expected, found):
                faults += 1
                print(f"{document.name}:{number}: $ {command}\nprints", *found, sep="\n", file=sys.stderr)
if commands == 0:
    sys.exit("no document shows a command")
print(f"{commands} commands, {faults} of them with other output than shown")
sys.exit(faults > 0)
