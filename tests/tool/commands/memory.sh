#!/usr/bin/env bash
# What the command does without memory and without threads. Usage: memory.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

kvt gen --seed 3 -n 1500 >day.kvt
kvt json --lines day.kvt >day.json
if ! (ulimit -v 65536 && kvt kinds >/dev/null 2>&1); then
    echo "skipped: this build needs more than 64 MiB to begin with"
    exit 0
fi

# Sixteen stacks, and sixteen messages as JSON, are more than that.
for command in "fmt day.kvt" "check day.kvt" "json day.kvt" "stat day.kvt" "show -p job_id day.kvt" \
    "from-json day.json"; do
    # shellcheck disable=SC2086 # options are words
    run kvt $command
    # shellcheck disable=SC2317 # called by run
    limited() { (ulimit -v 65536 && kvt $command -j 16); }
    expected="0 $(md5sum <<<"$out")"
    run limited
    same "$command -j 16: as many threads as find room do the work" "$expected" "$status $(md5sum <<<"$out")$err"
done

run bash -c 'ulimit -u 1 2>/dev/null; kvt json -j 16 day.kvt | md5sum'
same "no threads at all" "$(kvt json day.kvt | md5sum)" "$out"

# One message that is larger than what there is.
awk 'BEGIN {
    printf "msg {\n  type: TOPOLOGY_INFO_REPLY\n  topology_info_list {\n    num_switches: 400000\n"
    for (i = 0; i < 400000; ++i) printf "    switches {\n      id: %d\n    }\n", 100000000 + i
    printf "  }\n}\n" }' >large.kvt
kvt json --lines large.kvt >large.json
limited() { (ulimit -v 65536 && kvt "$@"); }
for command in "fmt" "fmt -i" "check" "json" "json -j 4" "stat" "show topology_info_list" "split -o parts" \
    "graph" "graph -T svg" "diff good.kvt"; do
    cp large.kvt copy.kvt
    # shellcheck disable=SC2086 # options are words
    run limited $command copy.kvt
    if ((status != 0)); then
        same "$command: a message without room ends with 2 and the file's name" "2 kvt: copy.kvt" \
            "$status $(grep -o '^kvt: copy.kvt' <<<"$err" | tail -n 1)"
    fi
    same "$command: the input stays" same "$(cmp -s large.kvt copy.kvt && echo same)"
    [[ $command != "json"* && $command != "graph"* ]] || same "$command: is too much" 2 "$status"
done
cp large.json copy.json
run limited from-json copy.json
same "from-json: too much" "2 kvt: copy.json" "$status $(grep -o '^kvt: copy.json' <<<"$err")"
run limited graph -T svg "$examples/job_data.kvt"
same "what Graphviz lacks does not abort" no "$( ((status == 0 || status == 2)) && echo no)"
