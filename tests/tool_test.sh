#!/usr/bin/env bash
# Tries the command kvt as its users do. Usage: tool_test.sh KVT EXAMPLES
set -euo pipefail
kvt=$(realpath "$1")
examples=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
failures=0

# same WHAT EXPECTED ACTUAL
same() {
    if [ "$2" != "$3" ]; then
        printf 'FAILED: %s\n--- expected\n%s\n--- actual\n%s\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    fi
}

# run COMMAND...: its output, its words on standard error and its exit status
run() {
    status=0
    out=$("$@" 2>errors) || status=$?
    err=$(cat errors)
}

printf 'msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n' >good.kvt
printf 'msg {\ntype:END_JOB\n\n end {\nunknown\njob_id:+5\n}\n}' >untidy.kvt

for example in "$examples"/*.kvt; do
    run "$kvt" fmt "$example"
    same "fmt leaves $(basename "$example") unchanged" "$(cat "$example")" "$out"
    same "fmt is content with $(basename "$example")" "0 " "$status $err"
done

run "$kvt" fmt untidy.kvt
same "fmt prints the normal form" "$(cat good.kvt)" "$out"
same "an unknown line is no error" "0 " "$status $err"

run "$kvt" fmt good.kvt untidy.kvt
same "messages are separated by an empty line" "$(cat good.kvt; echo; cat good.kvt)" "$out"

run bash -c "'$kvt' fmt < good.kvt"
same "fmt reads standard input when there is no file" "$(cat good.kvt)" "$out"
run bash -c "'$kvt' fmt good.kvt - < untidy.kvt"
same "fmt reads standard input for -" "$(cat good.kvt; echo; cat good.kvt)" "$out"

run bash -c ": | '$kvt' fmt"
same "nothing in, nothing out" "0  " "$status $out $err"

cp untidy.kvt before.kvt
"$kvt" fmt untidy.kvt >/dev/null
same "the input stays as it is" "$(cat before.kvt)" "$(cat untidy.kvt)"

printf 'words\nmore words\nmsg {\n  type: FOO\n}\n' >bad.kvt
cat good.kvt >>bad.kvt
run "$kvt" fmt bad.kvt
same "what is wrong is said with file and line" \
    'bad.kvt:1: not in any message: words
bad.kvt:4: "FOO" is not a kind of message; "kvt kinds" lists them' "$err"
same "reading goes on behind it" "1 $(cat good.kvt)" "$status $out"

printf 'msg {\n}\n' >empty.kvt
run "$kvt" fmt empty.kvt
same "a message without a type line" \
    '1 empty.kvt:2: a line "type: KIND" must follow the message'"'"'s first line' "$status $err"

printf 'msg {\n  type: LAST\n}\n' >last.kvt
run "$kvt" fmt last.kvt
same "a kind without a record" \
    '1 last.kvt:2: "LAST" is not a kind of message; "kvt kinds" lists them' "$status $err"

head -n 4 good.kvt >open.kvt
run "$kvt" fmt open.kvt
same "a message that is not closed is printed as far as it goes, and said" \
    "1 open.kvt:5: the message that begins in line 1 is not closed
$(cat good.kvt)" "$status $err
$out"

printf 'msg {\n  type: END_JOB\n  end_job {\n  }\n  second {\n  }\n}\nmsg {\n  type: AM_SIGNAL\n  am_signal {\n  }\n}\n' >two_blocks.kvt
run "$kvt" fmt two_blocks.kvt
same "a second block in a message is said" \
    '1 two_blocks.kvt:5: the message that begins in line 1 should end here, before: second {' \
    "$status $err"
same "and the next message is read" "  type: AM_SIGNAL" "$(grep AM_SIGNAL <<<"$out")"

{ cat good.kvt; printf '\0'; cat good.kvt; } >nul.kvt
run "$kvt" fmt nul.kvt
same "a NUL character is said" \
    "1 nul.kvt:7: a NUL character ends the text here; what follows is not read" "$status $err"

printf 'msg {\n  type: TOPOLOGY_INFO_REPLY\n  topology_info_list {\n    num_switches: 9\n  }\n}\n' >counts.kvt
run "$kvt" fmt counts.kvt
same "a count without elements is put right" "0 0" "$status $(grep -c num_switches <<<"$out" || true)"

run "$kvt" fmt missing.kvt good.kvt
same "a missing file is said, the others are read" \
    "2 kvt: missing.kvt: No such file or directory
$(cat good.kvt)" "$status $err
$out"
run "$kvt" fmt .
same "a directory is said" "2 kvt: .: Is a directory" "$status $err"
run bash -c "'$kvt' fmt good.kvt > /dev/full"
same "a full disk is said" "2 kvt: standard output: No space left on device" "$status $err"

awk '{ text = text $0 "\n" } END { for (i = 0; i < 3000; ++i) printf "%s", text }' good.kvt >many.kvt
run bash -c "'$kvt' fmt many.kvt | head -n 1"
same "a reader who stops early sees no error" "0 msg { " "$status $out $err"

run "$kvt" fmt -v untidy.kvt
same "-v shows what the codec skips" 1 "$(grep -c 'mismatch, txt_msg\[unknown' <<<"$err")"
same "-v shows what the codec reads" 1 "$(grep -c 'p_msg->job_id\[0x5\]' <<<"$err")"

run "$kvt" kinds
same "kinds lists 25 values under a heading" 26 "$(wc -l <<<"$out")"
same "kinds tells value, name and record" "7      REQ_SM_DATA                  vemra_request_sm_data" \
    "$(grep REQ_SM_DATA <<<"$out")"

run "$kvt" --help
same "help names the commands" "0 2" "$status $(grep -cE '^  (fmt|kinds) ' <<<"$out")"
run "$kvt" fmt --help
same "help of a command has an example" 1 "$(grep -c '^Example: kvt fmt' <<<"$out")"
run "$kvt" --version
same "the version" "0 kvt" "$status ${out%% *}"
run "$kvt" nonsense
same "wrong usage cannot work" 2 "$status"

[ "$failures" = 0 ] || { echo "$failures failed"; exit 1; }
