#!/usr/bin/env bash
# Sets up the machine, then builds and runs every test twice: a normal build
# in build/ and an AddressSanitizer + UBSan build in build-asan/, after
# checking that includes point down the layers only. Stops at the
# first failure; at the end prints the total number of tests passed.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

jobs=$(nproc)
total_passed=0
total_skipped=0
stage="start"
report_failure() {
  local rc=$?
  if [[ ${rc} -ne 0 ]]; then
    echo "run-tests: FAILED in stage: ${stage} (exit code ${rc})" >&2
  fi
}
trap report_failure EXIT

banner() {
  stage="$*"
  echo
  echo "=================================================================="
  echo "== $*"
  echo "=================================================================="
}

# run_stage <build dir> <cmake options...>: configure, build, ctest.
run_stage() {
  local dir=$1
  shift
  banner "${dir}: configure"
  cmake -S . -B "${dir}" -DQVGLOBAL_BUILD_TESTS=ON "$@"
  banner "${dir}: build"
  cmake --build "${dir}" -j"${jobs}"
  banner "${dir}: test"
  local log="${dir}/ctest-summary.log"
  (cd "${dir}" && ctest --output-on-failure --no-tests=error -j2) | tee "${log}"
  # ctest ends with "100% tests passed, 0 tests failed out of N" and lists
  # skipped tests (counted in N) as "<number> - <name> (Skipped)".
  local line total failed skipped
  line=$(grep -E '[0-9]+ tests failed out of [0-9]+' "${log}" | tail -n 1 || true)
  if [[ -z "${line}" ]]; then
    echo "run-tests: no ctest summary found in ${dir}" >&2
    exit 1
  fi
  failed=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\1/' <<<"${line}")
  total=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\2/' <<<"${line}")
  skipped=$(grep -cE '^[[:space:]]*[0-9]+ - .*\(Skipped\)$' "${log}" || true)
  if [[ "${failed}" -ne 0 ]]; then
    echo "run-tests: ${failed} tests failed in ${dir}" >&2
    exit 1
  fi
  total_passed=$((total_passed + total - skipped))
  total_skipped=$((total_skipped + skipped))
}

banner "setup"
scripts/setup.sh

banner "layers"
scripts/check-layers.sh

run_stage build -DCMAKE_BUILD_TYPE=RelWithDebInfo

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
run_stage build-asan -DCMAKE_BUILD_TYPE=Debug -DQVGLOBAL_SANITIZE=ON \
  -DQVGLOBAL_BUILD_BENCHMARKS=OFF

# Kill -9 trials, two processes on one file and bad input with small counts,
# then every fuzz target for a minute (scripts/reliability.sh and
# scripts/fuzz.sh run longer by hand). Both stop the run on a failure.
unset ASAN_OPTIONS UBSAN_OPTIONS
banner "reliability (--ci)"
scripts/reliability.sh --ci
banner "fuzz (60 s per target)"
scripts/fuzz.sh 60

echo
if [[ ${total_skipped} -ne 0 ]]; then
  echo "(${total_skipped} tests skipped, not counted below)"
fi
echo "${total_passed} passed, 0 failed"
