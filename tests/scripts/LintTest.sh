#!/usr/bin/env bash
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"

make_project() {
    make_sandbox
    cp -- "$project/.clang-format" "$project/.shellcheckrc" .
    mkdir code build
    printf 'int one()\n{\n    return 1;\n}\n' >code/One.cpp
    # What is built is nobody's style.
    printf 'int   two( );\n' >build/Two.cpp
}

test_is_silent_about_clean_sources() {
    make_project
    run_command scripts/lint.sh
    expect_equal "$status" 0
}

test_names_the_check_and_the_file_that_are_not_clean() {
    make_project
    printf 'int   one( );\n' >code/One.cpp
    printf '#!/bin/bash\ncd $1\n' >code/tool.sh
    run_command scripts/lint.sh
    expect_equal "$status" 1
    expect_contains "$errors" 'code/One.cpp:1'
    expect_contains "$output" 'code/tool.sh line 2'
    expect_contains "$errors" 'Not clean: clang-format shellcheck.'
}

test_checks_only_what_git_tracks() {
    make_project
    git init --quiet .
    git add code
    printf 'int   two( );\n' >code/Two.cpp
    run_command scripts/lint.sh
    expect_equal "$status" 0
    git add code
    run_command scripts/lint.sh
    expect_equal "$status" 1
}

test_corrects_the_format_on_request() {
    make_project
    printf 'int   one( );\n' >code/One.cpp
    run_command scripts/lint.sh --fix
    expect_equal "$status" 0
    expect_equal "$(<code/One.cpp)" 'int one();'
}

run_test "$@"
