# Completion of mirelctl for bash.

# The second words of the command $1, or nothing when it has none.
_mirelctl_words() {
    case $1 in
    label) printf 'list create rename merge delete add remove' ;;
    folder) printf 'list create update delete assign unassign' ;;
    rule) printf 'list create preview run enable disable delete' ;;
    highlight) printf 'add list delete' ;;
    preferences) printf 'get set' ;;
    esac
}

# The options of the command $1.
_mirelctl_options() {
    case $1 in
    sync) printf -- '--full' ;;
    history) printf -- '--limit' ;;
    connect) printf -- '--client-id --client-secret-stdin --redirect-uri' ;;
    purge) printf -- '--yes' ;;
    list) printf -- '--filter --sort --limit --offset' ;;
    show) printf -- '--presentation' ;;
    delete) printf -- '--keep-on-x' ;;
    search) printf -- '--filter --sort --limit --offset --ids --why' ;;
    count) printf -- '--filter' ;;
    'label create' | 'label rename') printf -- '--color' ;;
    'label merge') printf -- '--into' ;;
    'folder create') printf -- '--description --parent' ;;
    'folder update') printf -- '--name --description --no-description --parent --no-parent' ;;
    'rule create') printf -- '--query --label --folder --disabled' ;;
    'highlight add') printf -- '--context --start --end --color' ;;
    esac
}

# The command among the words before the cursor, as far as it is there.
_mirelctl_command() {
    local position command=
    for ((position = 1; position < COMP_CWORD; ++position)); do
        [[ ${COMP_WORDS[position - 1]} == --data-dir || ${COMP_WORDS[position]} == -* ]] && continue
        if [[ -z $command && " $1 " == *" ${COMP_WORDS[position]} "* ]]; then
            command=${COMP_WORDS[position]}
        elif [[ -n $command && " $(_mirelctl_words "$command") " == *" ${COMP_WORDS[position]} "* ]]; then
            command+=" ${COMP_WORDS[position]}"
        else
            continue
        fi
        [[ -z $(_mirelctl_words "$command") ]] && break
    done
    printf '%s' "$command"
}

_mirelctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} candidates command
    local commands='status sync history list show open thread metrics delete search count label folder rule highlight authors preferences connect disconnect purge'
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
    --redirect-uri) candidates='mirel://oauth/x' ;;
    --client-id | --limit | --offset | --help | --version | --color | --into | --name | --description | --parent) candidates= ;;
    --query | --label | --folder | --context | --start | --end) candidates= ;;
    *)
        command=$(_mirelctl_command "$commands")
        candidates="--data-dir --json --demo --help --version ${commands}"
        [[ -n $command ]] && candidates="--data-dir --json --demo --help --version $(_mirelctl_words "$command")"
        candidates+=" $(_mirelctl_options "$command")"
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$candidates" -- "$current")
}

complete -F _mirelctl mirelctl
