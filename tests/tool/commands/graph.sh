#!/usr/bin/env bash
# kvt graph, as its users try it. Usage: graph.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

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
line=$(grep -n RESOURCE_DATA two.kvt | cut -d: -f1)
same "a drawing holds the first message" "0 1" "$status $(grep -c '<svg' <<<"$out")"
same "it is said which, and how to have another" \
    "kvt: drew message 1 (JOB_DATA, two.kvt:1), the first of 2 that can be drawn (1, 2); --message N chooses another" \
    "$err"
run kvt graph -T svg -m 2 two.kvt
same "which is then drawn without a word" "0 1 " "$status $(grep -c "two.kvt, line $((line - 1))" <<<"$out") $err"
run kvt graph two.kvt
same "DOT has them all" "0 2" "$status $(grep -cE '^(di)?graph ' <<<"$out")"
same "which is said, too" \
    "kvt: drew all 2 that can be drawn (1, 2), a graph for each; --message N draws one" "$err"
kvt graph -o two.dot two.kvt 2>/dev/null
same "also in a file" "$out" "$(cat two.dot)"
run kvt graph "$examples/job_data.kvt"
same "nothing is said of the only one" "0 " "$status $err"
cat good.kvt <(echo) "$examples/resource_data.kvt" good.kvt >one.kvt
run kvt graph -m 1 one.kvt
same "a message of another kind" "1 kvt: message 1 cannot be drawn; those that can: 2 " "$status $err $out"
run kvt graph -m 4 one.kvt
same "a message that is not there" "1 kvt: there is no message 4, only 3 " "$status $err $out"
for wrong in 0 00 -1 1x; do
    run kvt graph -m $wrong two.kvt
    same "-m $wrong is an error" "2 " "$status $out"
done
for _ in {1..12}; do cat "$examples/job_data.kvt" <(echo); done >many.kvt
run kvt graph -T svg many.kvt
same "of many only the first numbers are said" 1 "$(grep -c '(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, \.\.\.)' <<<"$err")"
