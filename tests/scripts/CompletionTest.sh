#!/usr/bin/env bash
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"
source "$project/mirelctl/completions/mirelctl.bash"

# What bash offers after the words given, of which the last one is being typed.
offered_after() {
    COMP_WORDS=(mirelctl "$@")
    COMP_CWORD=$#
    COMPREPLY=()
    _mirelctl
    printf '%s' "${COMPREPLY[*]}"
}

test_offers_commands_and_options_first() {
    expect_equal "$(offered_after '')" '--data-dir --json --demo --help --version status sync list show'
    expect_equal "$(offered_after 's')" 'status sync show'
    expect_equal "$(offered_after --json l)" 'list'
    expect_equal "$(offered_after --d)" '--data-dir --demo'
}

test_offers_the_options_of_the_command_that_stands_there() {
    expect_equal "$(offered_after sync --f)" '--full'
    expect_equal "$(offered_after list --f)" '--filter'
    expect_equal "$(offered_after status --f)" ''
    expect_equal "$(offered_after show --f)" ''
    expect_equal "$(offered_after --demo list --o)" '--offset'
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
    expect_equal "$(offered_after --data-dir list s)" 'status sync show'
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
    expected=$(printf '%s\n' data-dir demo filter full help json limit offset sort version)
    expect_equal "$(options_in mirelctl.bash --)" "$expected"
    expect_equal "$(options_in _mirelctl --)" "$expected"
    expect_equal "$(options_in mirelctl.fish '-l ')" "$expected"
}

run_test "$@"
