#!/usr/bin/env bash
# Installs the build into a scratch folder, moves the installed copy, and builds and runs the
# examples with it, in each of the ways in which a program can be built with the project.
#
#   install_test.sh CMAKE SOURCE BUILD CC CXX
set -euo pipefail
export LC_ALL=C
cmake=$1
source=$2
build=$3
export CC=$4 CXX=$5
here=$source/tests/install
examples=$source/examples/embedding
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
unset DESTDIR PKG_CONFIG_LIBDIR PKG_CONFIG_SYSROOT_DIR CFLAGS CXXFLAGS LDFLAGS

fail() {
    echo "install_test: $*" >&2
    exit 1
}

quietly() {
    "$@" >"$scratch/log" 2>&1 || {
        cat "$scratch/log" >&2
        fail "failed: $*"
    }
}

# Runs all examples that a folder holds.
run_examples() {
    local program
    for program in "$here"/expected/*; do
        "$here/run_example.sh" "$1/${program##*/}"
    done
    echo "$2: all examples run"
}

needs() {
    readelf -d "$1" | grep NEEDED
}

no_cpp_runtime() {
    needs "$1" | grep -E 'libstdc\+\+|libc\+\+' && fail "$1 needs a C++ runtime"
    true
}

# --- Each component by itself, and all -------------------------------------------------------------

for component in runtime development tool; do
    quietly "$cmake" --install "$build" --prefix "$scratch/$component" --component "$component"
done
quietly "$cmake" --install "$build" --prefix "$scratch/first"

files_of() {
    (cd "$scratch/$1" && find . ! -type d | sed -E 's|/lib/[^/]+-linux-[^/]+/|/lib/|; s|/lib64/|/lib/|' | sort)
}

# manual_pages SECTION...: what the build has made of docs/man, where there is pandoc.
manual_pages() {
    local section
    for section in "$@"; do
        [[ ! -d $build/man ]] || (cd "$build/man" && find "man$section" -type f | sed 's|^|./share/man/|')
    done
}

# expect_files COMPONENT: compares with the names that are read.
expect_files() {
    diff <(files_of "$1" | sed '/kvt_strTargets-/d') <(sort) || fail "the component $1 is another"
}
expect_files runtime <<END
./lib/libkvt_check.so.0
./lib/libkvt_check.so.0.1.0
./lib/libkvt_str.so.0
./lib/libkvt_str.so.0.1.0
END
expect_files tool <<END
./bin/kvt
./share/bash-completion/completions/kvt
./share/vim/vimfiles/ftdetect/kvt.vim
./share/vim/vimfiles/ftplugin/kvt.vim
./share/vim/vimfiles/syntax/kvt.vim
./share/zsh/site-functions/_kvt
$(manual_pages 1 5)
END
expect_files development <<END
$(cd "$source" && find include -name '*.h' | sed 's|^|./|')
./lib/cmake/kvt_str/kvt_strConfig.cmake
./lib/cmake/kvt_str/kvt_strConfigVersion.cmake
./lib/cmake/kvt_str/kvt_strTargets.cmake
./lib/libkvt_check.a
./lib/libkvt_check.so
./lib/libkvt_message_layer.a
./lib/libkvt_str.a
./lib/libkvt_str.so
./lib/pkgconfig/kvt_check.pc
./lib/pkgconfig/kvt_message_layer.pc
./lib/pkgconfig/kvt_str.pc
$(manual_pages 3)
END
diff <(files_of first) <({ files_of runtime; files_of development; files_of tool; } | sort) ||
    fail "the components are not the whole"

# Nothing in the installed copy may name the place that it was installed to.
mv "$scratch/first" "$scratch/moved"
prefix=$scratch/moved
"$prefix/bin/kvt" --version >/dev/null || fail "the installed command does not run"
if grep -rlF -e "$scratch/first" -e "$source" -e "$build" "$prefix"; then
    fail "these files name a folder of the build"
fi

# Each header stands by itself, in both languages.
for header in $(cd "$prefix/include" && find kvt -name '*.h'); do
    printf '#include <%s>\nint file_is_not_empty;\n' "$header" >"$scratch/header.c"
    "$CC" -std=c99 -Wall -Wextra -pedantic -Werror -I "$prefix/include" -fsyntax-only \
        "$scratch/header.c"
    "$CXX" -std=c++11 -Wall -Wextra -Werror -I "$prefix/include" -fsyntax-only \
        -x c++ "$scratch/header.c"
done

# --- By CMake --------------------------------------------------------------------------------------

build_by_cmake() {
    local name=$1
    shift
    quietly "$cmake" -G "Unix Makefiles" -B "$scratch/$name" -D CMAKE_BUILD_TYPE=Debug "$@"
    quietly "$cmake" --build "$scratch/$name" --parallel 2
}

for shared in OFF ON; do
    name=find_package_shared_$shared
    build_by_cmake "$name" -S "$examples" -D "CMAKE_PREFIX_PATH=$prefix" \
        -D "KVT_EXAMPLES_SHARED=$shared"
    run_examples "$scratch/$name" "find_package, shared libraries $shared"
    for program in embed_in_c refuse_text own_message_layer; do
        no_cpp_runtime "$scratch/$name/$program"
    done
    found=$(needs "$scratch/$name/refuse_text" | grep -c libkvt || true)
    [[ $shared:$found == OFF:0 || $shared:$found == ON:2 ]] ||
        fail "$name links $found shared libraries of the project"
done

# Walked tables build in a quarter of the time.
build_by_cmake subproject -S "$here/subproject" -D "KVT_SOURCE=$source" -D KVT_UNROLL=OFF
run_examples "$scratch/subproject/examples" "add_subdirectory"

# --- By pkg-config ---------------------------------------------------------------------------------

if ! command -v pkg-config >/dev/null; then
    echo "pkg-config is missing: not tried"
    exit 0
fi
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name kvt_str.pc)")
export PKG_CONFIG_PATH
libraries=$(dirname "$PKG_CONFIG_PATH")
mkdir "$scratch/pc" "$scratch/pc_static"
for file in "$examples"/*.c "$examples"/*.cpp; do
    program=$(basename "${file%.*}")
    packages="kvt_check kvt_str kvt_message_layer"
    [[ $program != own_message_layer ]] || packages=kvt_str
    compile=("$CC" -std=c99)
    [[ $file != *.cpp ]] || compile=("$CXX" -std=c++20)
    # shellcheck disable=SC2046,SC2086 # the options and the packages are words
    {
        "${compile[@]}" $(pkg-config --cflags $packages) "$file" -o "$scratch/pc/$program" \
            $(pkg-config --libs $packages) -Wl,-rpath,"$libraries"
        "${compile[@]}" $(pkg-config --cflags $packages) "$file" -o "$scratch/pc_static/$program" \
            -Wl,-Bstatic $(pkg-config --static --libs $packages) -Wl,-Bdynamic
    }
    [[ $file == *.cpp ]] || { no_cpp_runtime "$scratch/pc/$program"; no_cpp_runtime "$scratch/pc_static/$program"; }
done
run_examples "$scratch/pc" "pkg-config, shared libraries"
run_examples "$scratch/pc_static" "pkg-config, static libraries"
! needs "$scratch/pc_static/refuse_text" | grep libkvt || fail "a shared library was linked statically"
readelf --version-info "$scratch/pc/embed_in_c" | grep KVT_STR_0.1 >/dev/null ||
    fail "a program does not say which version of the library it needs"
