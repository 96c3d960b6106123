#!/usr/bin/env bash
# Installs the Debian packages of a folder into a scratch root, tries what they hold, and removes
# them again, which must leave nothing. Usage: packages_test.sh FOLDER
set -euo pipefail
folder=$(realpath "$1")
examples=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../../examples")
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

fail() {
    echo "packages_test: $*" >&2
    exit 1
}

mkdir -p "$root/db/updates" "$root/db/info" "$root/system"
touch "$root/db/status" "$root/db/available"
# What the packages depend on is in the real root; the scratch root has nothing but them.
in_root=(dpkg --admindir="$root/db" --instdir="$root/system" --log=/dev/null --force-depends
    --force-not-root --force-script-chrootless)
export PATH=$PATH:/usr/sbin:/sbin

depends() { dpkg-deb -f "$folder"/"$1"_*.deb Depends; }
[[ $(depends libkvt-str-dev) == *libibverbs-dev* ]] || fail "libkvt-str-dev does not need libibverbs-dev"
[[ $(depends libkvt-str-dev) == *"libkvt-str0 (= "* ]] || fail "libkvt-str-dev takes any libkvt-str0"
[[ $(depends libkvt-str0) == *libc6* ]] || fail "libkvt-str0 does not need the C library"
[[ $(depends libkvt-str0) != *libstdc* ]] || fail "libkvt-str0 needs a C++ runtime"
[[ $(depends kvt) == *libcgraph* ]] || fail "kvt does not need Graphviz"

"${in_root[@]}" --install "$folder"/*.deb >"$root/log" 2>&1 || {
    cat "$root/log" >&2
    fail "cannot install"
}
usr=$root/system/usr
"$usr/bin/kvt" fmt --check "$examples/end_job.kvt" || fail "the installed kvt does not run"
PKG_CONFIG_PATH=$(dirname "$(find "$usr" -name kvt_str.pc)")
export PKG_CONFIG_PATH
libraries=$(dirname "$PKG_CONFIG_PATH")
# shellcheck disable=SC2046 # the options are words
cc -std=c99 $(pkg-config --cflags kvt_str) "$examples/embedding/embed_in_c.c" \
    -o "$root/embed_in_c" $(pkg-config --libs kvt_str kvt_message_layer) -Wl,-rpath,"$libraries"
"$here/run_example.sh" "$root/embed_in_c"

"${in_root[@]}" --purge kvt libkvt-str-dev libkvt-str0 >"$root/log" 2>&1 || {
    cat "$root/log" >&2
    fail "cannot remove"
}
left=$(find "$root/system" ! -type d)
[[ -z $left ]] || fail "not removed: $left"
left=$(find "$root/system" -mindepth 1 -type d)
[[ -z $left ]] || fail "not removed: $left"
echo "The packages can be installed and removed."
