#!/usr/bin/env bash
# INI writers killed with SIGKILL at random moments of their writes. After
# every kill the file must be whole, the old version or a new one, and the
# next writer must not be blocked by the killed one's lock. The one argument
# is the number of kills (default 100); runs through the Python bridge
# (PYTHONPATH must reach the built module, as scripts/reliability.sh sets
# it).
set -euo pipefail

trials=${1:-100}
exec /usr/bin/python3 - "${trials}" <<'PY'
import os
import random
import re
import signal
import sys
import tempfile
import time

import qvglobal

trials = int(sys.argv[1])
folder = tempfile.mkdtemp(prefix="ini-crash-")
path = os.path.join(folder, "crash.ini")
pad = "p" * (256 * 1024)  # one write takes many system calls
whole = re.compile(r"\[S\]\r\npad=p{%d}\r\nv=(\d+)\r\n\Z" % len(pad), re.S)


def manager():
    ini = qvglobal.CreateObject("qvglobal10.CqvIniManager")
    ini.IniFile = path
    return ini


ini = manager()
assert ini.WriteString("S", "pad", pad) and ini.WriteString("S", "v", "0")
start = time.monotonic()
assert ini.WriteString("S", "v", "1")
one_write = time.monotonic() - start

random.seed(20261123)
versions = set()
signal.signal(signal.SIGALRM, lambda *_: sys.exit("next writer blocked"))
for trial in range(trials):
    child = os.fork()
    if child == 0:
        writer, n = manager(), 2
        while True:  # values of changing length: old and new differ in size
            writer.WriteString("S", "v", "0" * (n % 5) + str(n))
            n += 1
    time.sleep(random.uniform(0, 10 * one_write))
    os.kill(child, signal.SIGKILL)
    os.waitpid(child, 0)
    with open(path, "rb") as f:
        data = f.read().decode("ascii", "replace")
    match = whole.match(data)
    if not match:
        sys.exit(f"trial {trial}: cut or damaged file of {len(data)} bytes")
    versions.add(match.group(1))
    signal.alarm(10)
    assert ini.WriteString("S", "v", "1"), f"trial {trial}: write failed"
    signal.alarm(0)

leftovers = len([n for n in os.listdir(folder) if n != "crash.ini"])
print(f"ini_crash: {trials} kills, file whole every time "
      f"({len(versions)} distinct versions seen, {leftovers} temporary files "
      f"left by killed writers)")
for name in os.listdir(folder):
    os.unlink(os.path.join(folder, name))
os.rmdir(folder)
PY
