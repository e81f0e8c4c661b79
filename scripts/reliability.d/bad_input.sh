#!/usr/bin/env bash
# Bad input through the qv tool: each must end with exit status 1 and a
# message naming what is wrong, never with a crash, and leave the files
# given to it unchanged. $1 (trials) is not used: each case runs once.
set -uo pipefail
qv=${QV_TOOL:?set QV_TOOL to the qv executable}
dir=$(mktemp -d -t qv-bad-input-XXXXXX)
trap 'rm -rf "${dir}"' EXIT
: >"${dir}/leer.qv3"
printf 'Raum 1: 20 m2\n' >"${dir}/text.qv3"
/usr/bin/python3 -c "import sqlite3, sys; sqlite3.connect(sys.argv[1]).execute('CREATE TABLE t (a)')" "${dir}/fremd.qv3"
long=$(printf 'a%.0s' $(seq 300))

failed=0
cases=0
expect() {  # expect <text in stderr> <qv arguments...>
  local text=$1
  shift
  local err status
  cases=$((cases + 1))
  err=$("${qv}" "$@" 2>&1 >/dev/null)
  status=$?
  if [[ ${status} -ne 1 || "${err}" != *"${text}"* ]]; then
    echo "bad input: qv $* -> status ${status}: ${err}" >&2
    failed=$((failed + 1))
  fi
}
sums_before=$(md5sum "${dir}"/*.qv3)
for cmd in check compact clear info; do
  expect "not a project database (no table 'qvversions')" db "${cmd}" "${dir}/leer.qv3"
  expect "not a project database (no table 'qvversions')" db "${cmd}" "${dir}/fremd.qv3"
  expect "file is not a database" db "${cmd}" "${dir}/text.qv3"
  expect "path too long" db "${cmd}" "${dir}/${long}.qv3"
done
expect "key code is not a whole number: ''" keys ""
expect "key code is not a whole number: 'x'" keys x
expect "key code out of range" keys 40000
expect "Der Projektname ist leer." project new "${dir}" "" --modules VM
[[ -e "${dir}/.qv3" ]] && { echo "bad input: hidden project folder made" >&2; failed=$((failed + 1)); }
if [[ "$(md5sum "${dir}"/*.qv3)" != "${sums_before}" ]]; then
  echo "bad input: a refused file was changed" >&2
  failed=$((failed + 1))
fi
echo "bad input: ${cases} calls of qv, ${failed} failed"
[[ ${failed} -eq 0 ]]
