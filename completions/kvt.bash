# Completion of the command kvt for bash. To be sourced, or installed as
# share/bash-completion/completions/kvt. Kinds and findings are those of the kvt that is completed.

# Offers those of some words, one on a line, that begin with the word at the cursor.
_kvt_offer() {
    local word
    COMPREPLY=()
    while IFS= read -r word; do
        [[ -n $word && $word == "$cur"* ]] && COMPREPLY+=("$word")
    done <<<"$1"
}

# Names with commas between them: completes the last one, and leaves out those that stand before.
_kvt_offer_findings() {
    local before='' name
    COMPREPLY=()
    [[ $cur == *,* ]] && before=${cur%,*},
    while read -r name _; do
        [[ -n $name && $before$name == "$cur"* && ,$before != *",$name,"* ]] &&
            COMPREPLY+=("$before$name")
    done <<<"$("$kvt" check --list 2>/dev/null)"
}

_kvt_offer_files() {
    local file
    COMPREPLY=()
    compopt -o filenames 2>/dev/null
    while IFS= read -r file; do
        [[ -n $file ]] && COMPREPLY+=("$file")
    done <<<"$(compgen "$1" -- "$cur")"
}

_kvt() {
    local cur prev kvt=${COMP_WORDS[0]} command='' options='' words=0 i
    local commands=$'check\nfmt\njson\nfrom-json\ndiff\ngraph\nshow\nfind\nstat\nsplit\ndescribe\ngen\nkinds\nhelp'
    cur=${COMP_WORDS[COMP_CWORD]}
    prev=${COMP_WORDS[COMP_CWORD - 1]}
    # The shell takes "--format=json" for three words.
    if [[ $cur == = ]]; then
        cur=''
    elif [[ $prev == = ]] && ((COMP_CWORD >= 2)); then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        -) [[ -n $command ]] && ((++words)) ;;
        # What follows is the option's own value.
        --format | --only | --ignore | --jobs | --guid | --output | --message | --seed | --size | --count | \
            -j | -T | -o | -m | -n)
            [[ ${COMP_WORDS[i + 1]} == = ]] && ((++i))
            ((++i))
            ;;
        -*) ;;
        *) if [[ -z $command ]]; then command=${COMP_WORDS[i]}; else ((++words)); fi ;;
        esac
    done

    if [[ -z $command ]]; then
        if [[ $cur == -* ]]; then
            _kvt_offer $'--help\n--version'
        else
            _kvt_offer "$commands"
        fi
        return
    fi

    case $command:$prev in
    check:--format)
        _kvt_offer $'text\njson'
        return
        ;;
    check:--severity)
        _kvt_offer $'style\nlost\nrefused'
        return
        ;;
    check:--only | check:--ignore | check:--explain)
        _kvt_offer_findings
        return
        ;;
    json:--guid | show:--guid | find:--guid | diff:--guid)
        _kvt_offer $'dec\nhex'
        return
        ;;
    graph:-T | graph:--format)
        _kvt_offer $'dot\nsvg\npng\npdf'
        return
        ;;
    graph:-o | graph:--output)
        _kvt_offer_files -f
        return
        ;;
    split:-o | split:--output)
        _kvt_offer_files -d
        return
        ;;
    check:-j | fmt:-j | json:-j | from-json:-j | show:-j | find:-j | stat:-j | *:--jobs | graph:-m | \
        graph:--message | check:--max | diff:--ignore | gen:-n | gen:--seed | gen:--size | \
        gen:--count)
        COMPREPLY=()
        return
        ;;
    esac

    if [[ $cur == -?* ]]; then
        case $command in
        check)
            options=$'--format\n--quiet\n--strict\n--severity\n--all\n--max\n--summary\n--only\n--ignore\n'
            options+=$'--list\n--explain\n--jobs\n-q\n-j'
            ;;
        fmt) options=$'--in-place\n--check\n--diff\n--lossy\n--verbose\n--jobs\n-i\n-v\n-j' ;;
        json) options=$'--lines\n--plain-numbers\n--guid\n--schema\n--jobs\n-l\n-j' ;;
        from-json) options=$'--jobs\n-j' ;;
        diff) options=$'--brief\n--json\n--ignore\n--guid' ;;
        graph) options=$'--format\n--output\n--message\n--all-nodes\n-T\n-o\n-m' ;;
        show) options=$'--with-paths\n--json\n--guid\n--jobs\n-p\n-j' ;;
        find) options=$'--json\n--guid\n--jobs\n-j' ;;
        describe) options=--json ;;
        stat) options=$'--json\n--jobs\n-j' ;;
        split) options=$'--output\n-o' ;;
        gen) options=$'--seed\n--size\n--count\n-n' ;;
        esac
        _kvt_offer "$options"$'\n--help\n-h'
        return
    fi

    case $command:$words in
    describe:0 | gen:0)
        _kvt_offer "$("$kvt" kinds 2>/dev/null | while read -r _ kind _ record; do
            [[ $record == - || $record == RECORD ]] || echo "$kind"
        done)"
        ;;
    help:0) _kvt_offer "$commands" ;;
    describe:* | gen:* | kinds:* | help:* | show:0 | find:0 | diff:[2-9]*) COMPREPLY=() ;;
    *) _kvt_offer_files -f ;;
    esac
}

complete -F _kvt kvt
