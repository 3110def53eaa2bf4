#!/usr/bin/env bash
# Installs what is missing, builds the benchmarks for release and runs all of them, one after the other. A
# machine that does nothing else gives the steadiest numbers.
#
#     scripts/bench.sh [FILTER]
#
# FILTER   only the benchmarks whose names match this regular expression

source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

describe_machine() {
    local processor
    processor=$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1)
    printf '%s, %s processors, %s MB of memory\n' "${processor:-unknown processor}" "$(nproc)" \
        "$(awk '/^MemTotal:/ { print int($2 / 1024) }' /proc/meminfo)"
}

main() {
    if [[ ${1-} == --help ]]; then
        print_help
        return
    fi
    local filter=${1:-.} benchmark failed=()
    install_packages
    build release
    local benchmarks=("$root"/build/release/bin/*-benchmark)
    [[ -x ${benchmarks[0]} ]] ||
        fail "The release build has no benchmarks. Configure it with cmake --preset release -DMIREL_BENCHMARKS=ON."
    describe_machine
    for benchmark in "${benchmarks[@]}"; do
        printf '\n%s\n' "$(basename -- "$benchmark")"
        "$benchmark" --benchmark_filter="$filter" 2>&1 || failed+=("$(basename -- "$benchmark")")
    done
    ((${#failed[@]} == 0)) || fail "These benchmarks failed: ${failed[*]}. Their messages stand above."
}

main "$@"
