#!/usr/bin/env bash
# Counts the tests of the JUnit files that ctest writes, over all files together, in one line:
# "N passed, N failed", followed by ", N skipped" when there are such. A test that could not be started has
# failed. Exit status 1 when a test failed or there is none.
#
#     scripts/count-tests.sh FILE...

source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

# One word for each test: passed, failed or skipped. ctest escapes ">" everywhere but at the end of a tag.
outcomes() {
    awk -v RS='>' '
        /<testcase / {
            status = match($0, / status="[a-z]*"/) ? substr($0, RSTART + 9, RLENGTH - 10) : ""
            if (status == "run") print "passed"
            else if (status == "disabled") print "skipped"
            else if (status != "notrun") print "failed"
            waiting = status == "notrun"
        }
        waiting && /<skipped / { print /message="SKIP_/ ? "skipped" : "failed"; waiting = 0 }
        waiting && /<\/testcase/ { print "failed"; waiting = 0 }
    ' "$@"
}

main() {
    if [[ ${1-} == --help ]]; then
        print_help
        return
    fi
    (($# > 0)) || fail "Give at least one JUnit file. See $0 --help."
    local file
    for file in "$@"; do
        [[ -r $file ]] || fail "There is no test report $file: ctest did not get as far as writing it." \
            "See its messages above."
    done
    local passed=0 failed=0 skipped=0 outcome
    while IFS= read -r outcome; do
        printf -v "$outcome" '%d' $((${!outcome} + 1))
    done < <(outcomes "$@")
    local line="$passed passed, $failed failed"
    ((skipped == 0)) || line+=", $skipped skipped"
    printf '%s\n' "$line"
    ((failed == 0 && passed > 0))
}

main "$@"
