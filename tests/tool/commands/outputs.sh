#!/usr/bin/env bash
# What the command does to files, terminals and readers that go away. Usage: outputs.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

# --- What a file is besides its content ------------------------------------------------------------

# what_it_is FILE: its permissions, owner and group, and its extended attributes, access list and all
what_it_is() {
    stat -c '%a %u %g' "$1"
    python3 -c '
import os, sys
for name in sorted(os.listxattr(sys.argv[1])):
    print(name, os.getxattr(sys.argv[1], name))' "$1"
}

# set_attribute FILE NAME HEXADECIMAL
set_attribute() {
    python3 -c 'import os, sys; os.setxattr(sys.argv[1], sys.argv[2], bytes.fromhex(sys.argv[3]))' "$@" 2>/dev/null
}

# An access list: its owner reads and writes, so does the user 1234, the group and the mask read.
list_with_user_1234=0200000001000600ffffffff02000600d204000004000400ffffffff10000600ffffffff20000000ffffffff

cp untidy.kvt shared.kvt
((EUID != 0)) || chown 1234:2345 shared.kvt
chmod 2664 shared.kvt
set_attribute shared.kvt user.origin 6162 || echo "skipped: this file system has no extended attributes"
set_attribute shared.kvt system.posix_acl_access "$list_with_user_1234" ||
    echo "skipped: this file system has no access lists"
before=$(what_it_is shared.kvt)
run kvt fmt -i shared.kvt
same "-i keeps owner, group, permissions, access list and attributes" "0  $before $(cat good.kvt)" \
    "$status $out$err $(what_it_is shared.kvt) $(cat shared.kvt)"

mkdir listed
if set_attribute listed system.posix_acl_default "$list_with_user_1234"; then
    cp untidy.kvt plain.kvt
    mv plain.kvt listed/plain.kvt
    before=$(what_it_is listed/plain.kvt)
    run kvt fmt -i listed/plain.kvt
    same "the folder's list gives nobody a file that was not theirs" "0 $before" \
        "$status $(what_it_is listed/plain.kvt)"
fi

touch -d '2001-02-03 04:05:06' good.kvt
before=$(stat -c '%i %Y %Z' good.kvt)
run kvt fmt -i good.kvt
same "a file in normal form keeps its times" "0  $before" "$status $out$err $(stat -c '%i %Y %Z' good.kvt)"

{ cat good.kvt; echo; } >spaced.kvt
repeat 3000 spaced.kvt >long.kvt
cat untidy.kvt >>long.kvt
kvt fmt long.kvt >expected
kvt fmt -i long.kvt
same "what was in normal form before the first other line is kept" same \
    "$(cmp -s long.kvt expected && echo same)"
repeat 40000 spaced.kvt >long.kvt
cp long.kvt cut.kvt
kvt fmt -i cut.kvt
truncate -s -1 long.kvt
same "a last line too many, after megabytes" same "$(cmp -s long.kvt cut.kvt && echo same)"

# As another user, if that one may come here: root may do everything.
chmod 755 .
as_user=()
((EUID != 0)) || as_user=(setpriv --reuid=65534 --regid=65534 --clear-groups)
if "${as_user[@]}" test -x "$kvt" && ((EUID == 0)); then
    mkdir group
    chmod 777 group
    cp untidy.kvt group/shared.kvt
    chown 1234:65534 group/shared.kvt
    chmod 664 group/shared.kvt
    before="$(what_it_is group/shared.kvt) $(cat untidy.kvt)"
    run "${as_user[@]}" "$kvt" fmt -i group/shared.kvt
    same "a file whose owner cannot be kept is left as it is, and why" \
        "2 kvt: $PWD/group/shared.kvt: left as it is: its owner cannot be kept: Operation not permitted" "$status $err"
    same "as it is" "$before" "$(what_it_is group/shared.kvt) $(cat group/shared.kvt)"
    same "and nothing stands beside it" group/shared.kvt "$(echo group/*)"
    run "${as_user[@]}" "$kvt" graph -o group/shared.kvt "$examples/job_data.kvt"
    same "nor does a drawing take it over" "2 $before" \
        "$status $(what_it_is group/shared.kvt) $(cat group/shared.kvt)"
    chown 65534:1234 group/shared.kvt
    run "${as_user[@]}" "$kvt" fmt -i group/shared.kvt
    same "a group that cannot be kept" "2 its group cannot be kept" "$status $(grep -o 'its group cannot be kept' <<<"$err")"
