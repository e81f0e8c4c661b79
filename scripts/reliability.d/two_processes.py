"""Two writers, a reader and compaction on one project file at once, each in
a process of its own. Every row a writer's insertRecord acknowledged must be
in the file at the end, no reader may fail to open or read the file, and the
file must pass SQLite's checks.

Usage: two_processes.py ROUNDS [ROWS]"""

import contextlib
import os
import sqlite3
import subprocess
import sys
import tempfile

import qvreliability

PRELUDE = r"""
import sys, qvglobal
path = sys.argv[1]
container = qvglobal.CreateObject("qvglobal10.CQvDbContainer")
"""

# Prints the number of acknowledged inserts last, also after an error.
WRITER = PRELUDE + r"""
series, rows = sys.argv[2], int(sys.argv[3])
acknowledged = 0
try:
    con = container.getQvProjectConnection(path)
    rs = con.getTable("messwert")
    for n in range(rows):
        rs.clearVars()
        rs.setValue("Reihe", series)
        rs.setValue("Nr", n)
        rs.setValue("Wert", n * 0.5)
        rs.insertRecord()
        acknowledged += 1
    container.closeQvConnection(con)
finally:
    print(acknowledged, flush=True)
"""

# Runs until stdin closes; prints its count of runs and failures.
LOOP = PRELUDE + r"""
import select, traceback
runs = failures = 0
def stopped():
    return select.select([sys.stdin], [], [], 0)[0] != []
while not stopped():
    try:
        if sys.argv[2] == "compact":
            container.compactQvProjectConnection(path)
        else:
            con = container.getQvProjectConnection(path)
            rs = con.getTable("messwert")
            rs.readBlock(0, True)
            rs.getRecordCount()
            container.closeQvConnection(con)
        runs += 1
    except Exception:
        failures += 1
        if failures <= 3:
            traceback.print_exc()
print(runs, failures, flush=True)
"""


def make_project(folder):
    path = qvreliability.make_project(folder)
    import qvglobal
    container = qvglobal.CreateObject("qvglobal10.CQvDbContainer")
    con = container.getQvProjectConnection(path)
    con.addTable("Messwert", 1, ["Reihe", 202, 20, "Nr", 3], ["Wert", 5],
                 False)
    container.closeQvConnection(con)
    return path


def start(code, *args):
    return subprocess.Popen([sys.executable, "-c", code] + list(args),
                            stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, text=True)


def one_round(path, rows):
    """Returns (acknowledged, stored, loop figures, problems)."""
    loops = {name: start(LOOP, path, name) for name in ("compact", "read")}
    writers = {s: start(WRITER, path, s, str(rows)) for s in ("A", "B")}
    problems, acknowledged = [], {}
    for series, w in writers.items():
        out, err = w.communicate()
        acknowledged[series] = int(out.split()[-1]) if out.split() else 0
        if w.returncode != 0:
            problems.append("writer %s: %s" % (series, err.strip()[-400:]))
    figures = {}
    for name, p in loops.items():
        out, err = p.communicate(input="stop\n")
        runs, failures = (int(x) for x in out.split()[-2:])
        figures[name] = (runs, failures)
        if failures:
            problems.append("%s: %d of %d failed: %s"
                            % (name, failures, runs, err.strip()[-400:]))
    with contextlib.closing(sqlite3.connect(path, timeout=30)) as db:
        stored = dict(db.execute(
            "SELECT Reihe, COUNT(*) FROM messwert_t GROUP BY Reihe"))
        check = db.execute("PRAGMA integrity_check").fetchall()
        if check != [("ok",)]:
            problems.append("integrity: %r" % check)
    stored = {s: stored.get(s, 0) for s in acknowledged}
    if stored != acknowledged:
        problems.append("acknowledged %r, stored %r" % (acknowledged, stored))
    return acknowledged, stored, figures, problems


def main():
    rounds = int(sys.argv[1])
    rows = int(sys.argv[2]) if len(sys.argv) > 2 else 400
    totals = {"acknowledged": 0, "stored": 0, "compactions": 0, "reads": 0}
    failed = 0
    for r in range(rounds):
        with tempfile.TemporaryDirectory(prefix="qv-two-processes-") as folder:
            path = make_project(folder)
            acknowledged, stored, figures, problems = one_round(path, rows)
        totals["acknowledged"] += sum(acknowledged.values())
        totals["stored"] += sum(stored.values())
        totals["compactions"] += figures["compact"][0]
        totals["reads"] += figures["read"][0]
        for p in problems:
            print("round %d: %s" % (r, p), file=sys.stderr)
        failed += bool(problems)
    print("two processes: %d rounds, %d rows acknowledged, %d stored, "
          "%d compactions and %d reads beside the writers, %d rounds failed"
          % (rounds, totals["acknowledged"], totals["stored"],
             totals["compactions"], totals["reads"], failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
