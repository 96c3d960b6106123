#!/usr/bin/env bash
# The command may only use the files that were named, where the kernel has Landlock.
# Usage: rights.sh KVT EXAMPLES
. "$(dirname "$0")/shell.sh"

if ! python3 -c 'import ctypes, sys
sys.exit(ctypes.CDLL(None).syscall(444, None, 0, 1) < 1)'; then
    echo "skipped: the kernel has no Landlock"
    exit 0
fi

# The command itself only does what it should. So somebody else gets into it here: when it reads the
# first bytes, it tries what an attacker would, and tells what the kernel says to that.
cat >intruder.c <<'C'
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

extern ssize_t __read(int file, void *to, size_t room);

ssize_t read(int file, void *to, size_t room) {
    static int is_done;
    const char *path = getenv("INTRUDER_PATH");
    const char *way = getenv("INTRUDER_WAY");
    if (path != NULL && way != NULL && !is_done) {
        is_done = 1;
        int result = strcmp(way, "unlink") == 0  ? unlink(path)
                     : strcmp(way, "write") == 0 ? open(path, O_WRONLY | O_CREAT, 0600)
                                                 : open(path, O_RDONLY);
        dprintf(STDERR_FILENO, "intruder: %s\n", result < 0 ? strerror(errno) : "done");
    }
    return __read(file, to, room);
}
C
if ! "${CC:-cc}" -shared -fPIC -o intruder.so intruder.c 2>errors; then
    echo "skipped: no compiler for the intruder"
    exit 0
fi

# intrude WAY PATH COMMAND...: what the kernel says to the intruder
intrude() {
    local way=$1 path=$2
    shift 2
    run env LD_PRELOAD="$PWD/intruder.so" INTRUDER_WAY="$way" INTRUDER_PATH="$path" kvt "$@"
    grep -o 'intruder: .*' <<<"$err"
}

mkdir other
cp good.kvt other/other.kvt
if [[ -z $(intrude read good.kvt stat good.kvt) ]]; then
    echo "skipped: this build takes no intruder"
    exit 0
fi
same "the intruder may do what the command may" "intruder: done" "$(intrude read good.kvt stat good.kvt)"
denied="intruder: Permission denied"
# A build with sanitizers reads other files, for their reports.
denied_to_read=$denied
if grep -q __asan_init "$kvt"; then
    denied_to_read="intruder: done"
fi
for command in "fmt" "fmt --check" "check" "json" "stat" "show job_id" "graph" "diff good.kvt"; do
    # shellcheck disable=SC2086 # options are words
    for way in "write good.kvt" "write new.kvt" "unlink good.kvt" "unlink other/other.kvt"; do
        same "kvt $command cannot $way" "$denied" "$(intrude $way $command good.kvt)"
    done
    same "kvt $command cannot read other files" "$denied_to_read" \
        "$(intrude read other/other.kvt $command good.kvt)"
done
kvt json --lines good.kvt >good.json
same "nor can from-json write" "$denied" "$(intrude write new.kvt from-json good.json)"
same "nothing has come of it" "0 $(cat untidy.kvt)" "$(find . -name 'new*' | wc -l) $(cat untidy.kvt)"

mkdir in
cp untidy.kvt in
same "fmt -i writes beside its files only" "$denied" "$(intrude write other/new.kvt fmt -i in/untidy.kvt)"
same "and does" "$(cat good.kvt)" "$(cat in/untidy.kvt)"
cp untidy.kvt in
same "and reads no others" "$denied_to_read" "$(intrude read other/other.kvt fmt -i in/untidy.kvt)"
same "split writes to its folder only" "$denied" "$(intrude write new.kvt split -o in/parts good.kvt)"
same "and does" "$(cat good.kvt)" "$(cat in/parts/000001-end_job.kvt)"
same "graph -o writes beside its file only" "$denied" \
    "$(intrude write other/new.kvt graph -T svg -o in/job.svg "$examples/job_data.kvt")"
same "and does, with Graphviz" 1 "$(grep -c '</svg>' in/job.svg)"

# What must go on as it does without.
same "what is missing is missing" "2 kvt: missing.kvt: No such file or directory" \
    "$(run kvt check missing.kvt; echo "$status $err")"
ln -s ../good.kvt in/link.kvt
ln -s ../in/new.svg other/link.svg
run kvt check in/link.kvt
same "an input by a link" "0 " "$status $err"
run kvt fmt /dev/stdin <good.kvt
same "standard input by its name" "0 $(cat good.kvt)" "$status $out"
run bash -c 'kvt fmt <(cat good.kvt)'
same "the output of a command" "0 $(cat good.kvt)" "$status $out$err"
run bash -c "kvt graph -o /dev/stdout $examples/job_data.kvt | head -n 1"
same "standard output by its name" 1 "$(grep -c graph <<<"$out")"
kvt graph -o /dev/stdout "$examples/job_data.kvt" >redirected
same "also where that is a file" 1 "$(grep -cE '^(di)?graph' redirected)"
mkfifo pipe
cat pipe >drawn &
run timeout 20 kvt graph -o pipe "$examples/job_data.kvt"
wait
same "a pipe" "0 1" "$status $(grep -cE '^(di)?graph' drawn)"
run kvt graph -T png -o other/link.svg "$examples/job_data.kvt"
same "a link to what is not there is replaced" "0 regular file" "$status $(stat -c %F other/link.svg)"
(cd in && run kvt graph -o plain.dot "$examples/job_data.kvt" && same "a name without a folder" 0 "$status")
run env LC_ALL=de_DE.UTF-8 kvt check good.kvt
same "another locale" "0 " "$status $err"
