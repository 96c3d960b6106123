#!/usr/bin/env bash
# The commands that look at messages, as their users try them. Usage: others.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

sed 's/job_id: 5/job_id: 6/' good.kvt >six.kvt

# --- show ----------------------------------------------------------------------------------------

run kvt show job_id good.kvt six.kvt
same "values" "0 5
6" "$status $out"
run kvt show -p end_job.job_id good.kvt six.kvt
same "with their places" "good.kvt:1: job_id: 5
six.kvt:1: job_id: 6" "$out"
run kvt show job_idd good.kvt
same "a path that no message has" "2 1" "$status $(grep -c 'did you mean "job_id"' <<<"$err")"
run kvt show uid good.kvt
same "a path that these messages do not have" "1 " "$status $out"

# --- stat, split ---------------------------------------------------------------------------------

run kvt stat good.kvt six.kvt "$examples/job_data.kvt"
same "kinds in a table" "END_JOB 2" "$(awk '/END_JOB/ { print $1, $2 }' <<<"$out")"
run kvt stat -j 2 --json good.kvt six.kvt
same "and as JSON" 2 \
    "$(python3 -c 'import json, sys; print(json.load(sys.stdin)["total"]["messages"])' <<<"$out")"

cat untidy.kvt <(echo) "$examples/job_error.kvt" >to_split.kvt
run kvt split -o parts/of/it to_split.kvt
same "one file for each message" "0 000001-end_job.kvt 000002-job_error.kvt" "$status $(cd parts/of/it && echo *)"
same "as it stands in the input" "$(cat untidy.kvt)" "$(cat parts/of/it/000001-end_job.kvt)"
run kvt split -o parts/of/it six.kvt
same "no file is overwritten" "2 $(cat untidy.kvt)" "$status $(cat parts/of/it/000001-end_job.kvt)"
same "or added" 2 "$(find parts -type f | wc -l)"

# --- describe, gen, kinds, help ------------------------------------------------------------------

run kvt describe
same "describe lists 25 kinds, each with a line of purpose" 51 "$(wc -l <<<"$out")"
run kvt describe job_error
same "describe shows the keys of a kind" 1 "$(grep -c '^description  *text, at most 127' <<<"$out")"
run kvt describe job_eror
same "or the names that may be meant" "2 1" "$status $(grep -c JOB_ERROR <<<"$err")"
run kvt kinds
same "kinds lists 25 values under a heading" 26 "$(wc -l <<<"$out")"

kvt gen --seed 3 -n 50 >day.kvt
run bash -c "kvt gen --seed 3 -n 50 | cmp - day.kvt && kvt fmt --check day.kvt && kvt check day.kvt"
same "gen prints the same each time, in normal form, without findings" "0 " "$status $out$err"
run kvt gen end_job --seed 1
same "gen of a kind" 1 "$(grep -c 'type: END_JOB' <<<"$out")"
for wrong in "gen -n -1" "gen -n 18446744073709551616" "gen -n 1x" "gen --seed -1"; do
    # shellcheck disable=SC2086 # options are words
    run bash -c "kvt $wrong | head -c 1000"
    same "a number that is none: $wrong" "1 " "$(grep -c 'is no whole number of 64 bits' <<<"$err") $out"
done

run kvt --help
for command in fmt check json from-json diff graph stat split show describe gen kinds; do
    same "help names $command" 1 "$(grep -c "^  $command  " <<<"$out")"
    same "help of $command has an example" 1 "$(kvt "$command" --help | grep -c "^Example: .*kvt $command")"
done
run kvt --version
same "the version" "0 kvt" "$status ${out%% *}"
run kvt nonsense
same "wrong usage cannot work" 2 "$status"
run kvt
same "nor can none" 2 "$status"
