#!/usr/bin/env bash
# Inputs of which something is lost, as users of all commands see them. Usage: lossy.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

# --- Lines that the reader skips -------------------------------------------------------------------

sed 's/^    job_id: 5/&\n    future_key: 7\n    words/' good.kvt >seven.kvt
sed 's/future_key: 7/future_key: 8/' seven.kvt >eight.kvt
said='seven.kvt: 2 findings: "kvt check seven.kvt" shows them'
for command in "show job_id" stat "json --lines" "split -o parts"; do
    run kvt $command seven.kvt
    same "$command says how many findings there are" "$said" "$err"
done
run kvt show job_id seven.kvt
same "what is there is found" "0 5" "$status $out"
run kvt json --lines seven.kvt
same "a conversion that loses something is no success" 1 "$status"
run kvt check seven.kvt
same "check has as many findings" "2 findings in 1 of 1 input" "$err"
run kvt show job_id - <seven.kvt
same "of standard input" '(standard input): 2 findings: "kvt check" shows them' "$err"
sed 's/^    words//' seven.kvt >one.kvt
run kvt show job_id good.kvt one.kvt
same "of each input by itself" 'one.kvt: 1 finding: "kvt check one.kvt" shows it' "$err"
run kvt stat seven.kvt one.kvt
same "of a second one, too" "$said
one.kvt: 1 finding: \"kvt check one.kvt\" shows it" "$err"
sed 's/$/\r/' good.kvt >windows.kvt
run kvt stat windows.kvt
same "carriage returns lose nothing" "0 " "$status $err"
sed '0,/tree_id: /s/tree_id: .*/&\nfuture: 1/' "$examples/job_data.kvt" >job.kvt
run kvt graph job.kvt
same "graph says it, too" "0 1" "$status $(grep -c '^job.kvt: 1 finding: ' <<<"$err")"

# --- diff -----------------------------------------------------------------------------------------

run kvt diff seven.kvt eight.kvt
same "lines that are not read are compared as lines" "1 END_JOB job_id 5: seven.kvt:1, eight.kvt:1
  line 5, not read: future_key: 7 -> 8
messages: 1 differs in 1 place, 0 equal" "$status $out"
run kvt diff --brief seven.kvt eight.kvt
same "--brief counts them" "END_JOB job_id 5: seven.kvt:1, eight.kvt:1: 1 difference" "$(head -n 1 <<<"$out")"
run kvt diff --json seven.kvt eight.kvt
same "--json has both lines" "changed 5 end_job future_key: 7 future_key: 8" "$(python3 -c '
import json, sys
d = json.load(sys.stdin)
a, b = d["a"]["unread"], d["b"]["unread"]
print(d["what"], a["line"], a["path"], a["text"], b["text"])' <<<"$out")"
run kvt diff good.kvt seven.kvt
same "and found where only one side has them" "1   + line 5, not read: future_key: 7
  + line 6, not read: words" "$status $(sed -n '2,3p' <<<"$out")"
run kvt diff seven.kvt seven.kvt
same "the same lines are no difference" "0 " "$status $out"
same "what is lost of either side is said" 2 "$(grep -c '^seven.kvt: 2 findings: ' <<<"$err")"
head -n 5 good.kvt >open5.kvt
sed 's/job_id: 5/job_id: 5 }/' good.kvt >brace.kvt
run kvt diff brace.kvt brace.kvt
same "a file is like itself" 0 "$status"
run kvt diff good.kvt brace.kvt
same "what may be lost anywhere is compared line by line" 1 "$status"
{ cat good.kvt; echo words; } >words.kvt
run kvt diff words.kvt good.kvt
same "what stands outside of messages is no message, and not compared" 1 "$status"

# --- A message that is not closed -----------------------------------------------------------------

{ head -n -1 good.kvt; echo; cat good.kvt; echo; cat good.kvt; } >open.kvt
run kvt check open.kvt
line=$(grep -n '^$' open.kvt | head -n 1 | cut -d: -f1)
same "is told of where the next one begins" "1 open.kvt:$((line + 1)):1: not-closed: a message begins here, but that of line 1 is not closed: the reader takes this line for its closing brace, and reads neither this message nor those below [lost]" \
    "$status $(head -n 1 <<<"$out")"
same "with the line" "  $((line + 1)) | msg {" "$(sed -n 2p <<<"$out")"
same "once" 1 "$(grep -c not-closed: <<<"$out")"
same "with what is lost for the codec" "open.kvt: a program that reads the file as a whole, with kvt_msg_arr_from_str, gets 1 of 3 messages, the last one at line 1
1 finding in 1 of 1 input" "$err"
run kvt check - <open.kvt
same "which nobody knows of a pipe" "1 finding in 1 of 1 input" "$err"
run kvt check -q open.kvt
same "and --quiet does not say" "1 " "$status $out$err"
run kvt check --format json open.kvt
same "or JSON" "1 $((line + 1)) $(head -n "$line" open.kvt | wc -c) " \
    "$status $(python3 -c 'import json, sys; f = json.load(sys.stdin); print(f["line"], f["offset"])' <<<"$out") $err"
run kvt show job_id open.kvt
same "the command reads all three" "1 5
5
5" "$status $out"
same "and says the same" "open.kvt:$((line + 1)):1: not-closed: a message begins here" \
    "$(head -n 1 <<<"$err" | cut -d, -f1)"
{ head -n -2 good.kvt; cat good.kvt; } >block.kvt
run kvt check block.kvt
same "a block that is not closed" 1 \
    "$(grep -c "^block.kvt:.*: a message begins here, but the block 'end_job' of line 3 is not closed" <<<"$out")"
{ head -n 1 good.kvt; cat good.kvt; } >head.kvt
run kvt check head.kvt
same "a head alone" "1 head.kvt:2:1: no-type:" "$status $(head -n 1 <<<"$out" | cut -d' ' -f1,2)"

# --- Child lists ----------------------------------------------------------------------------------

printf '%s\n' 'msg {' 'type: JOB_DATA' 'job_data {' 'conns_num: 2' 'conns {' 'qp_child_idxs: 4' '}' \
    'conns {' '}' '}' '}' >children.kvt
kvt fmt children.kvt >formatted.kvt
same "a list keeps its lines" "1" "$(grep -c qp_child_idxs formatted.kvt)"
run kvt fmt --check formatted.kvt
same "and nothing changes twice" "0 " "$status $out$err"
kvt json children.kvt | kvt from-json | kvt fmt >back.kvt
same "or on its way through JSON" "$(cat formatted.kvt)" "$(cat back.kvt)"
run kvt show 'conns[0].qp_child_idxs' children.kvt
same "show has its elements" "0 4" "$status $out"
run kvt diff children.kvt formatted.kvt
same "diff finds nothing" "0 " "$status $out$err"

