#!/usr/bin/env bash
# kvt fmt, as its users try it. Usage: fmt.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

for example in "$examples"/*.kvt; do
    run kvt fmt "$example"
    same "fmt leaves $(basename "$example") unchanged" "$(cat "$example")" "$out"
    same "fmt is content with $(basename "$example")" "0 " "$status $err"
done

run kvt fmt untidy.kvt
same "fmt prints the normal form" "0 $(cat good.kvt)" "$status $out"
run kvt fmt good.kvt untidy.kvt
same "messages are separated by an empty line" "$(cat good.kvt; echo; cat good.kvt)" "$out"
run bash -c "kvt fmt < good.kvt"
same "fmt reads standard input when there is no file" "$(cat good.kvt)" "$out"
run bash -c "kvt fmt good.kvt - < untidy.kvt"
same "fmt reads standard input for -" "$(cat good.kvt; echo; cat good.kvt)" "$out"
run bash -c ": | kvt fmt"
same "nothing in, nothing out" "0  " "$status $out $err"

run kvt fmt unknown.kvt
same "what is lost is said, and the rest printed" \
    "1 unknown.kvt:5:5: unknown-key: $(cat good.kvt)" "$status ${err%%\'*}$out"

{ echo words; cat good.kvt; printf 'msg {\n  type: FOO\n}\n'; cat good.kvt; } >some_bad.kvt
run kvt fmt some_bad.kvt
same "reading goes on after what is wrong" "1 2" "$status $(grep -c 'job_id: 5' <<<"$out")"
same "what is wrong is said with file and line" "some_bad.kvt:1:1: 
some_bad.kvt:9:9: " "$(sed -E 's/^([^ ]* ).*/\1/' <<<"$err")"

printf 'msg {\n  type: TOPOLOGY_INFO_REPLY\n  topology_info_list {\n    num_switches: 9\n  }\n}\n' >counts.kvt
run kvt fmt counts.kvt
same "a count without elements is put right" 0 "$(grep -c num_switches <<<"$out" || true)"

# --- In place ------------------------------------------------------------------------------------

cp untidy.kvt tidied.kvt
chmod 640 tidied.kvt
ln -s tidied.kvt link.kvt
run kvt fmt -i good.kvt link.kvt
same "-i puts a file in normal form" "0  $(cat good.kvt)" "$status $out$err $(cat tidied.kvt)"
same "its permissions stay" 640 "$(stat -c %a tidied.kvt)"
same "a link stays one" tidied.kvt "$(readlink link.kvt)"

before=$(stat -c '%i %Y' good.kvt)
kvt fmt -i good.kvt
same "a file in normal form is not written" "$before" "$(stat -c '%i %Y' good.kvt)"

cp unknown.kvt kept.kvt
run kvt fmt -i kept.kvt untidy.kvt
same "a file that would lose something is left as it is" "1 $(cat unknown.kvt)" \
    "$status $(cat kept.kvt)"
same "and said" "kvt: kept.kvt: left as it is, for what is said above" \
    "$(tail -n 1 <<<"$err")"
same "the others are put in normal form" "$(cat good.kvt)" "$(cat untidy.kvt)"
run kvt fmt -i --lossy kept.kvt
same "unless the loss is wanted" "1 $(cat good.kvt)" "$status $(cat kept.kvt)"

mkfifo pipe
run timeout 10 bash -c 'cat good.kvt > pipe & kvt fmt -i pipe . missing.kvt; kill $! 2>/dev/null; true'
same "-i replaces files only" "kvt: pipe: not a regular file" "$(head -n 1 <<<"$err" | sed "s|$PWD/||")"
same "a pipe is left as it is" "fifo" "$(stat -c %F pipe)"
run kvt fmt --in-place .
same "a directory is said" 2 "$status"

awk '{ text = text $0 "\n" } END { for (i = 0; i < 3000; ++i) printf "%s", text }' good.kvt >many.kvt
cp many.kvt large.kvt
(
    ulimit -f 8
    run kvt fmt -i large.kvt
    echo "$status" >limited
) 2>/dev/null || true
same "a file that cannot be written as a whole is left as it is" same \
    "$(cmp -s many.kvt large.kvt && echo same)"
