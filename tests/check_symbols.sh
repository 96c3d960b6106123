#!/usr/bin/env bash
# Compares what a shared library of the project exports and imports with what is promised: of the
# codec nine functions out, of the check nine; in, the names of the message layer and some of the C
# library, and no C++ runtime.
# Usage: check_symbols.sh LIBRARY codec|check
set -euo pipefail
library=$1
what=$2

exported="check_end_msg check_start_msg find_end_msg kvt_msg_arr_from_str kvt_msg_from_str
kvt_msg_to_str kvt_str_get_buf_size next_line next_msg"
from_layer="kvt_msg_release log_cb log_level"
further=
if [ "$what" = check ]; then
    exported="kvt_check kvt_check_losses kvt_check_with kvt_finding_meaning kvt_finding_name
kvt_finding_of_name kvt_finding_remedy kvt_finding_severity kvt_severity_name"
    from_layer=
    further="memcmp strcmp bcmp" # clang compares by bcmp where only equality counts
fi

# The last line is what hardening calls (KVT_HARDEN, or a distribution's own flags): the C library's
# functions again, which are told how large their target is, and the end of a program whose stack
# is broken.
imported="$from_layer $further
calloc free freelocale memchr memcpy memmove memset newlocale realloc snprintf strchr strlen strnlen
strtof uselocale
__memcpy_chk __memmove_chk __memset_chk __snprintf_chk __stack_chk_fail"

sorted() { tr -s ' \n' '\n' | sed 's/@.*//' | sort -u; }

# The names of versions are absolute.
found=$(nm -D --defined-only "$library" | awk '$2 != "A" {print $NF}' | sorted)
if [ "$found" != "$(sorted <<<"$exported")" ]; then
    echo "exported, but not as promised:"
    diff <(sorted <<<"$exported") <(echo "$found")
    exit 1
fi
# Weak names (of the compiler's start-up files) may stay undefined.
unknown=$(comm -13 <(sorted <<<"$imported") <(nm -D -u "$library" | awk '$1 == "U" {print $2}' | sorted))
if [ -n "$unknown" ]; then
    echo "imported, but not promised:" $unknown
    exit 1
fi
for name in $from_layer; do
    nm -D -u "$library" | grep -qw "$name" || { echo "not imported: $name"; exit 1; }
done
if readelf -d "$library" | grep NEEDED | grep -v 'libc\.so'; then
    echo "needs more than the C library"
    exit 1
fi
