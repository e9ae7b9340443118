"""Validates what rvfinspect writes as JSON Lines against its schema: ValidateJson.py PROGRAM SOURCES"""

import json
import pathlib
import shutil
import subprocess
import sys
import tempfile

import jsonschema

program, sources = sys.argv[1], pathlib.Path(sys.argv[2])
schema = json.loads((sources / "docs/rvfinspect.schema.json").read_text())
validator = jsonschema.Draft202012Validator(schema)
samples = [str(sources / "samples" / name) for name in ("first.rvf", "second.rvf")]
folders = sorted(p for p in (sources / "tests/reference").iterdir() if (p / "expected-difference").exists())

runs = [["changes", *samples], ["changes", "--all-pages", *samples], ["dump", samples[0]], ["check", *samples]]
runs += [["dump", "--redact", samples[0]]]
for folder in folders[::4]:
    captures = sorted(str(p) for p in folder.glob("*.rvf"))
    runs += [["changes", *captures[:2]], ["dump", captures[0]], ["check", *captures]]
    runs += [["list", str(folder / "expected-difference")]]

# A folder of results with one pair that differs.
results = pathlib.Path(tempfile.mkdtemp())
(results / "pairs/x").mkdir(parents=True)
for name in ("first.rvf", "second.rvf"):
    (results / "pairs/x" / name).symlink_to((sources / "samples" / name).resolve())
pair = {"name": "x", "folder": "pairs/x", "first": "a", "second": "b", "options": ["-POS_TOLERANCE=5"], "reason": ""}
pair |= {"state": "different", "status": 197, "bits": 539073, "seconds": 0.1, "firstBytes": 1, "secondBytes": None}
(results / "results.jsonl").write_text(json.dumps(pair) + "\n" + json.dumps(pair | {"state": "killed", "bits": None}))
runs += [["summary", "--groups", str(results)]]

lines = 0
kinds = set()
for run in runs:
    result = subprocess.run([program, *run, "--format", "jsonl"], stdout=subprocess.PIPE, check=False)
    if result.returncode not in (0, 1, 2, 3):
        sys.exit(f"{run}: status {result.returncode}")
    for line in result.stdout.decode("utf-8").split("\n")[:-1]:
        record = json.loads(line)
        error = jsonschema.exceptions.best_match(validator.iter_errors(record))
        if error is not None:
            sys.exit(f"{run}: {error.message}\n{line[:2000]}")
        lines += 1
        kinds.add(record["record"])
shutil.rmtree(results)
missing = {"run", "verdict", "page", "object", "group", "summary", "part", "list", "check", "differenceFile"} - kinds
missing |= {"results", "pair", "groupOfPairs", "resultsSummary"} - kinds
if missing:
    sys.exit(f"never seen: {missing}")
print(f"{lines} lines of {len(kinds)} kinds are as the schema says")
