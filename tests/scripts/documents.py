#!/usr/bin/env python3
"""Runs what the documents show and compares what it prints: documents SOURCES PROGRAMS [FILE...]

In a block marked as console, bash runs each line "$ COMMAND", and the lines after it are what it prints. A line "..." stands
for any number of lines. All commands of a document share a folder with the samples, what a run over them leaves, and the
results of a night of five pairs. Commands in other blocks are not run, but the options that they name must exist."""

import functools
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
documents = documents or sorted(
    path for path in sources.rglob("*.md")
    if not {"build", "node_modules"} & set(path.relative_to(sources).parts)
    and not any(part.startswith(".") for part in path.relative_to(sources).parts))
# These show what the programs print; a change to them that leaves nothing to run is a mistake.
must_show = {sources / "README.md", *(sources / "docs" / f"{name}.md"
                                      for name in ("running", "samples", "rvfinspect", "many-pairs"))}


def lines_of(text):
    """Each line with its number, and the fence that it stands in: None outside of all, "" for one without a name."""
    fence = None
    for number, line in enumerate(text.splitlines(), 1):
        if line.lstrip().startswith("```"):
            fence = line.lstrip()[3:].strip() if fence is None else None
        else:
            yield number, line, fence


def shown_commands(text):
    """The command and the expected lines of each command, with its line number."""
    shown = []
    for number, line, fence in lines_of(text):
        if fence == "console" and line.startswith("$ "):
            shown.append((number, line[2:], []))
        elif fence == "console" and shown:
            shown[-1][2].append(line)
        elif re.match(r"\s*\$ ", line):
            raise SystemExit(f"line {number} shows a command in a block that is not marked as console")
    return shown


@functools.cache
def options_of(*command):
    text = run(f"{' '.join(command)} --help", sources)
    return set(re.findall(r"(?<![\w-])-{1,2}[A-Za-z][A-Za-z_-]*", "\n".join(text))) | {"--help", "--version"}


def unknown_options(text):
    """The options of our programs that commands name without being run, and that there are not."""
    for number, line, fence in lines_of(text):
        if fence == "console" or (fence is None and not line.startswith("    ")):
            continue
        for part in re.split(r"[|;&]", line.split("#  ")[0].split("   #")[0]):
            words = part.split()
            if not words or words[0] not in ("rvfcompare", "rvfinspect", "rvfjobs"):
                continue
            command = words[:2] if words[0] == "rvfinspect" and not words[1].startswith("-") else words[:1]
            if "--" in words:
                yield from ((number, word) for word in words[words.index("--") + 1:]
                            if word.split("=")[0] not in options_of("rvfcompare"))
                words = words[:words.index("--")]
            for word in words:
                if re.match("-{1,2}[A-Za-z]", word) and word.split("=")[0] not in options_of(*command):
                    yield number, word


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
    text = document.read_text()
    for number, word in unknown_options(text):
        faults += 1
        print(f"{document.name}:{number}: there is no option {word}", file=sys.stderr)
    shown = shown_commands(text)
    commands += len(shown)
    if not shown:
        if document in must_show:
            faults += 1
            print(f"{document.name} shows no command", file=sys.stderr)
        continue
    with tempfile.TemporaryDirectory() as name:
        furnish(pathlib.Path(name))
        for number, command, expected in shown:
            found = run(command, name)
            while expected and expected[-1] == "":
                expected.pop()
            if not agrees(expected, found) or (expected and set(expected) == {"..."}):
                faults += 1
                print(f"{document.name}:{number}: $ {command}\nprints", *found, sep="\n", file=sys.stderr)
missing = must_show - set(documents)
if missing and len(sys.argv) == 3:
    sys.exit(f"there is no {', '.join(map(str, missing))}")
print(f"{len(documents)} documents, {commands} commands, {faults} faults")
sys.exit(faults > 0)
