#!/usr/bin/env bash
# Completes command lines of kvt in bash, and loads the completion for zsh if that is there.
# Usage: completions_test.sh KVT ROOT
set -euo pipefail
kvt=$(realpath "$1")
root=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
export PATH=${kvt%/*}:$PATH
touch job.kvt 'a job.kvt'
mkdir messages
# shellcheck source=/dev/null
. "$root/completions/kvt.bash"
failures=0

# completes EXPECTED WORD...: what is offered for the last word, with blanks between, sorted.
completes() {
    local expected=$1 actual
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _kvt 2>/dev/null || true
    actual=$(printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort | paste -sd ' ')
    if [[ $actual != "$expected" ]]; then
        printf 'FAILED: %s\n--- expected\n%s\n--- actual\n%s\n' "$*" "$expected" "$actual"
        failures=$((failures + 1))
    fi
}

commands=$(kvt --help | sed -nE '/^Subcommands:/,/^$/ s/^  ([a-z-]+)  .*/\1/p')
completes "$(LC_ALL=C sort <<<"$commands" | paste -sd ' ')" kvt ''
completes "from-json" kvt fr
completes "--help --version" kvt --
completes "check" kvt c
completes "dot pdf png svg" kvt graph -T ''
completes "svg" kvt graph --format s
completes "json text" kvt check --format ''
completes "json" kvt check --format = j
completes "json text" kvt check --format =
completes "dec hex" kvt json --guid ''
completes "unknown-block unknown-key unknown-kind" kvt check --only unk
completes "nul,longer-key nul,longer-kind" kvt check --ignore nul,longer
completes "unknown-key,unknown-block unknown-key,unknown-kind" kvt check --ignore unknown-key,unknown-
completes "JOB_DATA JOB_ERROR JOB_INFO_REPLY JOB_INFO_REQUEST" kvt describe JOB
completes "END_JOB" kvt gen --seed 1 END
completes "$(kvt kinds | awk 'NR > 1 && $3 != "-" { print $2 }' | LC_ALL=C sort | paste -sd ' ')" kvt gen ''
completes "" kvt gen END_JOB ''
completes "" kvt show ''
completes "" kvt find ''
completes "hex" kvt find --guid h
completes "describe diff" kvt help d
completes "" kvt help diff ''
completes "job.kvt" kvt show job_id j
completes "a job.kvt job.kvt messages" kvt check ''
completes "job.kvt" kvt check --only nul j
completes "job.kvt" kvt diff job.kvt j
completes "" kvt diff job.kvt job.kvt ''
completes "messages" kvt split -o ''
completes "job.kvt" kvt graph -o j
completes "" kvt check -j ''
completes "" kvt kinds ''

# Every option of a command's help is offered, and no other.
for command in $commands; do
    options=$(kvt "$command" --help | sed -nE '/^Options:/,/^$/ s/^  (-[^ :]*).*/\1/p' | tr , '\n' |
        LC_ALL=C sort)
    completes "$(grep -e '^--' <<<"$options" | paste -sd ' ')" kvt "$command" --
    for option in $options; do
        [[ -n $(COMP_WORDS=(kvt "$command" "$option"); COMP_CWORD=2; _kvt 2>/dev/null || true; printf '%s\n' "${COMPREPLY[@]}" |
            grep -Fx -e "$option") ]] || {
            echo "FAILED: bash offers $option of kvt $command"
            failures=$((failures + 1))
        }
        # In zsh: within the lines from the command's name to the next one.
        awk -v command="$command" '$1 == command ")" { at = 1 } at { print } at && /;;/ { exit }
            /^    (help|jobs)=/ { print }' "$root/completions/_kvt" |
            grep -qE -e "(^|[^-a-z])$option([^-a-z]|\$)" || {
            echo "FAILED: zsh offers $option of kvt $command"
            failures=$((failures + 1))
        }
    done
done

if command -v zsh >/dev/null; then
    zsh -n "$root/completions/_kvt" || failures=$((failures + 1))
    loaded=$(HOME=$work zsh -f -c "fpath=('$root/completions' \$fpath); autoload -Uz compinit
        compinit -u -d '$work/dump'; print -r -- \$_comps[kvt]; autoload +X _kvt && print loaded" 2>&1)
    if [[ $loaded != $'_kvt\nloaded' ]]; then
        printf 'FAILED: zsh loads the completion\n%s\n' "$loaded"
        failures=$((failures + 1))
    fi
else
    echo "zsh is not there: its completion was not loaded."
fi
((failures == 0)) || exit 1
echo "Completions are right."
