#!/usr/bin/env bash
# What every command does with inputs and outputs that are none. Usage: bad_input.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

head -c 3000000 /dev/urandom >binary
{ cat good.kvt; printf '\0'; cat good.kvt; } >nul.kvt
mkfifo pipe
for command in "fmt" "check" "json --lines" "stat" "show job_id" "split -o parts" "graph" "fmt --check"; do
    # shellcheck disable=SC2206 # options are words
    words=($command)
    run kvt "${words[@]}" .
    same "$command: a directory" "2 kvt: .: Is a directory" "$status $(head -n 1 <<<"$err")"
    run kvt "${words[@]}" missing.kvt
    same "$command: a missing file" "2 kvt: missing.kvt: No such file or directory" \
        "$status $(head -n 1 <<<"$err")"
    run timeout 20 kvt "${words[@]}" binary
    same "$command: a binary file" 1 "$status"
    run bash -c "cat good.kvt > pipe & timeout 20 kvt $command pipe"
    [[ $command == graph ]] || same "$command: a pipe" 0 "$status"
    rm -rf parts
    run kvt "${words[@]}" nul.kvt
    same "$command: a NUL" 1 "$status"
    rm -rf parts
done
same "inputs stay as they are" "$(cat good.kvt)" "$(head -n 6 nul.kvt)"

# Root may read everything, and so tries it as another user, if that one may come here.
cp good.kvt secret.kvt
chmod 000 secret.kvt
chmod 755 .
as_user=()
((EUID != 0)) || as_user=(setpriv --reuid=65534 --regid=65534 --clear-groups)
if "${as_user[@]}" test -x "$kvt"; then
    for command in fmt check "json --lines" stat "diff good.kvt" "fmt -i"; do
        # shellcheck disable=SC2086 # options are words
        run "${as_user[@]}" "$kvt" $command secret.kvt
        same "$command: a file that may not be read" 2 "$status"
        same "$command: and why" 1 "$(grep -m 1 -c 'secret.kvt.*: Permission denied' <<<"$err")"
    done
fi

for command in fmt check json stat "split -o parts" "show job_id" graph from-json; do
    run bash -c "kvt $command <&-"
    same "$command: a standard input that is closed" "2 kvt: (standard input): Bad file descriptor" "$status $(head -n 1 <<<"$err")"
done
rm -rf parts

run kvt from-json . missing.json
same "from-json: a directory and a missing file" "2 2" "$status $(wc -l <<<"$err")"
run timeout 20 kvt from-json binary
same "from-json: a binary file" 1 "$status"

for i in {1..3000}; do cat good.kvt; done >many.kvt
for command in fmt "json --lines" json "show job_id" stat "graph $examples/job_data.kvt" describe "gen -n 3000" kinds "check unknown.kvt" "check --list" "diff unknown.kvt $examples/job_error.kvt" "json --schema"; do
    run bash -c "kvt $command many.kvt > /dev/full" # for some, many.kvt is too much
    [[ $err == *"The following argument was not expected"* || $err == *"WORD: "* || $err == *"kind 'many.kvt'"* ]] &&
        run bash -c "kvt $command > /dev/full"
    same "$command: a full disk" "2 kvt: standard output: No space left on device" "$status $(tail -n 1 <<<"$err")"
done
for command in fmt "json --lines" "show job_id" "check"; do
    for i in {1..30}; do cat unknown.kvt; done >some.kvt
    run bash -c "kvt $command many.kvt some.kvt 2>words | head -n 1; exit \${PIPESTATUS[0]}"
    same "$command: a reader who stops early sees no error" "" "$(grep '^kvt:' words || true)"
done

# Between words and data the order is kept, and a bar shows only on a terminal.
run kvt fmt many.kvt
same "no bar without a terminal" "" "$err"
run_in_terminal "{ cat many.kvt; sleep 1.2; for i in 1 2 3 4 5 6 7 8 9; do cat many.kvt; done; } | kvt fmt >/dev/null"
same "a bar on a terminal, after a second" 1 "$(grep -c 'MB/s' <<<"$out")"
run_in_terminal "kvt fmt many.kvt >/dev/null"
same "none before" 0 "$(grep -c 'MB/s' <<<"$out" || true)"
