# What the tests of the scripts share. They source it first, define one function for each test, named
# test_ and a sentence, and end with: run_test "$@"
# shellcheck shell=bash disable=SC2034

set -euo pipefail

project=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd)

# Makes $sandbox, a folder that holds a copy of the scripts and of their list of packages. Its folder bin/ is the
# first in which programs are searched.
make_sandbox() {
    sandbox=$(mktemp --directory --tmpdir mirel-test.XXXXXXXX)
    trap 'rm -rf -- "$sandbox"' EXIT
    mkdir -- "$sandbox/bin" "$sandbox/scripts" "$sandbox/packaging"
    cp -- "$project"/scripts/*.sh "$sandbox/scripts/"
    printf '%s\n' '# tools' 'first' '' 'second   # why' '  third' >"$sandbox/packaging/debian-packages.txt"
    PATH=$sandbox/bin:$PATH
    cd -- "$sandbox"
}

# Puts a program into the sandbox: bash that is read from standard input. $1 is its path below the sandbox. In it
# "$sandbox" is known, and `record` notes the call in the file calls.
fake() {
    mkdir -p -- "$(dirname -- "$sandbox/$1")"
    {
        printf '#!/bin/bash\nsandbox=%q\n' "$sandbox"
        # shellcheck disable=SC2016 # the program expands it
        printf 'record() { printf "%%s\\n" "$(basename "$0")${*:+ $*}" >>"$sandbox/calls"; }\n'
        cat
    } >"$sandbox/$1"
    chmod +x -- "$sandbox/$1"
}

# Leaves only the faked programs and those named to be found.
hide_all_programs_but() {
    local program path
    for program in rm "$@"; do
        path=$(command -v "$program")
        ln -s -- "$path" "$sandbox/bin/$program"
    done
    PATH=$sandbox/bin
}

# Runs a command; afterwards $status, $output and $errors say how it went.
run_command() {
    status=0
    "$@" >"$sandbox/output.txt" 2>"$sandbox/errors.txt" </dev/null || status=$?
    output=$(<"$sandbox/output.txt")
    errors=$(<"$sandbox/errors.txt")
}

# The calls that the faked programs recorded, one a line.
calls() {
    [[ ! -e $sandbox/calls ]] || cat -- "$sandbox/calls"
}

expect_equal() {
    [[ $1 == "$2" ]] && return
    printf 'Line %s: expected\n  %q\nbut got\n  %q\n' "${BASH_LINENO[0]}" "$2" "$1" >&2
    show_command
    return 1
}

expect_contains() {
    [[ $1 == *"$2"* ]] && return
    printf 'Line %s: expected to find\n  %q\nin\n  %q\n' "${BASH_LINENO[0]}" "$2" "$1" >&2
    show_command
    return 1
}

expect_absent() {
    [[ ! -e $1 ]] && return
    printf 'Line %s: %s still exists\n' "${BASH_LINENO[0]}" "$1" >&2
    return 1
}

show_command() {
    [[ -z ${errors-} ]] || printf 'The command said:\n%s\n' "$errors" >&2
}

# Runs the test named, or all of the file.
run_test() {
    local test tests=("$@")
    ((${#tests[@]} > 0)) || mapfile -t tests < <(declare -F | sed -n 's/^declare -f \(test_.*\)/\1/p')
    ((${#tests[@]} > 0)) || return 1
    for test in "${tests[@]}"; do
        printf '%s\n' "$test"
        ("$test")
    done
}
