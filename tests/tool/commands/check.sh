#!/usr/bin/env bash
# kvt check, as its users try it. Usage: check.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

run kvt check "$examples"/*.kvt good.kvt untidy.kvt
same "texts that lose nothing have no findings" "0 " "$status $out$err"

printf '\n\nmsg {\n  type: END_JOB\n  end_job {\n\tjob_id: 5x\n    reservation_idd: 7\n  }\n}\n' >two.kvt
run kvt check two.kvt
same "findings with the line and its place" "1 two.kvt:1:1: before-message: blanks stand before the first message: a text must begin with 'msg', or the reader refuses it [refused]
  1 | 
    | ^
two.kvt:6:11: unit: the reader takes '5' and skips what stands after it, 'x' [lost]
  6 | 	job_id: 5x
    | 	         ^
two.kvt:7:5: longer-key:" "$status ${out%% the reader takes \'reservation*}"
same "the nearest known key" 1 "$(grep -c "did you mean 'reservation_id'?" <<<"$out")"
same "a sum for people" "3 findings in 1 of 1 input" "$err"

run kvt check two.kvt good.kvt two.kvt
same "of several files" "6 findings in 2 of 3 inputs" "$err"
run bash -c "kvt check < two.kvt"
same "standard input" "(standard input):1:1:" "$(head -n 1 <<<"$out" | cut -d" " -f1,2)"
run kvt check --quiet two.kvt
same "--quiet says nothing" "1 " "$status $out$err"
run kvt check --only longer-key,nul two.kvt
same "--only" "1 1" "$status $(grep -c two.kvt: <<<"$out")"
run kvt check --ignore longer-key --ignore unit,before-message two.kvt
same "--ignore" "0 " "$status $out$err"
run kvt check --only nonsense two.kvt
same "a name that is none" 2 "$status"
run kvt check --list
same "--list has every name" 0 "$status"
same "with severity and what it means" 1 "$(grep -c '^after-number  *lost  *[A-Za-z]' <<<"$out")"

run kvt check --format json two.kvt
same "--format json has one object a line" "3 6 11 unit lost job_id: 5x" \
    "$(wc -l <<<"$out") $(sed -n 2p <<<"$out" |
        python3 -c 'import json, sys; f = json.load(sys.stdin)
print(f["line"], f["column"], f["name"], f["severity"], f["text"].strip())')"
same "and nothing else is said" "" "$err"

sed 's/$/\r/' two.kvt two.kvt >windows.kvt
run kvt check --only carriage-return windows.kvt
same "of carriage returns the first is said" "0 1" "$status $(grep -c windows.kvt: <<<"$out")"

long=$(printf 'x%.0s' {1..3000})
printf 'msg {\n  type: END_JOB\n  end_job {\n    %s\n    job_id: 1%s\n  }\n}\n' "$long" "$long" >long.kvt
run kvt check long.kvt
same "long lines are cut" 0 "$(awk 'length > 600' <<<"$out" | wc -l)"
printf 'msg {\n  type: END_JOB\n  end_job {\n    \033[31m\377\n  }\n}\n' >control.kvt
run kvt check control.kvt
same "a terminal gets no control characters" 0 "$(tr -cd '\033' <<<"$out" | wc -c)"

run_in_terminal "kvt check two.kvt"
same "colours for a terminal" 1 "$(grep -c $'\033\\[1;31munit' <<<"$out")"
run_in_terminal "NO_COLOR=1 kvt check two.kvt"
same "none with NO_COLOR" 0 "$(tr -cd '\033' <<<"$out" | wc -c)"

for i in {1..3000}; do cat two.kvt; done >many.kvt
kvt check many.kvt >one 2>/dev/null || true
kvt check -j 4 many.kvt >four 2>/dev/null || true
same "several threads say the same in the same order" same "$(cmp -s one four && echo same)"
same "all of it" 6001 "$(grep -c ^many.kvt: one)"
same "with lines of the whole file" "many.kvt:26998:5:" "$(tail -n 3 one | head -n 1 | cut -d' ' -f1)"

# --- What the codec refuses ----------------------------------------------------------------------

: >empty.kvt
printf '\n \t\n' >blank.kvt
{ printf ' '; cat good.kvt; } >indented.kvt
printf '\357\273\277' | cat - good.kvt >marked.kvt
for file in empty blank indented marked; do
    run kvt check "$file.kvt"
    same "$file.kvt is refused" "1 1" "$status $(grep -c "^$file.kvt:1:.*\[refused\]" <<<"$out")"
done
run bash -c ": | kvt check"
same "an empty input is refused" "1 (standard input):1:1: no-message:" "$status $(head -n 1 <<<"$out" | cut -d' ' -f1-3)"
{ cat good.kvt; printf '\n \t\n  '; cat good.kvt; printf '\n\n'; cat good.kvt; } >apart.kvt
run kvt check apart.kvt
same "blanks may stand between messages" "0 " "$status $out$err"
run kvt check empty.kvt good.kvt
same "an empty file among others" "1 1 finding in 1 of 2 inputs" "$status $err"

# --- Severities ----------------------------------------------------------------------------------

sed 's/$/\r/' good.kvt >crlf.kvt
cp crlf.kvt mended.kvt
run kvt check crlf.kvt
same "style is said, and no failure" "0 1" "$status $(grep -c '\[style\]$' <<<"$out")"
run kvt check --strict crlf.kvt
same "--strict" 1 "$status"
run kvt check --severity lost crlf.kvt
same "--severity leaves out what is less bad" "0 " "$status $out$err"
run kvt check --severity refused two.kvt
same "--severity refused" "1 1" "$status $(grep -c 'two.kvt:' <<<"$out")"
run kvt check --severity bad two.kvt
same "a severity that is none" 2 "$status"
run kvt fmt -i mended.kvt
same "what is of style is mended without --lossy" "0  $(cat good.kvt)" "$status $out$err $(cat mended.kvt)"

# --- Causes --------------------------------------------------------------------------------------

sed '/^  }$/d' good.kvt >open.kvt
cat good.kvt open.kvt good.kvt >between.kvt
run kvt check between.kvt
same "a block that is not closed, with lines of the file" \
    "1 between.kvt:9:3: not-closed: 'end_job' is not closed: by the indentation its brace belongs before line 11; the reader takes what follows for its lines, and reads no message after this one [lost]" \
    "$status $(head -n 1 <<<"$out")"
{ cat good.kvt; sed '/^}$/d' good.kvt; cat good.kvt; } >lacking.kvt
run kvt check lacking.kvt
same "what becomes of the messages below is said" \
    "1 lacking.kvt:12:1: not-closed: a message begins here, but that of line 7 is not closed: the reader takes this line for its closing brace, and reads neither this message nor those below [lost]
  12 | msg {" "$status $(head -n 2 <<<"$out")"
same "once, and how many messages are left" "lacking.kvt: a program that reads the file as a whole, with kvt_msg_arr_from_str, gets 2 of 3 messages, the last one at line 7
1 finding in 1 of 1 input" "$err"
printf 'msg {\n  type: BEGIN_JOB\n  begin_job {\n    quota {\n      max_osts: 1\n    uid: 1\n    pkey: 2\n  }\n}\n' >quota.kvt
run kvt check quota.kvt
same "one cause, one finding" 1 "$(grep -c '^quota.kvt:' <<<"$out")"
run kvt check --all quota.kvt
same "--all has what follows" 4 "$(grep -c '^quota.kvt:' <<<"$out")"

# --- Many ----------------------------------------------------------------------------------------

run kvt check --max 2 many.kvt
same "--max" "1 2 6001 findings in 1 of 1 input, of which 2 are shown" \
    "$status $(grep -c '^many.kvt:' <<<"$out") $(tail -n 1 <<<"$err")"
same "many are summed up" "    3000 lost    longer-key          reservation_idd  first at many.kvt:7
    3000 lost    unit                job_id           first at many.kvt:6
       1 refused before-message                       first at many.kvt:1" \
    "$(head -n 3 <<<"$err")"
run kvt check --summary many.kvt two.kvt
same "--summary says nothing else" "1 3" "$status $(wc -l <<<"$out")"
same "over all inputs" "3001" "$(grep longer-key <<<"$out" | awk '{ print $1 }')"
run kvt check --summary --format json two.kvt
same "--summary as JSON" "unit lost job_id 1 two.kvt 6" \
    "$(grep '"unit"' <<<"$out" | python3 -c 'import json, sys; f = json.load(sys.stdin)
print(f["name"], f["severity"], f["key"], f["count"], f["file"], f["line"])')"
run kvt check two.kvt
same "few are not summed up" 1 "$(wc -l <<<"$err")"
run kvt check --max x two.kvt
same "a number that is none" 2 "$status"

# --- Explanations --------------------------------------------------------------------------------

for name in $(kvt check --list | cut -d' ' -f1); do
    run kvt check --explain "$name"
    same "--explain $name" "0 1 1" "$status $(grep -c "^    job.kvt:[0-9:]* $name: .*\[$(head -n 1 <<<"$out" | sed 's/.*(\(.*\))/\1/')\]$" <<<"$out") $(grep -c '^What to do: [A-Z]' <<<"$out")"
done
run kvt check --explain nonsense
same "--explain of a name that is none" 2 "$status"
