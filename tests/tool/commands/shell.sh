# What the tests of the command have in common. To be sourced: . shell.sh KVT EXAMPLES
set -euo pipefail
kvt=$(realpath "$1")
examples=$(realpath "$2")
work=$(mktemp -d)
failures=0
cd "$work"
export PATH=${kvt%/*}:$PATH
# At the end of every test.
# shellcheck disable=SC2154 # set just there
trap 'status=$?; rm -rf "$work"; if ((status != 0)); then exit "$status"; fi
    if ((failures > 0)); then echo "$failures failed"; exit 1; fi' EXIT

# same WHAT EXPECTED ACTUAL
same() {
    if [[ $2 != "$3" ]]; then
        printf 'FAILED: %s\n--- expected\n%s\n--- actual\n%s\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    fi
}

# run COMMAND...: its output, its words on standard error and its exit status
run() {
    status=0
    out=$("$@" 2>errors) || status=$?
    err=$(cat errors)
    rm errors
}

# run_in_terminal COMMAND: its output as a terminal gets it, on both streams
run_in_terminal() {
    status=0
    out=$(script --quiet --return --command "$1" typescript </dev/null) || status=$?
    rm typescript
}

# repeat COUNT FILE: the file so many times
repeat() {
    awk -v count="$1" '{ text = text $0 "\n" } END { for (; count > 0; --count) printf "%s", text }' "$2"
}

printf 'msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n' >good.kvt
printf 'msg {\ntype:END_JOB\n\n end_job {\njob_id:+5\n}\n}' >untidy.kvt
printf 'msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n    job: 6\n  }\n}\n' >unknown.kvt
