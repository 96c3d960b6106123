#!/usr/bin/env bash
# Opens texts in vim and asks how their words are shown. Does nothing without a vim that knows syntax.
# Usage: vim_test.sh KVT ROOT
set -euo pipefail
kvt=$(realpath "$1")
root=$(realpath "$2")
if ! command -v vim >/dev/null || ! vim --version | grep '+syntax' >/dev/null; then
    echo "vim is not there: its files were not tried."
    exit 0
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
failures=0

# in_vim FILE COMMAND...: opens the file with the files of the project, and runs commands.
in_vim() {
    local file=$1 words=() command
    shift
    for command in "$@"; do words+=(-c "$command"); done
    HOME=$work vim -es -u NONE -i NONE -n --cmd 'set nocompatible fileformats=unix' \
        --cmd "set runtimepath=$root/editors/vim,\$VIMRUNTIME" \
        --cmd 'filetype plugin indent on' --cmd 'syntax on' "$file" "${words[@]}" -c 'qall!' </dev/null
}

# same WHAT EXPECTED ACTUAL
same() {
    if [[ $2 != "$3" ]]; then
        printf 'FAILED: %s\n--- expected\n%s\n--- actual\n%s\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    fi
}

printf '%s\n' 'msg {' '  type: JOB_ERROR' '  job_error {' '    type: 4' '    error: 12 x' \
    '    job_id : 5' '    description: "a b"' '    uid: -1.5e3' $'    tree_id: 3\r' $'    flags {\r' \
    '  }' '  type: NO_KIND' '  job_id:5' '}' 'msgs {' >job.kvt
# LINE COLUMN GROUP, and whether it is shown as an error.
expected='1 1 kvtMessage
1 5 kvtBrace
2 3 kvtType
2 7 kvtColon
2 9 kvtKind
2 17 kvtKind
3 3 kvtBlock
3 13 kvtBrace
4 5 kvtKey
4 11 kvtNumber
5 5 kvtKey
5 12 kvtNumber
5 15 kvtAfterNumber Error
6 11 kvtBlankBeforeColon Error
6 12 kvtBlankBeforeColon Error
7 5 kvtKey
7 18 kvtText
7 20 kvtText
7 22 kvtText
8 10 kvtNumber
8 15 kvtNumber
9 14 kvtNumber
9 15 kvtCarriageReturn Error
10 12 kvtCarriageReturn Error
11 3 kvtBrace
12 9
13 10 kvtNumber
14 1 kvtBrace
15 1 kvtBlock'
asked=()
while read -r line column _; do
    asked+=("call Ask($line, $column)")
done <<<"$expected"
{
    cat <<'VIM'
let g:shown = []
function Ask(line, column)
  let id = synID(a:line, a:column, 1)
  let words = [a:line, a:column, synIDattr(id, 'name')]
  call add(words, synIDattr(synIDtrans(id), 'name') ==# 'Error' ? 'Error' : '')
  call add(g:shown, trim(join(words)))
endfunction
VIM
    printf '%s\n' "${asked[@]}" "call writefile(g:shown, 'shown')"
} >ask.vim
in_vim job.kvt 'source ask.vim' \
    "call writefile([&filetype, &commentstring, &shiftwidth, &expandtab], 'options')" \
    "call feedkeys(\"ggO{\<CR>x\<Esc>\", 'x')" "call writefile(getline(1, 2), 'indented')" || true
same "how words are shown" "$expected" "$(cat shown)"
same "a file's type and options" $'kvt\n\n2\n1' "$(cat options)"
same "indentation after a brace" $'{\n  x' "$(cat indented)"

# All kinds are known, and examples show no errors.
kinds=$("$kvt" kinds | awk 'NR > 1 && $3 != "-" { print $2 }')
while read -r kind; do printf 'msg {\n  type: %s\n}\n' "$kind"; done <<<"$kinds" >kinds.kvt
cat >errors.vim <<'VIM'
let g:found = []
for g:line in range(1, line('$'))
  for g:column in range(1, max([1, col([g:line, '$']) - 1]))
    let g:group = synIDattr(synIDtrans(synID(g:line, g:column, 1)), 'name')
    if g:group ==# 'Error' || g:group ==# g:wanted && synIDattr(synID(g:line, g:column - 1, 1), 'name') !=# synIDattr(synID(g:line, g:column, 1), 'name')
      call add(g:found, g:group ==# 'Error' ? g:line . ':' . g:column : matchstr(getline(g:line), '\w\+', g:column - 1))
    endif
  endfor
endfor
call writefile(g:found, 'found')
VIM
in_vim kinds.kvt 'let g:wanted = "Type"' 'source errors.vim' || true
same "all kinds" "$kinds" "$(cat found)"
sed -n 1,1500p "$root"/examples/*.kvt >examples.kvt
in_vim examples.kvt 'let g:wanted = "none"' 'source errors.vim' || true
same "no errors in examples" "" "$(cat found)"

((failures == 0)) || exit 1
echo "vim shows texts as expected."
