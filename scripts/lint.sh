#!/usr/bin/env bash
# Checks the style of the sources: clang-format, qmllint, shellcheck and mandoc. Exit status 1 when one has
# something to say.
#
#     scripts/lint.sh [--fix] [--tidy]
#
# --fix    lets clang-format correct the files instead of complaining
# --tidy   also runs clang-tidy over all the C++ code, which takes minutes

source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

qmllint=/usr/lib/qt6/bin/qmllint
is_fixing=false
is_tidying=false
failed=()

read_arguments() {
    local argument
    for argument in "$@"; do
        case $argument in
        --fix) is_fixing=true ;;
        --tidy) is_tidying=true ;;
        *) other_argument "$argument" ;;
        esac
    done
}

require_tool() {
    command -v "$1" >/dev/null || fail "$1 is not installed. Run scripts/install-packages.sh."
}

# Runs the check that the arguments after the first make, and notes its name $1 when it fails.
check() {
    local name=$1
    shift
    say "$name"
    "$@" || failed+=("$name")
}

# Runs a command on all files that match the patterns before "--"; does nothing when there are none.
on_files() {
    local patterns=() files
    while [[ $1 != -- ]]; do
        patterns+=("$1")
        shift
    done
    shift
    mapfile -t files < <(project_files "${patterns[@]}")
    ((${#files[@]} == 0)) || "$@" "${files[@]}"
}

check_format() {
    require_tool clang-format
    if $is_fixing; then
        on_files '*.cpp' '*.h' -- clang-format -i
    else
        on_files '*.cpp' '*.h' -- clang-format --dry-run -Werror
    fi
}

# The QML modules that C++ defines are known once a build has generated their descriptions.
check_qml() {
    local preset files imports=()
    mapfile -t files < <(project_files '*.qml')
    ((${#files[@]} > 0)) || return 0
    require_tool "$qmllint"
    for preset in dev release asan; do
        [[ ! -d build/$preset/qml ]] || imports+=(-I "build/$preset/qml")
    done
    if ((${#imports[@]} == 0)); then
        say "qmllint is left out until there is a build: cmake --preset dev && cmake --build --preset dev"
        return 0
    fi
    "$qmllint" "${imports[@]}" "${files[@]}"
}

check_shell() {
    require_tool shellcheck
    on_files '*.sh' '*.bash' .ci/run -- shellcheck
}

check_manual() {
    require_tool mandoc
    on_files '*.1' -- mandoc -T lint -W style
}

# clang cannot read the precompiled headers of GCC. So it gets the commands of the dev build without them,
# which also shows whether every file includes what it uses.
write_tidy_commands() {
    mkdir -p build/tidy
    sed -E -e 's/ -include [^ ]*cmake_pch\.hxx//' -e 's/ -(fpch-preprocess|Winvalid-pch)//g' \
        build/dev/compile_commands.json >build/tidy/compile_commands.json
}

# The files of the project that the dev build compiles.
tidy_files() {
    project_files '*.cpp' | while IFS= read -r file; do
        ! grep -qF "\"file\": \"$root/$file\"" build/tidy/compile_commands.json || printf '%s\0' "$file"
    done
}

check_tidy() {
    require_tool clang-tidy
    build dev
    write_tidy_commands
    tidy_files | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/tidy --quiet 2>&1 |
        sed '/^[0-9]* warnings* generated\.$/d'
}

main() {
    read_arguments "$@"
    cd -- "$root"
    check clang-format check_format
    check qmllint check_qml
    check shellcheck check_shell
    check mandoc check_manual
    ! $is_tidying || check clang-tidy check_tidy
    ((${#failed[@]} == 0)) ||
        fail "Not clean: ${failed[*]}. Correct what stands above; scripts/lint.sh --fix does it for clang-format."
}

main "$@"