same "and nothing is left of the new one" "large.kvt" "$(echo large.kvt*)"

cp unknown.kvt '[a.kvt]'
cp unknown.kvt a.kvt
run kvt fmt -i --lossy '[a.kvt]'
same "a name in brackets is a name" "$(cat unknown.kvt)$(cat good.kvt)" "$(cat a.kvt)$(cat '[a.kvt]')"
cp unknown.kvt ./-
run bash -c "kvt fmt -i < unknown.kvt"
same "-i takes no standard input" "2 $(cat unknown.kvt)" "$status $(cat ./-)"
cp unknown.kvt quiet.kvt
kvt fmt -i --lossy quiet.kvt >&- 2>&- || true
same "words do not go into a file where standard error is closed" "$(cat good.kvt)" "$(cat quiet.kvt)"
mkdir folder
run kvt fmt -i folder
same "nothing is left beside what is no file" "folder" "$(echo folder*)"

# --- Only looking --------------------------------------------------------------------------------

printf 'msg {\n}' >bad.kvt
run kvt fmt --check good.kvt many.kvt kept.kvt
same "--check names files that are not in normal form" "1 many.kvt" "$status $out"
kvt fmt -i many.kvt
run kvt fmt --check good.kvt many.kvt
same "--check is content with normal form" "0 " "$status $out$err"
{ cat good.kvt; echo; } >trailing.kvt
{ echo; cat good.kvt; } >leading.kvt
{ cat good.kvt; echo; echo; cat good.kvt; } >distant.kvt
: >nothing.kvt
run kvt fmt --check trailing.kvt leading.kvt distant.kvt nothing.kvt
same "empty lines are not where they should be" "trailing.kvt
leading.kvt
distant.kvt" "$out"

printf 'msg {\ntype:END_JOB\n\n end_job {\njob_id:+5\n}\n}' >no_newline.kvt
cp no_newline.kvt to_patch.kvt
run kvt fmt --diff good.kvt to_patch.kvt
same "--diff prints what would change" "1 $(printf '%s\n' '--- to_patch.kvt	(as it is)' '+++ to_patch.kvt	(normal form)' \
    '@@ -1,7 +1,6 @@' ' msg {' '-type:END_JOB' '-' '- end_job {' '-job_id:+5' \
    '+  type: END_JOB' '+  end_job {' '+    job_id: 5' '+  }' ' }' '-}' '\ No newline at end of file')" "$status $out"
same "and leaves the file as it is" "$(cat no_newline.kvt)" "$(cat to_patch.kvt)"
run kvt fmt --diff good.kvt nothing.kvt
same "nothing would change" "0 " "$status $out$err"
{
    echo words
    for _ in {1..3}; do cat "$examples/job_data.kvt" <(echo) <(sed '/uid/d' unknown.kvt) <(printf '\n\n\n') good.kvt; done
    sed 's/^ *//' "$examples/day_of_a_small_fabric.kvt"
    cat no_newline.kvt <(echo) "$examples/topology_info_reply.kvt"
} >long.kvt
cp long.kvt to_patch.kvt
run kvt fmt --diff to_patch.kvt
same "what would be lost is said with it" 1 "$((status == 1 && $(grep -c unknown-key <<<"$err") == 3))"
if command -v patch >/dev/null; then
    run kvt fmt --diff -j 3 to_patch.kvt
    patch --silent -p0 --fuzz=0 <<<"$out"
    run kvt fmt long.kvt
    same "patch makes the normal form with it" "$out" "$(cat to_patch.kvt)"
fi
run kvt fmt --diff --check good.kvt
same "--diff and --check exclude each other" "2 " "$status $out"
run kvt fmt --diff -i good.kvt
same "as do --diff and -i" "2 " "$status $out"

run bash -c "kvt fmt -j 4 many.kvt | cmp - many.kvt"
same "the order stays with several threads" "0 " "$status $out$err"

run kvt fmt -v unknown.kvt
same "-v shows what the codec skips" 1 "$(grep -c 'mismatch, txt_msg\[job: 6' <<<"$err")"
same "-v shows what the codec reads" 1 "$(grep -c 'p_msg->job_id\[0x5\]' <<<"$err")"
