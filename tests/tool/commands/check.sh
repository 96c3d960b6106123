#!/usr/bin/env bash
# kvt check, as its users try it. Usage: check.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

run kvt check "$examples"/*.kvt good.kvt untidy.kvt
same "texts that lose nothing have no findings" "0 " "$status $out$err"

printf '\n\nmsg {\n  type: END_JOB\n  end_job {\n\tjob_id: 5x\n    reservation_idd: 7\n  }\n}\n' >two.kvt
run kvt check two.kvt
same "findings with the line and its place" "1 two.kvt:6:11: after-number: the reader takes '5' and skips what stands after it, 'x'
  6 | 	job_id: 5x
    | 	         ^
two.kvt:7:5: longer-key:" "$status ${out%% the reader takes \'reservation*}"
same "the nearest known key" 1 "$(grep -c "did you mean 'reservation_id'?" <<<"$out")"
same "a sum for people" "2 findings in 1 of 1 input" "$err"

run kvt check two.kvt good.kvt two.kvt
same "of several files" "4 findings in 2 of 3 inputs" "$err"
run bash -c "kvt check < two.kvt"
same "standard input" "(standard input):6:11:" "$(head -n 1 <<<"$out" | cut -d" " -f1,2)"
run kvt check --quiet two.kvt
same "--quiet says nothing" "1 " "$status $out$err"
run kvt check --only longer-key,nul two.kvt
same "--only" "1 1" "$status $(grep -c two.kvt: <<<"$out")"
run kvt check --ignore longer-key --ignore after-number two.kvt
same "--ignore" "0 " "$status $out$err"
run kvt check --only nonsense two.kvt
same "a name that is none" 2 "$status"
run kvt check --list
same "--list has every name" 0 "$status"
same "with what it means" 1 "$(grep -c '^after-number  *[A-Za-z]' <<<"$out")"

run kvt check --format json two.kvt
same "--format json has one object a line" "2 6 11 after-number job_id: 5x" \
    "$(wc -l <<<"$out") $(head -n 1 <<<"$out" |
        python3 -c 'import json, sys; f = json.load(sys.stdin)
print(f["line"], f["column"], f["name"], f["text"].strip())')"
same "and nothing else is said" "" "$err"

sed 's/$/\r/' two.kvt two.kvt >windows.kvt
run kvt check --only carriage-return windows.kvt
same "of carriage returns the first is said" "1 1" "$status $(grep -c windows.kvt: <<<"$out")"

long=$(printf 'x%.0s' {1..3000})
printf 'msg {\n  type: END_JOB\n  end_job {\n    %s\n    job_id: 1%s\n  }\n}\n' "$long" "$long" >long.kvt
run kvt check long.kvt
same "long lines are cut" 0 "$(awk 'length > 600' <<<"$out" | wc -l)"
printf 'msg {\n  type: END_JOB\n  end_job {\n    \033[31m\377\n  }\n}\n' >control.kvt
run kvt check control.kvt
same "a terminal gets no control characters" 0 "$(tr -cd '\033' <<<"$out" | wc -c)"

run_in_terminal "kvt check two.kvt"
same "colours for a terminal" 1 "$(grep -c $'\033\\[1;31mafter-number' <<<"$out")"
run_in_terminal "NO_COLOR=1 kvt check two.kvt"
same "none with NO_COLOR" 0 "$(tr -cd '\033' <<<"$out" | wc -c)"

for i in {1..3000}; do cat two.kvt; done >many.kvt
kvt check many.kvt >one 2>/dev/null || true
kvt check -j 4 many.kvt >four 2>/dev/null || true
same "several threads say the same in the same order" same "$(cmp -s one four && echo same)"
same "all of it" 6000 "$(grep -c ^many.kvt: one)"
same "with lines of the whole file" "many.kvt:26998:5:" "$(tail -n 3 one | head -n 1 | cut -d' ' -f1)"
