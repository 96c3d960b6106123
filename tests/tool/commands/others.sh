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

run kvt show --guid hex 'port_guids[:1]' "$examples/begin_job.kvt"
same "GUIDs in hexadecimal" "0 $(printf '0x%016x' "$(kvt show 'port_guids[0]' "$examples/begin_job.kvt")")" "$status $out"
run kvt show --json --guid hex 'port_guids[-1]' "$examples/begin_job.kvt"
same "as JSON" "port_guids[3] BEGIN_JOB 1" "$(python3 -c 'import json, sys
for line in sys.stdin:
    found = json.loads(line)
    print(found["path"], found["type"], found["line"])' <<<"$out")"
run kvt show --json end_job good.kvt six.kvt
same "blocks are objects" '{"file":"good.kvt","line":1,"type":"END_JOB","path":"end_job","value":{"job_id":"5"}}
{"file":"six.kvt","line":1,"type":"END_JOB","path":"end_job","value":{"job_id":"6"}}' "$out"
run kvt show -p '**.job_id' good.kvt
same "at any depth" "0 good.kvt:1: job_id: 5" "$status $out"
run kvt show --guid octal job_id good.kvt
same "a form that is none" "2 " "$status $out"

run kvt json --guid decimal "$examples/begin_job.kvt"
same "decimal is another word for dec" "0 $(kvt json --guid dec "$examples/begin_job.kvt")" "$status $out"
run kvt json --guid hex "$examples/begin_job.kvt"
same "hexadecimal in JSON" 4 "$(grep -cE '^ *"0x[0-9a-f]{16}",?$' <<<"$out")"

# --- find ----------------------------------------------------------------------------------------

run kvt find 5 good.kvt six.kvt untidy.kvt
same "a number, at its line" "0 good.kvt:4: END_JOB: job_id: 5
untidy.kvt:5: END_JOB: job_id: 5" "$status $out$err"
run kvt find 0x5 good.kvt
same "in hexadecimal, too" "0 good.kvt:4: END_JOB: job_id: 5" "$status $out"
run kvt find 99 good.kvt
same "nothing is found" "1 " "$status $out$err"
run kvt find 0 good.kvt
same "a 0 that stands nowhere is none" "1 " "$status $out$err"
sed 's/    job_id: 5/&\n&/' good.kvt >twice.kvt
run kvt find 5 twice.kvt
same "of a field that stands twice, the line that counts" "twice.kvt:5: END_JOB: job_id: 5" "$out"
run kvt find 5 good.kvt missing.kvt
same "a missing file" "2 good.kvt:4: END_JOB: job_id: 5" "$status $out"
guid=$(kvt show 'port_guids[2]' "$examples/begin_job.kvt")
run kvt find "$guid" "$examples/begin_job.kvt"
place="$examples/begin_job.kvt:$(grep -n "port_guids: $guid" "$examples/begin_job.kvt" | cut -d: -f1)"
hex=$(kvt show --guid hex 'port_guids[2]' "$examples/begin_job.kvt")
same "a GUID" "0 $place: BEGIN_JOB: port_guids[2]: $hex" "$status $out"
run kvt find --guid dec "$hex" "$examples/begin_job.kvt"
same "by its other form, and shown in decimal" "0 $place: BEGIN_JOB: port_guids[2]: $guid" "$status $out"
run kvt find --json "$hex" "$examples/begin_job.kvt"
same "as JSON" "$hex ${place##*:} 1" "$(python3 -c 'import json, sys
found = json.load(sys.stdin)
print(found["value"], found["line"], found["message_line"])' <<<"$out")"
printf 'msg {\n  type: JOB_ERROR\n  job_error {\n    description: "host \033[1m17 lost"\n  }\n}\n' >text.kvt
cat good.kvt text.kvt >both.kvt
run kvt find 'lost' both.kvt
same "a text, whose control characters do nothing" \
    '0 both.kvt:10: JOB_ERROR: description: "host \x1b[1m17 lost"' "$status $out"
run kvt find -j 3 5 - <both.kvt
same "in standard input" "0 4" "$status $(cut -d: -f2 <<<"$out")"
run kvt find '' good.kvt
same "an empty text" 2 "$status"

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
run kvt describe qpc_opts
same "and the keys of a block" "0 1" "$status $(grep -c '^Record vemra_qpc_options:$' <<<"$out")"
run kvt describe job_data.conns.tree_id
same "or a single key" 1 "$(grep -c '^JOB_DATA  job_data.conns.tree_id  number, 16 bits' <<<"$out")"
for word in "" job_data quota job_data.conns; do
    # shellcheck disable=SC2086 # none, or one
    run kvt describe --json $word
    same "all that as JSON: $word" 0 "$(python3 -m json.tool <<<"$out" >json; echo "$status")"
done
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
for command in fmt check json from-json diff graph stat split show find describe gen kinds help; do
    same "help names $command" 1 "$(grep -c "^  $command  " <<<"$out")"
    same "help of $command has an example" 1 "$(kvt "$command" --help | grep -c "^Example: .*kvt $command")"
done
run kvt --version
same "the version" "0 kvt" "$status ${out%% *}"
same "and of what it is made" "23 kinds,1,1" \
    "$(sed -nE 's/^format: (.* kinds) of messages$/\1/p' <<<"$out"),$(grep -c '^compiler: ' <<<"$out"),$(grep -c '^libraries: Graphviz [0-9]' <<<"$out")"
run kvt nonsense
same "a command that is none" "2 kvt: there is no command 'nonsense'; kvt --help lists all" "$status $err"
run kvt chek good.kvt
same "or the one that may be meant" "2 kvt: there is no command 'chek'; did you mean 'check'?" "$status $err"
run kvt statistics
same "of which it is the begin" "kvt: there is no command 'statistics'; did you mean 'stat'?" "$err"
run kvt help show
same "the help of a command" "0 $(kvt show --help)" "$status $out"
run kvt help
same "and of all" "0 $(kvt --help)" "$status $out"
run kvt help chek
same "help for none" "2 1" "$status $(grep -c "did you mean 'check'" <<<"$err")"
run kvt --nonsense
same "wrong usage cannot work" 2 "$status"
run kvt
same "nor can none" 2 "$status"
