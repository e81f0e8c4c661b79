#!/usr/bin/env bash
# Kills INI writers at random moments and checks after every kill that the
# file is whole (the old version or the new one) and that the next writer is
# not blocked: 100 kills, 20 with --ci. Uses the unit-test binary of the
# build folder in $BUILD_DIR (default build/).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

trials=100
if [[ "${1:-}" == "--ci" ]]; then trials=20; fi
tests="${BUILD_DIR:-build}/bin/qvglobal_tests"
if [[ ! -x "${tests}" ]]; then
  echo "ini_crash: ${tests} not built" >&2
  exit 1
fi
echo "ini_crash: ${trials} writers killed at random moments"
QV_INI_CRASH_TRIALS=${trials} "${tests}" \
  --gtest_filter='ProfileProcessTest.KilledWriterLeavesAWholeFileAndNoLock' \
  --gtest_brief=1
