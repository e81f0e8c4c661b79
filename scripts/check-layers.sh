#!/usr/bin/env bash
# Checks that includes point down the layers only. Layers, lowest first:
#
#   com <- platform <- central <- messages <- modules <- datasource
#       <- records <- data <- rooms <- shell <- tools/qv, python
#
# A file of one layer may include headers of its own layer and of the layers
# below it. Each layer's internal/ headers are for that layer alone (and for
# tests, src/testing/ and bench/, which build fixtures through them).
# src/testing/ is test support: it and every *_test.cpp may include it and any
# layer. bench/ stands above every layer of src/. tools/qv and python are
# peers on top: neither includes the other.
#
# Prints one line per offending include and exits 1 when there is any.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

layers=(com platform central messages modules datasource records data rooms
  shell tools python)
declare -A rank
for i in "${!layers[@]}"; do
  rank[${layers[$i]}]=$i
done
rank[python]=${rank[tools]}  # peers on top

# The layer a file belongs to ("testing" and "bench" are no layers).
layer_of() {
  case $1 in
    src/testing/*) echo testing ;;
    src/*) local rest=${1#src/} && echo "${rest%%/*}" ;;
    tools/qv/*) echo tools ;;
    python/*) echo python ;;
    bench/*) echo bench ;;
  esac
}

# The layer an include names ("qv/x.h" is the tool's own header).
included_layer() {
  local top=${1%%/*}
  case ${top} in
    qv) echo tools ;;
    *) if [[ -n ${rank[${top}]+x} || ${top} == testing ]]; then
      echo "${top}"
    fi ;;
  esac
}

failures=0
fail() {
  echo "check-layers: $1:$2: includes \"$3\" $4"
  failures=$((failures + 1))
}

while IFS= read -r file; do
  from=$(layer_of "${file}")
  [[ -z ${from} ]] && continue
  test_code=0
  [[ ${file} == *_test.cpp || ${from} == testing || ${from} == bench ]] &&
    test_code=1
  while IFS=: read -r line header; do
    to=$(included_layer "${header}")
    [[ -z ${to} ]] && continue
    if [[ ${to} == testing ]]; then
      ((test_code)) ||
        fail "${file}" "${line}" "${header}" "from test support in product code"
      continue
    fi
    if [[ ${header} == */internal/* && ${to} != "${from}" ]] && ((!test_code)); then
      fail "${file}" "${line}" "${header}" "from the internals of layer ${to}"
      continue
    fi
    [[ ${from} == testing || ${from} == bench ]] && continue
    if ((rank[${to}] > rank[${from}])); then
      fail "${file}" "${line}" "${header}" "from layer ${to}, above ${from}"
    elif ((rank[${to}] == rank[${from}])) && [[ ${to} != "${from}" ]]; then
      fail "${file}" "${line}" "${header}" "from layer ${to}, across from ${from}"
    fi
  done < <(sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]+"([^"]+)".*/\1/p;t;s/.*//p' "${file}" |
    awk 'NF { print NR ":" $0 }')
done < <(git ls-files --cached --others --exclude-standard -- \
  'src/*.h' 'src/*.cpp' 'tools/*.h' 'tools/*.cpp' 'python/*.h' 'python/*.cpp' \
  'bench/*.h' 'bench/*.cpp')

if ((failures)); then
  echo "check-layers: ${failures} include(s) point up or across layers" >&2
  exit 1
fi
