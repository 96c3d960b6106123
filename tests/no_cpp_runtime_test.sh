#!/usr/bin/env bash
# Builds the libraries as the standard library's own checks make the most calls, without optimisation
# and with the assertions that some distributions set, and links programs in C with the C compiler:
# no check may need a C++ runtime.
#
#   no_cpp_runtime_test.sh CMAKE SOURCE CC CXX BUILD [OPTION...]
#
# BUILD is the folder to build in; OPTIONs are for CMake, such as -DKVT_UNROLL=ON.
set -euo pipefail
export LC_ALL=C
cmake=$1
source=$2
cc=$3
cxx=$4
build=$5
shift 5
log=$build/log
mkdir -p "$build"

quietly() {
    "$@" >"$log" 2>&1 || {
        cat "$log" >&2
        echo "no_cpp_runtime_test: failed: $*" >&2
        exit 1
    }
}

quietly "$cmake" -S "$source" -B "$build" -G Ninja -DCMAKE_C_COMPILER="$cc" \
    -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 \
    -DCMAKE_CXX_FLAGS=-D_GLIBCXX_ASSERTIONS -DKVT_UNROLL=OFF -DKVT_BUILD_TOOL=OFF \
    -DKVT_BUILD_TESTS=OFF -DKVT_INSTALL=OFF "$@"
quietly "$cmake" --build "$build"

# Links a program with a library, static and shared, and the message layer.
link_and_run() {
    local library
    for library in "$build/lib$2.a" "$build/lib$2.so"; do
        quietly "$cc" -I "$source/include" "$source/tests/$1" -o "$build/program" "$library" \
            "$build/libkvt_message_layer.a" -Wl,-rpath,"$build"
        quietly "$build/program"
        echo "${library##*/}: a C program links and runs"
    done
}

link_and_run c_program.c kvt_str
link_and_run check/c_program_check.c kvt_check
