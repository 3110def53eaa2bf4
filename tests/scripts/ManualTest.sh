#!/usr/bin/env bash
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"

test_is_free_of_mistakes_and_doubtful_style() {
    make_sandbox
    run_command mandoc -T lint -W style "$project/mirelctl/mirelctl.1"
    expect_equal "$output" ''
    expect_equal "$status" 0
}

test_explains_every_option_that_is_completed() {
    make_sandbox
    local option options manual
    # Printers strike letters twice to make them bold.
    manual=$(mandoc -T ascii "$project/mirelctl/mirelctl.1" | sed 's/.\x08//g')
    mapfile -t options < <(grep -oE -- '--[a-z]+[a-z-]*' "$project/mirelctl/completions/mirelctl.bash" | sort -u)
    expect_equal "${#options[@]}" 32
    for option in "${options[@]}"; do
        expect_contains "$manual" "$option"
    done
}

test_explains_every_command() {
    source "$project/mirelctl/completions/mirelctl.bash"
    local group word manual
    manual=$(mandoc -T ascii "$project/mirelctl/mirelctl.1" | sed 's/.\x08//g')
    for word in status sync history list show open thread metrics delete authors search count connect disconnect purge; do
        expect_contains "$manual" $'\n     '"$word"
    done
    for group in label folder rule highlight preferences; do
        for word in $(_mirelctl_words "$group"); do
            expect_contains "$manual" $'\n     '"$group $word "
        done
    done
}

run_test "$@"
