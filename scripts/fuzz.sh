#!/usr/bin/env bash
# Installs what is missing, builds the fuzz targets with libFuzzer and the sanitizers, and runs each for a while.
# What it learns stays in build/fuzz/corpus/; an input that fails goes to artifacts/.
#
#     scripts/fuzz.sh [--seconds N] [NAME]...
#
# --seconds N   how long each target runs (60)
# NAME          only these targets, for example record-fuzzer

source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

seconds=60
targets=()

read_arguments() {
    while (($# > 0)); do
        case $1 in
        --seconds)
            require_value "$1" $#
            require_number "$1" "$2"
            seconds=$2
            shift 2
            ;;
        -*) other_argument "$1" ;;
        *)
            targets+=("$1")
            shift
            ;;
        esac
    done
}

# Runs the fuzz target $1.
fuzz() {
    local corpus=$root/build/fuzz/corpus/$1
    mkdir -p -- "$corpus" "$root/artifacts"
    say "Fuzzing $1 for $seconds seconds"
    "$root/build/fuzz/bin/$1" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 \
        -artifact_prefix="$root/artifacts/$1-" "$corpus" "$root/tests/fuzz/seeds/${1%-fuzzer}"
}

main() {
    read_arguments "$@"
    install_packages
    build fuzz "${targets[@]-fuzzers}"
    local target failed=()
    if ((${#targets[@]} == 0)); then
        for target in "$root"/build/fuzz/bin/*-fuzzer; do
            targets+=("$(basename -- "$target")")
        done
    fi
    for target in "${targets[@]}"; do
        fuzz "$target" || failed+=("$target")
    done
    ((${#failed[@]} == 0)) ||
        fail "These found something: ${failed[*]}. The inputs are in artifacts/; give one to the target to see it again."
}

main "$@"