fi
mkdir closed
cp good.kvt unknown.kvt closed
cp untidy.kvt closed
chmod 555 closed
if "${as_user[@]}" test -x "$kvt"; then
    run "${as_user[@]}" "$kvt" fmt -i closed/good.kvt
    same "a folder that may not be written is no matter for a file in normal form" "0 " "$status $out$err"
    run "${as_user[@]}" "$kvt" fmt -i closed/unknown.kvt
    same "nor for one that would lose something" "1 kvt: closed/unknown.kvt: left as it is, for what is said above" \
        "$status $(tail -n 1 <<<"$err")"
    run "${as_user[@]}" "$kvt" fmt -i closed/untidy.kvt
    same "for another it is said" "2 kvt: $PWD/closed/untidy.kvt: Permission denied" "$status $err"
fi
chmod 755 closed

ln -s "$PWD/untidy.kvt" closed/link.kvt
cp untidy.kvt kept
name=$(printf 'n%.0s' {1..251}).kvt
cp untidy.kvt "$name"
run kvt fmt -i "$name" closed/link.kvt
same "a name as long as a name may be, and a link to another folder" "0 $(cat good.kvt good.kvt)" \
    "$status $(cat "$name" untidy.kvt)"
cp kept untidy.kvt
cp untidy.kvt twice.kvt
run kvt fmt -i twice.kvt twice.kvt
same "a file that is named twice" "0  $(cat good.kvt)" "$status $err $(cat twice.kvt)"

# --- Signals and readers that go away -----------------------------------------------------------------

repeat 60000 good.kvt >many.kvt
# The new file is begun with the first message. Then the words take more room than a pipe has that
# nobody reads, and so the command waits.
{ cat untidy.kvt many.kvt; repeat 20000 unknown.kvt; } >losing.kvt
cp losing.kvt before.kvt
mkfifo stuck
exec 9<>stuck
for signal in HUP INT QUIT TERM PIPE ALRM USR1 USR2 XCPU VTALRM IO RTMIN; do
    env --default-signal "$kvt" fmt -i --lossy -j 2 losing.kvt >/dev/null 2>stuck &
    pid=$!
    for _ in {1..3000}; do
        [[ -z $(find . -name 'losing.kvt.*') ]] || break
        sleep 0.02
    done
    seen=$(find . -name 'losing.kvt.*' | wc -l)
    kill -"$signal" $pid
    status=0
    wait $pid 2>/dev/null || status=$?
    same "SIG$signal ends it and leaves nothing behind" "1 $((128 + $(kill -l "$signal"))) " \
        "$seen $status $(find . -name 'losing.kvt.*')"
done
exec 9>&-
same "and the file is as it was" same "$(cmp -s losing.kvt before.kvt && echo same)"
for pipe in default ignore; do
    run bash -c "env --$pipe-signal=PIPE kvt fmt -i --lossy losing.kvt 2>&1 >/dev/null | head -n 1"
    same "a reader of words who stops early ($pipe)" "losing.kvt" "$(echo losing.kvt*)"
done
for pipe in default ignore; do
    expected=141
    [[ $pipe == default ]] || expected=2
    for command in "fmt many.kvt" "json many.kvt" "show job_id many.kvt" "check before.kvt" \
        "graph $examples/job_data.kvt many.kvt" "gen -n 100000" "diff many.kvt losing.kvt"; do
        run bash -c "env --$pipe-signal=PIPE kvt $command 2>words | head -c 100 >/dev/null; exit \${PIPESTATUS[0]}"
        [[ $command == graph* ]] || same "$command: ends when nobody reads ($pipe)" $expected "$status"
        same "$command: and says nothing of it ($pipe)" "" "$(grep '^kvt:' words || true)"
    done
    run bash -c "env --$pipe-signal=PIPE kvt --help 2>words | true; cat words"
    same "help that nobody reads ($pipe)" "" "$out"
