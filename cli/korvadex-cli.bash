# Completion of korvadex-cli for bash: its commands, options, packages and categories.

# _korvadex_cli_offer WORD...: those that begin with what is typed, in whatever case.
_korvadex_cli_offer() {
    local word
    for word in "$@"; do
        [[ ${word,,} == "${typed,,}"* ]] && COMPREPLY+=("$word")
    done
    return 0
}

_korvadex_cli() {
    local typed=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command= options i names
    COMPREPLY=()
    typed=${typed#[\"\']} typed=${typed//\\/}
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        --answer | --category | --staging | --hangar | --msfs) ((++i)) ;;
        -*) ;;
        *) command=${COMP_WORDS[i]} && break ;;
        esac
    done
    case $command in
    list) options='--category --json --names' ;;
    show) options=--json ;;
    check) options=--aliases ;;
    add | import) options=--category ;;
    compress | decompress) options=--all ;;
    unused-gauges) options=--delete ;;
    setup) options='--staging --hangar --msfs' ;;
    esac

    case $previous in
    --answer) _korvadex_cli_offer stop yes no && return ;;
    --staging | --hangar | --msfs) compopt -o default && return ;;
    esac
    if [[ $typed == -* ]]; then
        _korvadex_cli_offer $options --answer --help --version
        return
    fi
    mapfile -t names < <(korvadex-cli list --names 2>/dev/null)
    names=("${names[@]//\\//}")
    if [[ $previous == --category ]]; then
        mapfile -t names < <(printf '%s\n' "${names[@]%%/*}" | sort -u)
        compopt -o filenames
        _korvadex_cli_offer "${names[@]}"
        return
    fi
    case $command in
    '') _korvadex_cli_offer setup list show check add install remove compress decompress move import unused-gauges \
        undo redo history ;;
    show | check | install | remove | compress | decompress | move)
        compopt -o filenames
        _korvadex_cli_offer "${names[@]}"
        [[ -z $typed ]] || _korvadex_cli_offer "${names[@]##*/}"
        [[ $command != move ]] || _korvadex_cli_offer "${names[@]%%/*}"
        ;;
    import)
        mapfile -t names < <(korvadex-cli import 2>/dev/null)
        compopt -o filenames
        _korvadex_cli_offer "${names[@]}"
        ;;
    add) compopt -o default ;;
    esac
}
complete -F _korvadex_cli korvadex-cli
