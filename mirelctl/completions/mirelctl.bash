# Completion of mirelctl for bash.

# The command among the words before the cursor, or nothing.
_mirelctl_command() {
    local position
    for ((position = 1; position < COMP_CWORD; ++position)); do
        case ${COMP_WORDS[position]} in
        status | sync | list | show)
            [[ ${COMP_WORDS[position - 1]} == --data-dir ]] && continue
            printf '%s\n' "${COMP_WORDS[position]}"
            return
            ;;
        esac
    done
}

_mirelctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} candidates
    # bash makes "=" a word of its own.
    if [[ $current == '=' ]]; then
        current=
    elif [[ $previous == '=' ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    case $previous in
    --data-dir)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        return
        ;;
    --filter) candidates='all inbox read favorites archive' ;;
    --sort) candidates='newest oldest author' ;;
    --limit | --offset | --help | --version) candidates= ;;
    *)
        candidates='--data-dir --json --demo --help --version'
        case $(_mirelctl_command) in
        sync) candidates+=' --full' ;;
        list) candidates+=' --filter --sort --limit --offset' ;;
        show | status) ;;
        *) candidates+=' status sync list show' ;;
        esac
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$candidates" -- "$current")
}

complete -F _mirelctl mirelctl