done

# --- On disk -------------------------------------------------------------------------------------------

if command -v strace >/dev/null && strace -o trace true 2>/dev/null; then
    cp kept untidy.kvt
    # The sanitizers look for leaks by the means of strace.
    export ASAN_OPTIONS=detect_leaks=0
    strace -o trace -e trace=fsync,rename,renameat,renameat2,syncfs kvt fmt -i untidy.kvt
    same "the content is on disk before the name, and then the name" "fsync rename fsync" \
        "$(grep -oE '^[a-z0-9]+\(' trace | tr -d '(' | sed 's/renameat2*/rename/' | xargs)"
    strace -o trace -e trace=syncfs kvt split -o on_disk good.kvt
    same "so are the files of split, in the end" 1 "$(grep -c '^syncfs(.*= 0' trace)"
    unset ASAN_OPTIONS
fi

# --- Terminals -------------------------------------------------------------------------------------------

for command in "graph -T png" "graph -T pdf -o /dev/stdout"; do
    run_in_terminal "kvt $command $examples/job_data.kvt"
    same "$command: a terminal gets no binary data" "2 1 0" \
        "$status $(grep -c 'is a terminal, and this is no text' <<<"$out") $(grep -caE 'PNG|%PDF' <<<"$out")"
done
run_in_terminal "kvt graph -T svg $examples/job_data.kvt"
same "but text" "0 1" "$status $(grep -c '</svg>' <<<"$out")"

name=$(printf 'a\033[31m\302\233b.kvt')
run kvt check "$name"
same "a name is shown without control characters" "2 kvt: a.[31m.b.kvt: No such file or directory" "$status $err"
run kvt "$name"
same "nor does the command line bring some" 0 "$(tr -cd '\033\233' <<<"$err" | wc -c)"
cp kept "$name"
run kvt fmt --check "$name"
same "a program gets the name as it is" "$name" "$out"
run_in_terminal "kvt fmt --check *b.kvt"
same "a terminal does not" "a.[31m.b.kvt" "${out%$'\r'}"
printf 'msg {\n  type: JOB_ERROR\n  job_error {\n    \302\2331m: 4\n    \233x: 5\n    description: "\302\233\177"\n  }\n}\n' >controls.kvt
for command in "check controls.kvt" "fmt controls.kvt" "check --format json controls.kvt" \
    "check --summary --format json controls.kvt" "json controls.kvt" "show --json description controls.kvt" \
    "find --json m controls.kvt" "find --json \$'\\177' controls.kvt" \
    "diff controls.kvt $examples/job_error.kvt" "diff --json controls.kvt $examples/job_error.kvt"; do
    run bash -c "kvt $command 2>&1 | LC_ALL=C sed '/^    description: /d' | LC_ALL=C tr -cd '\\177\\233'"
    same "no control characters beyond ASCII: $command" "" "$out"
done

# One terminal for the output and the bar: the bar is taken away before a line, and comes after one.
mkfifo slow
{ cat untidy.kvt many.kvt; sleep 1.3; cat many.kvt; } >slow &
run_in_terminal "kvt fmt slow"
wait
same "the bar shows" yes "$(grep -q 'MB/s' <<<"$out" && echo yes)"
same "and never stands in a line of the output" 0 \
    "$(tr -d '\r' <<<"$out" | sed -E 's/(\x1b\[K)[0-9]+ MB, [0-9]+ MB\/s\x1b\[K/\1/g; s/\x1b\[K//g' |
        grep -vcE '^(msg \{|  type: END_JOB|  end_job \{|    job_id: 5|  \}|\}|)$' || true)"
