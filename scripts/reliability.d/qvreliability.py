"""Shared code of the reliability scenarios: a sample project database made
through the library, a child process that repeats one operation until it is
killed with SIGKILL at a random moment, and the checks that the file then
holds either the old or the new state, complete.

Usage: qvreliability.py SCENARIO TRIALS
Scenarios: compaction, conversion, setchild, clearing.
Prints one line per scenario: trials, states seen, failures (exit status 1
when any trial failed)."""

import contextlib
import os
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile

ROWS = 200

# Child processes: the library through the Python bridge. Each prints
# "ready" once set up, then repeats its operation until it is killed.
CHILD_PRELUDE = r"""
import sys, sqlite3, qvglobal
path = sys.argv[1]
container = qvglobal.CreateObject("qvglobal10.CQvDbContainer")
"""

CHILDREN = {
    "compaction": r"""
print("ready", flush=True)
while True:
    container.compactQvProjectConnection(path)
""",
    "conversion": r"""
con = container.getQvProjectConnection(path)
version = con.getTableVersion("raum")
print("ready", flush=True)
while True:
    version += 1
    con.convertTable("raum", version, ["Extra%d" % version, 3])
""",
    "setchild": r"""
con = container.getQvProjectConnection(path)
print("ready", flush=True)
while True:
    con.setChild("gebaeude", "raum")
    con.delChild("gebaeude", "raum")
""",
    "clearing": r"""
import qvreliability
print("ready", flush=True)
while True:
    container.ClearAllTables(path)
    qvreliability.fill(path)
""",
}


def make_project(folder):
    """A project database with the related-to-be tables gebaeude and raum,
    made by the library, filled with ROWS rooms."""
    path = os.path.join(folder, "Projekt_VM.qv3")
    with contextlib.closing(sqlite3.connect(path)) as db:
        db.execute('CREATE TABLE qvversions ("Name" VARCHAR(255) '
                   'COLLATE NOCASE PRIMARY KEY, "Version" INTEGER)')
        db.commit()
    import qvglobal
    container = qvglobal.CreateObject("qvglobal10.CQvDbContainer")
    con = container.getQvProjectConnection(path)
    con.addTable("Gebaeude", 1, ["Gebaeude", 202, 20],
                 ["Bezeichnung", 202, 50], False)
    con.addTable("Raum", 1, ["Gebaeude", 202, 20, "Raum", 202, 20],
                 ["Flaeche", 5, "Bezeichnung", 202, 50], False)
    container.closeQvConnection(con)
    fill(path)
    return path


def fill(path):
    """ROWS rooms of one building, all tables in one transaction."""
    with contextlib.closing(sqlite3.connect(path, timeout=30)) as db:
        with db:
            db.execute("INSERT INTO gebaeude (Gebaeude) VALUES ('G')")
            db.execute("INSERT INTO gebaeude_t (Gebaeude, Bezeichnung) "
                       "VALUES ('G', 'Haus')")
            for i in range(ROWS):
                db.execute("INSERT INTO raum (Gebaeude, Raum) VALUES (?, ?)",
                           ("G", "R%d" % i))
                db.execute("INSERT INTO raum_t (Gebaeude, Raum, Flaeche, "
                           "Bezeichnung) VALUES (?, ?, ?, ?)",
                           ("G", "R%d" % i, i * 1.5, "Raum %d" % i))


def table_counts(db):
    names = [r[0] for r in db.execute(
        "SELECT name FROM sqlite_master WHERE type = 'table' "
        "AND name NOT LIKE 'sqlite_%' ORDER BY name")]
    return {n: db.execute('SELECT COUNT(*) FROM "%s"' % n).fetchone()[0]
            for n in names}


def versions(db):
    return dict(db.execute("SELECT lower(Name), Version FROM qvversions"))


def columns(db, table):
    return [r[1] for r in db.execute('PRAGMA table_info("%s")' % table)]


def full_counts():
    return {"gebaeude": 1, "gebaeude_t": 1, "qvversions": 2,
            "raum": ROWS, "raum_t": ROWS}


def check(scenario, path):
    """The state of the file after the kill: a name for it, or raises
    AssertionError saying what is broken."""
    with contextlib.closing(sqlite3.connect(path, timeout=30)) as db:
        result = db.execute("PRAGMA integrity_check").fetchall()
        assert result == [("ok",)], "integrity: %r" % result
        bad_fk = db.execute("PRAGMA foreign_key_check").fetchall()
        assert not bad_fk, "foreign keys: %r" % bad_fk
        counts = table_counts(db)
        if scenario == "clearing":
            empty = {n: (2 if n == "qvversions" else 0) for n in counts}
            assert counts in (full_counts(), empty), "rows: %r" % counts
            return "full" if counts == full_counts() else "cleared"
        assert counts == full_counts(), "rows: %r" % counts
        if scenario == "conversion":
            version = versions(db)["raum_t"]
            extra = [c for c in columns(db, "raum_t") if c.startswith("Extra")]
            assert extra == ["Extra%d" % v for v in range(2, version + 1)], \
                "version %d with columns %r" % (version, extra)
            return "converted" if version > 1 else "old"
        if scenario == "setchild":
            fks = db.execute('PRAGMA foreign_key_list("raum")').fetchall()
            assert len(fks) in (0, 1) and all(f[2] == "gebaeude" for f in fks), \
                "foreign keys of raum: %r" % fks
            return "related" if fks else "unrelated"
        return "complete"


def run_child(scenario, path):
    """Starts the child, waits until it is ready and kills it with SIGKILL
    at a random moment of its work."""
    here = os.path.dirname(os.path.abspath(__file__))
    env = dict(os.environ)
    env["PYTHONPATH"] = os.pathsep.join(
        p for p in (here, env.get("PYTHONPATH", "")) if p)
    child = subprocess.Popen(
        [sys.executable, "-c", CHILD_PRELUDE + CHILDREN[scenario], path],
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=env, text=True)
    ready = child.stdout.readline()
    if ready.strip() != "ready":
        child.kill()
        raise AssertionError("child did not start: " + child.stderr.read())
    delay = random.uniform(0.0, 0.25)
    try:
        child.wait(timeout=delay)
        raise AssertionError("child ended by itself: " + child.stderr.read())
    except subprocess.TimeoutExpired:
        pass
    child.send_signal(signal.SIGKILL)
    child.wait()
    child.stdout.close()
    child.stderr.close()


def main():
    scenario, trials = sys.argv[1], int(sys.argv[2])
    failures, states = 0, {}
    with tempfile.TemporaryDirectory(prefix="qv-reliability-") as folder:
        seed = make_project(os.path.join(folder))
        work_dir = os.path.join(folder, "work")
        for trial in range(trials):
            shutil.rmtree(work_dir, ignore_errors=True)
            os.mkdir(work_dir)
            path = os.path.join(work_dir, os.path.basename(seed))
            shutil.copy(seed, path)
            try:
                run_child(scenario, path)
                state = check(scenario, path)
                states[state] = states.get(state, 0) + 1
            except AssertionError as e:
                failures += 1
                kept = os.path.join(tempfile.gettempdir(), "qv-reliability-"
                                    "%s-%d.qv3" % (scenario, trial))
                shutil.copy(path, kept)
                print("%s trial %d: %s (file kept as %s)"
                      % (scenario, trial, e, kept), file=sys.stderr)
    seen = ", ".join("%s %d" % kv for kv in sorted(states.items()))
    print("%s: %d trials, %d failed (states: %s)"
          % (scenario, trials, failures, seen))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
