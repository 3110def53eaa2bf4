#!/usr/bin/env bash
# Installs what is missing, builds Mirel, checks the style and runs every test, in the release build and in
# the one with sanitizers. The last line counts the tests over both builds. Exit status 1 when any failed.
#
#     scripts/test.sh [--preset NAME]... [--quick]
#
# --preset NAME   only this build: release, asan or dev; may be repeated
# --quick         without the tests labelled "slow"

source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

presets=()
selection=()

read_arguments() {
    while (($# > 0)); do
        case $1 in
        --preset)
            require_value "$1" $#
            presets+=("$2")
            shift 2
            ;;
        --quick)
            selection=(--label-exclude '^slow$')
            shift
            ;;
        *) other_argument "$1" ;;
        esac
    done
    ((${#presets[@]} > 0)) || presets=(release asan)
}

report_of() {
    printf '%s\n' "$root/build/$1/tests.xml"
}

# Runs the tests of the preset $1. Succeeds when all passed.
run_tests() {
    say "Running the tests of the preset '$1'; the report goes to build/$1/tests.xml"
    rm -f -- "$(report_of "$1")"
    (cd -- "$root" &&
        ctest --preset "$1" --parallel 2 --output-junit "$(report_of "$1")" "${selection[@]}") >&2
}

main() {
    read_arguments "$@"
    install_packages
    local preset reports=() everything_passed=true
    for preset in "${presets[@]}"; do
        build "$preset"
    done
    if ! "$root/scripts/lint.sh"; then
        say "The style check failed, so this run counts as failed; the tests still run. See the messages above."
        everything_passed=false
    fi
    for preset in "${presets[@]}"; do
        run_tests "$preset" || everything_passed=false
        reports+=("$(report_of "$preset")")
    done
    "$root/scripts/count-tests.sh" "${reports[@]}" || everything_passed=false
    $everything_passed
}

main "$@"
