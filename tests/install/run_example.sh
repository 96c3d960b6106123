#!/usr/bin/env bash
# Runs an example and compares what it prints with what is expected. Usage: run_example.sh PROGRAM
set -euo pipefail
expected=$(dirname "${BASH_SOURCE[0]}")/expected/$(basename "$1")

# Addresses are others in each run.
diff "$expected" <("$1" 2>&1 | sed -E 's/0x[0-9a-f]+/ADDRESS/g') && exit
echo "$1 does not print what is expected" >&2
exit 1
