#!/usr/bin/env bash
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"

# Writes a report, as ctest does, to the file $1 with one test case for each word that follows.
write_report() {
    local file=$1 outcome
    shift
    {
        printf '<?xml version="1.0" encoding="UTF-8"?>\n<testsuite name="(empty)"\n\ttests="%s"\n\t>\n' $#
        for outcome in "$@"; do
            write_case "$outcome"
        done
        printf '</testsuite>\n'
    } >"$file"
}

write_case() {
    case $1 in
    run) element run '' 'an output with &lt;testcase status="fail"&gt; in it' ;;
    fail) element fail '<failure message=""/>' 'wrong' ;;
    disabled) element disabled '' 'Disabled' ;;
    skipped) element notrun '<skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>' '[  SKIPPED ]' ;;
    missing) element notrun '<skipped message="Unable to find executable"/>' 'Unable to find executable: /no' ;;
    esac
}

element() {
    printf '\t<testcase name="thing: Does &quot;it&quot;" classname="thing" time="0.1" status="%s">\n' "$1"
    printf '\t\t%s\n\t\t<system-out>%s\n</system-out>\n\t</testcase>\n' "$2" "$3"
}

# Expects the exit status $1 and the line $2 of counting the files that follow.
expect_count() {
    local expected_status=$1 expected_line=$2
    shift 2
    run_command scripts/count-tests.sh "$@"
    expect_equal "$output" "$expected_line"
    expect_equal "$status" "$expected_status"
}

test_counts_over_all_files() {
    make_sandbox
    write_report one.xml run run run
    write_report two.xml run run
    expect_count 0 '5 passed, 0 failed' one.xml two.xml
}

test_fails_when_one_test_failed() {
    make_sandbox
    write_report one.xml run fail run
    write_report two.xml run
    expect_count 1 '3 passed, 1 failed' one.xml two.xml
}

test_counts_skipped_and_disabled_tests_apart() {
    make_sandbox
    write_report one.xml run skipped disabled
    expect_count 0 '1 passed, 0 failed, 2 skipped' one.xml
}

test_counts_a_test_that_could_not_start_as_failed() {
    make_sandbox
    write_report one.xml run missing skipped
    expect_count 1 '1 passed, 1 failed, 1 skipped' one.xml
}

test_fails_when_there_is_no_test() {
    make_sandbox
    write_report one.xml
    expect_count 1 '0 passed, 0 failed' one.xml
}

test_fails_when_every_test_was_skipped() {
    make_sandbox
    write_report one.xml skipped
    expect_count 1 '0 passed, 0 failed, 1 skipped' one.xml
}

test_counts_what_ctest_itself_writes() {
    make_sandbox
    cat >CTestTestfile.cmake <<'TESTS'
add_test("passes: <a> \"b\"" true)
add_test(fails false)
add_test(missing /no/such/program)
add_test(skips sh -c "exit 77")
set_tests_properties(skips PROPERTIES SKIP_RETURN_CODE 77)
add_test(late sleep 30)
set_tests_properties(late PROPERTIES TIMEOUT 1)
add_test(disabled true)
set_tests_properties(disabled PROPERTIES DISABLED TRUE)
TESTS
    ctest --output-junit "$sandbox/tests.xml" >/dev/null 2>&1 || true
    expect_count 1 '1 passed, 3 failed, 2 skipped' tests.xml
}

test_says_which_file_is_missing() {
    make_sandbox
    run_command scripts/count-tests.sh none.xml
    expect_equal "$status" 1
    expect_equal "$output" ''
    expect_contains "$errors" 'There is no test report none.xml'
}

run_test "$@"
