#!/usr/bin/env bash
# Builds the libFuzzer targets (fuzz/*_fuzz.cpp) with clang, AddressSanitizer
# and UBSan in build-fuzz/, then runs each for SECONDS seconds (default 300)
# on a copy of its seed corpus. A crash stops the run; libFuzzer leaves the
# input that caused it as build-fuzz/findings/<name>/crash-*, which belongs
# in a test case. Prints the executions of every target.
#
#   scripts/fuzz.sh [SECONDS]
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
seconds=${1:-300}
dir=build-fuzz

launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S . -B "${dir}" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER=clang++ "${launcher[@]}" \
  -DQVGLOBAL_BUILD_FUZZERS=ON -DQVGLOBAL_BUILD_TESTS=OFF \
  -DQVGLOBAL_BUILD_BENCHMARKS=OFF -DQVGLOBAL_BUILD_PYTHON=OFF \
  -DQVGLOBAL_BUILD_TOOLS=OFF >/dev/null
targets=()
for src in fuzz/*_fuzz.cpp; do
  name=$(basename "${src}" _fuzz.cpp)
  targets+=("${name}")
done
cmake --build "${dir}" -j"$(nproc)" --target "${targets[@]/#/fuzz_}"

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
summary=()
for name in "${targets[@]}"; do
  corpus="${dir}/corpus/${name}"
  findings="${dir}/findings/${name}"
  rm -rf "${corpus}"
  mkdir -p "${corpus}" "${findings}"
  cp -r "fuzz/corpus/${name}/." "${corpus}/"
  log="${dir}/findings/${name}.log"
  echo "fuzz: ${name} for ${seconds} s"
  if ! "${dir}/bin/fuzz_${name}" -max_total_time="${seconds}" \
      -artifact_prefix="${findings}/" -print_final_stats=1 \
      "${corpus}" >"${log}" 2>&1; then
    tail -n 40 "${log}" >&2
    echo "fuzz: ${name} FAILED; input in ${findings}/" >&2
    exit 1
  fi
  runs=$(sed -nE 's/^stat::number_of_executed_units: *([0-9]+)/\1/p' "${log}")
  summary+=("${name}: ${runs} executions in ${seconds} s, no crash")
done
printf 'fuzz: %s\n' "${summary[@]}"
