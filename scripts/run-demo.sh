#!/usr/bin/env bash
# Sets up the machine, builds the qv tool in build/ and runs its demonstration
# on a sample project. Arguments go to `qv demo` (e.g. --dir DIR).
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh

echo "==> Configuring build/ (RelWithDebInfo)"
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQVGLOBAL_BUILD_TOOLS=ON
echo "==> Building qv and the Python module"
targets=(qv)
if cmake -LA -N build | grep -q '^QVGLOBAL_BUILD_PYTHON:BOOL=ON'; then
  targets+=(qvglobal_python)
fi
cmake --build build --target "${targets[@]}" -j"$(nproc)"

echo "==> Running build/bin/qv demo $*"
exec build/bin/qv demo "$@"
