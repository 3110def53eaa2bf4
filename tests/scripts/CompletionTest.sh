#!/usr/bin/env bash
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"
source "$project/mirelctl/completions/mirelctl.bash"

commands='status sync history list show open thread metrics delete search count label folder rule highlight authors preferences connect disconnect purge'
common='--data-dir --json --demo --help --version'

# What bash offers after the words given, of which the last one is being typed.
offered_after() {
    COMP_WORDS=(mirelctl "$@")
    COMP_CWORD=$#
    COMPREPLY=()
    _mirelctl
    printf '%s' "${COMPREPLY[*]}"
}

test_offers_commands_and_options_first() {
    expect_equal "$(offered_after '')" \
        "--data-dir --json --demo --help --version $commands"
    expect_equal "$(offered_after 's')" 'status sync show search'
    expect_equal "$(offered_after history --l)" '--limit'
    expect_equal "$(offered_after delete --k)" '--keep-on-x'
    expect_equal "$(offered_after thread --)" "$common"
    expect_equal "$(offered_after metrics --)" "$common"
    expect_equal "$(offered_after --json l)" 'list label'
    expect_equal "$(offered_after --d)" '--data-dir --demo'
}

test_offers_the_options_of_the_command_that_stands_there() {
    expect_equal "$(offered_after sync --f)" '--full'
    expect_equal "$(offered_after list --f)" '--filter'
    expect_equal "$(offered_after status --f)" ''
    expect_equal "$(offered_after show --f)" ''
    expect_equal "$(offered_after --demo list --o)" '--offset'
    expect_equal "$(offered_after show --p)" '--presentation'
    expect_equal "$(offered_after search --)" "$common --filter --sort --limit --offset --ids --why"
    expect_equal "$(offered_after search words --w)" '--why'
    expect_equal "$(offered_after count --f)" '--filter'
    expect_equal "$(offered_after open --)" "$common"
    expect_equal "$(offered_after authors --)" "$common"
    expect_equal "$(offered_after connect --c)" '--client-id --client-secret-stdin'
    expect_equal "$(offered_after connect --redirect-uri '')" 'mirel://oauth/x'
    expect_equal "$(offered_after disconnect --y)" ''
    expect_equal "$(offered_after purge --y)" '--yes'
}

test_offers_the_second_words_of_commands() {
    expect_equal "$(offered_after label '')" "$common list create rename merge delete add remove"
    expect_equal "$(offered_after folder '')" "$common list create update delete assign unassign"
    expect_equal "$(offered_after rule '')" "$common list create preview run enable disable delete"
    expect_equal "$(offered_after highlight '')" "$common add list delete"
    expect_equal "$(offered_after preferences '')" "$common get set"
    expect_equal "$(offered_after --json label m)" 'merge'
    expect_equal "$(offered_after label create l)" ''
}

test_offers_the_options_of_commands_of_two_words() {
    expect_equal "$(offered_after label list --)" "$common"
    expect_equal "$(offered_after label create --)" "$common --color"
    expect_equal "$(offered_after label rename work --c)" '--color'
    expect_equal "$(offered_after label merge a b --i)" '--into'
    expect_equal "$(offered_after folder create --)" "$common --description --parent"
    expect_equal "$(offered_after folder update --)" \
        "$common --name --description --no-description --parent --no-parent"
    expect_equal "$(offered_after rule create --)" "$common --query --label --folder --disabled"
    expect_equal "$(offered_after highlight add 1 text --)" "$common --context --start --end --color"
}

test_offers_nothing_for_the_values_of_other_options() {
    local option
    for option in color into name description parent query label folder context start end; do
        expect_equal "$(offered_after rule create "--$option" '')" ''
    done
}

test_offers_no_second_command() {
    expect_equal "$(offered_after sync s)" ''
}

test_offers_the_values_of_options() {
    expect_equal "$(offered_after list --filter '')" 'all inbox read favorites archive'
    expect_equal "$(offered_after list --filter a)" 'all archive'
    expect_equal "$(offered_after list --sort '')" 'newest oldest author'
    expect_equal "$(offered_after list --limit '')" ''
    expect_equal "$(offered_after list --offset '')" ''
}

test_offers_the_values_also_behind_an_equals_sign() {
    expect_equal "$(offered_after list --filter =)" 'all inbox read favorites archive'
    expect_equal "$(offered_after list --sort = o)" 'oldest'
}

test_offers_directories_for_the_library() {
    make_sandbox
    mkdir libraries
    touch library.txt
    expect_equal "$(offered_after --data-dir lib)" 'libraries'
}

test_takes_no_directory_for_a_command() {
    expect_equal "$(offered_after --data-dir list s)" 'status sync show search'
}

test_is_registered_for_mirelctl() {
    expect_equal "$(complete -p mirelctl)" 'complete -F _mirelctl mirelctl'
}

# All options of the file $1, in which $2 stands before their names.
options_in() {
    grep -ohE -- "$2[a-z-]+" "$project/mirelctl/completions/$1" | sed "s/^$2//" | sort -u
}

test_knows_the_same_options_in_every_shell() {
    local expected
    expected=$(printf '%s\n' client-id client-secret-stdin color context data-dir demo description \
        disabled end filter folder full help ids into json keep-on-x label limit name no-description \
        no-parent offset parent presentation query redirect-uri sort start version why yes)
    expect_equal "$(options_in mirelctl.bash --)" "$expected"
    expect_equal "$(options_in _mirelctl --)" "$expected"
    expect_equal "$(options_in mirelctl.fish '-l ')" "$expected"
}

test_knows_the_same_commands_in_every_shell() {
    local command
    for command in $commands; do
        expect_contains "$(<"$project/mirelctl/completions/_mirelctl")" "'$command:"
        expect_contains "$(<"$project/mirelctl/completions/mirelctl.fish")" "-a $command -d"
    done
    for command in 'list create rename merge delete add remove' 'list create update delete assign unassign' \
        'list create preview run enable disable delete' 'add list delete' 'get set'; do
        expect_contains "$(<"$project/mirelctl/completions/_mirelctl")" "_mirelctl_words $command ;;"
        expect_contains "$(<"$project/mirelctl/completions/mirelctl.fish")" " $command'"
    done
}

run_test "$@"
