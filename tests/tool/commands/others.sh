#!/usr/bin/env bash
# The commands that look at messages, as their users try them. Usage: others.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

# --- diff ----------------------------------------------------------------------------------------

sed 's/job_id: 5/job_id: 6/' good.kvt >six.kvt
{ cat good.kvt "$examples/job_data.kvt"; } >a.kvt
{ sed '0,/tree_id: /s/tree_id: .*/tree_id: 9/' "$examples/job_data.kvt"; cat six.kvt; } >b.kvt
run kvt diff a.kvt a.kvt
same "no differences" "0 " "$status $out$err"
run kvt diff a.kvt b.kvt
same "differences by message and path" 1 "$status"
same "a message that is gone" 1 "$(grep -c '^only in a.kvt:1: END_JOB job_id 5$' <<<"$out")"
same "a message that is new" 1 "$(grep -c '^only in b.kvt:.*: END_JOB job_id 6$' <<<"$out")"
sed '0,/ sl: /s/ sl: .*/ sl: 13/' "$examples/job_data.kvt" >c.kvt
run kvt diff "$examples/job_data.kvt" c.kvt
same "a value" 1 "$(grep -cE '^  [a-z_0-9.]*(\[[0-9]+\])?[a-z_.]*sl: [0-9]+ -> 13$' <<<"$out")"
run kvt diff a.kvt missing.kvt
same "a missing file" "2 kvt: missing.kvt: No such file or directory" "$status $err"

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

# --- graph ---------------------------------------------------------------------------------------

for kind in job_data topology_info_reply resource_data; do
    run kvt graph "$examples/$kind.kvt"
    same "$kind as DOT" "0 1" "$status $(grep -cE '^(di)?graph ' <<<"$out")"
    run kvt graph -T svg -o "$kind.svg" "$examples/$kind.kvt"
    same "$kind as SVG" "0 1" "$status $(grep -c '<svg' "$kind.svg")"
done
kvt graph -T png -o graph.png "$examples/job_data.kvt"
same "PNG" PNG "$(head -c 4 graph.png | tail -c 3)"
kvt graph -T pdf "$examples/job_data.kvt" >graph.pdf
same "PDF" '%PDF' "$(head -c 4 graph.pdf)"
run kvt graph good.kvt
same "nothing to draw" "1 " "$status $out"
run kvt graph -T nonsense "$examples/job_data.kvt"
same "a format that is none" "2 " "$status $out"
cat "$examples/job_data.kvt" <(echo) "$examples/resource_data.kvt" >two.kvt
run kvt graph -T svg two.kvt
same "two drawings do not go into one file" 2 "$status"
run kvt graph -T svg -m 2 two.kvt
same "so one is chosen" "0 1" "$status $(grep -c '<svg' <<<"$out")"

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
for wrong in "gen -n -1" "gen -n 18446744073709551616" "gen -n 1x" "gen --seed -1" "graph --message -1 day.kvt"; do
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
