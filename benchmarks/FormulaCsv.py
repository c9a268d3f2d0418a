#!/usr/bin/env python3
"""utilvel formula --csv against Python's compiled eval over the csv module: a million rows of three variables.

Both read the same file and write each row with its value to another; whole processes are timed, the best of
three. Fails when a value differs; says so when we are not ten times as fast by processor time, or use 20 MB.
"""
import csv
import json
import os
import random
import subprocess
import sys
import tempfile
import time
from pathlib import Path

FORMULA = "(VENTA-COSTO)*TASA"
ROWS = 1_000_000
# Our processor time by Python's.
LIMIT = 0.1
RUNS = 3
UTILVEL = Path(__file__).resolve().parent.parent / "tools/utilvel/utilvel"

PEER = """
import csv, sys
code = compile(sys.argv[1], "formula", "eval")
with open(sys.argv[2], newline="") as source, open(sys.argv[3], "w", newline="") as target:
    rows = csv.reader(source)
    write = csv.writer(target).writerow
    names = next(rows)
    write(names + ["resultado"])
    values = {}
    for row in rows:
        for name, text in zip(names, row):
            values[name] = float(text)
        row.append(eval(code, values))
        write(row)
"""


def make_rows(path):
    rng = random.Random(90)
    with open(path, "w") as out:
        out.write("VENTA,COSTO,TASA\n")
        for _ in range(ROWS):
            out.write("%.2f,%.2f,%.4f\n" % (rng.uniform(1, 99999), rng.uniform(1, 9999), rng.uniform(0, 0.2)))


def measure(command):
    """Elapsed and processor seconds of a process, and its peak memory in MB."""
    start = time.perf_counter()
    process = subprocess.Popen(command)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit("%s ended with %d" % (command[0], process.returncode))
    return time.perf_counter() - start, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def same_values(ours, theirs):
    with open(ours, newline="") as a, open(theirs, newline="") as b:
        count = 0
        for mine, other in zip(csv.DictReader(a), csv.DictReader(b), strict=True):
            expected = float(other["resultado"])
            if mine["mensaje"] or abs(float(mine["resultado"]) - expected) > 1e-9 * max(1, abs(expected)):
                sys.exit("row %d: %s, Python has %s" % (count + 1, mine, other))
            count += 1
    return count == ROWS


with tempfile.TemporaryDirectory() as folder:
    rows, ours, theirs = (os.path.join(folder, name) for name in ("rows.csv", "ours.csv", "theirs.csv"))
    make_rows(rows)
    commands = {
        "utilvel": [str(UTILVEL), "formula", FORMULA, "--csv", rows, "--salida", ours],
        "Python": [sys.executable, "-c", PEER, FORMULA, rows, theirs],
    }
    best = {}
    for _ in range(RUNS):
        for name, command in commands.items():
            result = measure(command)
            best[name] = tuple(map(min, best.get(name, result), result))
    if not same_values(ours, theirs):
        sys.exit("not all rows are there")
    nanos = {name: processor / ROWS * 1e9 for name, (_, processor, _) in best.items()}
    ratio = nanos["utilvel"] / nanos["Python"]
    if "--json" in sys.argv:
        print(json.dumps({"name": "formula --csv, a row", "ns": nanos, "ratio": ratio, "limit": LIMIT}))
    else:
        for name, (elapsed, processor, memory) in best.items():
            print("%-8s %10.0f rows/s elapsed %10.0f rows/s of processor time %7.1f MB"
                  % (name, ROWS / elapsed, ROWS / processor, memory))
        print("%.1f times by elapsed time, %.1f by processor time; all values the same  limit %.1f: %s"
              % (best["Python"][0] / best["utilvel"][0], 1 / ratio, 1 / LIMIT, "met" if ratio <= LIMIT else "MISSED"))
    if best["utilvel"][2] >= 20:
        print("MISSED: more than 20 MB", file=sys.stderr)
