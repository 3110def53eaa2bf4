#!/usr/bin/env bash
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"

# A project whose build and packing succeed.
make_project() {
    make_sandbox
    mkdir temporary
    export TMPDIR=$sandbox/temporary
    fake bin/dpkg-query <<<'printf installed'
    fake bin/cmake <<<'record "$@"'
    fake bin/cpack <<'PROGRAM'
record "${@:1:2}"
echo 'packed' >"$4/mirel_1.2.3_amd64.deb"
PROGRAM
}

test_builds_and_packs_and_prints_where_the_package_is() {
    make_project
    run_command scripts/package.sh
    expect_equal "$status" 0
    expect_equal "$(calls | sed 's/ --parallel [0-9]*//')" "\
cmake --preset release
cmake --build --preset release --target Mirel mirelctl mirel-icons
cpack --config $sandbox/build/release/CPackConfig.cmake"
    expect_equal "$output" "$sandbox/build/package/mirel_1.2.3_amd64.deb"
    expect_equal "$(<"$output")" 'packed'
    expect_equal "$(ls temporary)" ''
}

test_puts_the_package_into_the_folder_named_over_an_older_one() {
    make_project
    mkdir elsewhere
    echo 'older' >elsewhere/mirel_1.2.3_amd64.deb
    run_command scripts/package.sh --output elsewhere
    expect_equal "$status" 0
    expect_equal "$output" "$sandbox/elsewhere/mirel_1.2.3_amd64.deb"
    expect_equal "$(<"$output")" 'packed'
}

test_fails_and_cleans_up_when_packing_fails() {
    make_project
    fake bin/cpack <<<'exit 1'
    run_command scripts/package.sh
    expect_equal "$status" 1
    expect_equal "$output" ''
    expect_contains "$errors" 'The package could not be made.'
    fake bin/cpack <<<'exit 0'
    run_command scripts/package.sh
    expect_equal "$status" 1
    expect_contains "$errors" 'No package was made.'
    expect_equal "$(ls temporary)" ''
}

test_refuses_arguments_that_make_no_sense_before_it_builds() {
    make_project
    local arguments
    for arguments in '--fast' '--output'; do
        # shellcheck disable=SC2086 # several words
        run_command scripts/package.sh $arguments
        expect_equal "$status" 1
        expect_contains "$errors" 'package.sh: The '
        expect_equal "$(calls)" ''
    done
    touch file
    run_command scripts/package.sh --output file
    expect_contains "$errors" "The folder $sandbox/file cannot be made."
    expect_equal "$(calls)" ''
}

test_prints_its_help() {
    make_project
    run_command scripts/package.sh --help
    expect_equal "$status" 0
    expect_contains "$output" 'scripts/package.sh [--output FOLDER]'
}

run_test "$@"
