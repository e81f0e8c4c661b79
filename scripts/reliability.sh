#!/usr/bin/env bash
# Runs every reliability scenario in scripts/reliability.d/*.sh: kill -9 at
# random moments of the library's file operations, two processes on one
# file, bad input, and the fuzz targets. Each scenario gets the number of
# trials as its one argument and prints its own figures; any failure fails
# the run.
#
#   scripts/reliability.sh          full counts (200 trials per scenario)
#   scripts/reliability.sh --ci     small counts (20 trials per scenario)
#
# Builds what the scenarios use (the qv tool and the Python bridge) in
# build/ first.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
trials=200
if [[ "${1:-}" == "--ci" ]]; then
  trials=20
fi

launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" >/dev/null
cmake --build build -j"$(nproc)" --target qv qvglobal_python >/dev/null

export PYTHONPATH="${PWD}/build/python${PYTHONPATH:+:${PYTHONPATH}}"
export QV_TOOL="${PWD}/build/bin/qv"
failed=()
for scenario in scripts/reliability.d/*.sh; do
  name=$(basename "${scenario}" .sh)
  echo "reliability: ${name} (${trials} trials)"
  if ! "${scenario}" "${trials}"; then
    failed+=("${name}")
  fi
done
if [[ ${#failed[@]} -ne 0 ]]; then
  echo "reliability: FAILED: ${failed[*]}" >&2
  exit 1
fi
echo "reliability: all scenarios passed"
