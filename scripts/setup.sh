#!/usr/bin/env bash
# Installs the Debian packages needed to build and test qvglobal. Only the
# missing ones are installed; when everything is present this is silent.
set -euo pipefail

packages=(
  build-essential cmake pkg-config
  libsqlite3-dev libsqlitecpp-dev libfmt-dev libcli11-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  pybind11-dev python3-dev
  clang libclang-rt-14-dev
)

missing=()
for pkg in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "${pkg}" 2>/dev/null || true)
  if [[ "${status}" != "install ok installed" ]]; then
    missing+=("${pkg}")
  fi
done

if [[ ${#missing[@]} -eq 0 ]]; then
  exit 0
fi

echo "setup: installing ${missing[*]}"
sudo=()
if [[ $(id -u) -ne 0 ]]; then
  sudo=(sudo)
fi
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y "${missing[@]}"
