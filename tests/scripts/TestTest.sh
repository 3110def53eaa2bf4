#!/usr/bin/env bash
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"

# A project whose build succeeds and whose tests end as reports/<preset>.xml says.
make_project() {
    make_sandbox
    mkdir reports .ci
    cp -- "$project/.ci/run" .ci/
    report release run
    report asan run
    fake bin/dpkg-query <<<'printf installed'
    fake bin/cmake <<<'record "$@"; mkdir -p build/release build/asan'
    fake bin/ctest <<'PROGRAM'
record "${@:1:4}" "${@:7}"
cp "$sandbox/reports/$2.xml" "$6"
! grep -q 'status="fail"' "$6"
PROGRAM
    fake scripts/lint.sh <<<'record'
}

report() {
    local preset=$1 status
    shift
    for status in "$@"; do
        printf '<testcase name="a" status="%s">\n</testcase>\n' "$status"
    done >"reports/$preset.xml"
}

last_line() {
    tail -n 1 <<<"$output"
}

test_builds_both_presets_then_checks_the_style_then_runs_the_tests() {
    make_project
    run_command scripts/test.sh
    expect_equal "$status" 0
    expect_equal "$(calls | sed 's/ --parallel [0-9]*$//')" "\
cmake --preset release
cmake --build --preset release
cmake --preset asan
cmake --build --preset asan
lint.sh
ctest --preset release
ctest --preset asan"
    expect_equal "$output" '2 passed, 0 failed'
}

test_counts_over_both_presets_and_fails_when_a_test_failed() {
    make_project
    report release run run
    report asan run fail
    run_command scripts/test.sh
    expect_equal "$status" 1
    expect_equal "$(last_line)" '3 passed, 1 failed'
}

test_runs_the_second_preset_also_when_the_first_has_failures() {
    make_project
    report release fail
    run_command scripts/test.sh
    expect_equal "$status" 1
    expect_equal "$(last_line)" '1 passed, 1 failed'
}

test_fails_without_any_test() {
    make_project
    report release
    report asan
    run_command scripts/test.sh
    expect_equal "$status" 1
    expect_equal "$(last_line)" '0 passed, 0 failed'
}

test_fails_but_still_counts_when_the_style_is_not_clean() {
    make_project
    fake scripts/lint.sh <<<'exit 1'
    run_command scripts/test.sh
    expect_equal "$status" 1
    expect_contains "$errors" 'The style check failed'
    expect_equal "$(last_line)" '2 passed, 0 failed'
}

test_never_counts_the_report_of_an_earlier_run() {
    make_project
    run_command scripts/test.sh
    fake bin/ctest <<<'exit 8'
    run_command scripts/test.sh
    expect_equal "$status" 1
    expect_contains "$errors" 'There is no test report'
}

test_says_which_build_failed() {
    make_project
    fake bin/cmake <<<'[[ "$*" != *--build*asan* ]]'
    run_command scripts/test.sh
    expect_equal "$status" 1
    expect_contains "$errors" "The build of the preset 'asan' failed."
}

test_says_which_preset_cannot_be_configured() {
    make_project
    fake bin/cmake <<<'exit 1'
    run_command scripts/test.sh
    expect_equal "$status" 1
    expect_contains "$errors" "The preset 'release' could not be configured."
}

test_runs_only_the_preset_named_and_leaves_out_slow_tests_on_request() {
    make_project
    run_command scripts/test.sh --preset asan --quick
    expect_equal "$status" 0
    expect_equal "$(calls | grep ctest)" 'ctest --preset asan --parallel 2 --label-exclude ^slow$'
    expect_equal "$output" '1 passed, 0 failed'
}

test_refuses_an_unknown_argument() {
    make_project
    run_command scripts/test.sh --fast
    expect_equal "$status" 1
    expect_contains "$errors" "The argument '--fast' is unknown."
    expect_equal "$(calls)" ''
}

test_is_what_continuous_integration_runs() {
    make_project
    cd /
    run_command "$sandbox/.ci/run"
    expect_equal "$status" 0
    expect_equal "$output" '2 passed, 0 failed'
}

run_test "$@"
