#!/bin/sh
# Runs two benchmarks of one bench program under callgrind for a fixed number
# of iterations and prints the ratio of their instruction counts per
# iteration: a measure of the library's cost against its baseline that a
# busy machine does not disturb.
#
#   scripts/callgrind-ratio.sh build/bin/bench_dispatch BM_InvokeByName BM_Direct
set -eu
if [ $# -lt 3 ]; then
  echo "usage: $0 BENCH_PROGRAM OURS BASELINE [ITERATIONS]" >&2
  exit 2
fi
program=$1 ours=$2 base=$3 iterations=${4:-200000}
command -v valgrind >/dev/null || { echo "$0: needs valgrind (apt-get install valgrind)" >&2; exit 2; }
out=$(mktemp)
trap 'rm -f "$out"' EXIT
QV_BENCH_ITERATIONS=$iterations valgrind --tool=callgrind \
  --callgrind-out-file="$out" --toggle-collect="*$ours(*" \
  --toggle-collect="*$base(*" "$program" \
  --benchmark_filter="^($ours|$base)(/|\$)" >/dev/null 2>&1
# The inclusive instruction count of each benchmark function.
count() {
  callgrind_annotate --inclusive=yes "$out" 2>/dev/null |
    awk -v f="$1" 'index($0, ":" f "(") { gsub(",", "", $1); print $1; exit }'
}
a=$(count "$ours") b=$(count "$base")
if [ -z "$a" ] || [ -z "$b" ]; then
  echo "callgrind: no counts for $ours or $base" >&2
  exit 1
fi
awk -v a="$a" -v b="$b" -v n="$iterations" -v o="$ours" -v r="$base" 'BEGIN {
  printf "%s: %.1f instructions per iteration\n", o, a / n
  printf "%s: %.1f instructions per iteration\n", r, b / n
  printf "instruction ratio: %.2f\n", a / b }'
