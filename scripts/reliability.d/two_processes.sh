#!/usr/bin/env bash
# Two processes on one project file: a writer beside compaction, a reader and
# a second writer; acknowledged rows must equal stored rows. The argument is
# the trial count of the other scenarios; one round here runs 20 of them.
rounds=$(( ${1:-200} / 20 ))
exec /usr/bin/python3 "$(dirname "${BASH_SOURCE[0]}")/two_processes.py" "$(( rounds > 0 ? rounds : 1 ))"
