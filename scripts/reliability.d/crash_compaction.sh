#!/usr/bin/env bash
# kill -9 at random moments of compaction; the file must hold the old or the new
# state, complete. $1 = trials.
exec /usr/bin/python3 "$(dirname "${BASH_SOURCE[0]}")/qvreliability.py" compaction "${1:-200}"
