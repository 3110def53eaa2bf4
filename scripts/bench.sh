#!/usr/bin/env bash
# Installs what is missing, builds Mirel and its benchmarks for release, and measures: mapping, storing, opening
# a library, listing and searching it, and whole syncs. A machine that does nothing else gives the steadiest
# numbers.
#
#     scripts/bench.sh [--full] [--runs N]
#
# --full     libraries of 10,000 and 50,000 posts of real size, which take 11 GB of disk, instead of light ones
#            of 1,000 and 10,000
# --runs N   how often each is repeated (5)
#
# The libraries are kept in $MIREL_BENCHMARK_DIR, or in build/benchmarks/; rm -r it when done.

source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

programs=$root/build/release/bin
directory=${MIREL_BENCHMARK_DIR:-$root/build/benchmarks}
is_full=false
work=$directory/work
runs=5
synced_posts=1000
simulator=

read_arguments() {
    while (($# > 0)); do
        case $1 in
        --full)
            is_full=true
            synced_posts=10000
            shift
            ;;
        --runs)
            require_value "$1" $#
            require_number "$1" "$2"
            (($2 > 0)) || fail "The option --runs takes at least 1. See $0 --help."
            runs=$2
            shift 2
            ;;
        *) other_argument "$1" ;;
        esac
    done
}

describe_machine() {
    local processor
    processor=$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1)
    printf '%s, %s processors, %s MB of memory; load %s\n' "${processor:-unknown processor}" "$(nproc)" \
        "$(awk '/^MemTotal:/ { print int($2 / 1024) }' /proc/meminfo)" "$(cut -d ' ' -f 1-3 /proc/loadavg)"
}

heading() {
    printf '\n%s\n' "$*"
}

# Calculates the awk expression $1.
calculate() {
    awk "BEGIN { printf \"%.2f\", $1 }"
}

# The middle one of the numbers given as lines.
median() {
    sort -n | awk '{ value[NR] = $1 } END { printf "%.2f", (value[int((NR + 1) / 2)] + value[int(NR / 2) + 1]) / 2 }'
}

# The seconds and the MB of each run of a command, one run a line.
measure() {
    local run
    for ((run = 0; run < runs; ++run)); do
        /usr/bin/time --format '%e %M' --output "$work/time.txt" "$@" >"$work/output.txt" ||
            fail "This failed: $*. Its message stands above."
        awk '{ printf "%s %.1f\n", $1, $2 / 1024 }' "$work/time.txt"
    done
}

# Takes what the kernel holds of the library in $1 out of memory.
forget() {
    local file
    for file in "$1"/mirel.sqlite3*; do
        dd of="$file" oflag=nocache conv=notrunc,fdatasync count=0 status=none
    done
}

# The directory of a library of $1 posts, light when $2 is --light. Made when it is missing.
library() {
    local made=$directory/$1${2:+-light}
    [[ -d $made ]] || say "Making the library $made"
    "$programs/library-generator" --posts "$1" ${2:+"$2"} "$made" ||
        fail "The library could not be made. Give a directory with more space in MIREL_BENCHMARK_DIR."
    printf '%s\n' "$made"
}

# The field $1 of every line.
column() {
    awk -v place="$1" '{ print $place }'
}

# Opens the library $1 and lists it, in turn. Prints the steps of the opening that took the middle time, and how
# long mirelctl list takes from start to exit.
measure_library() {
    local run report seconds figures cold
    forget "$1"
    cold=$(runs=1 measure "$programs/mirelctl" --data-dir "$1" list)
    for ((run = 0; run < runs; ++run)); do
        report=$work/open-$run.txt
        "$programs/open-benchmark" "$1" >"$report" || fail "The library $1 could not be opened."
        seconds=$(awk '/^all in all / { print $4 / 1000 }' "$report")
        figures=$(runs=1 measure "$programs/mirelctl" --data-dir "$1" list)
        printf '%s %s %s\n' "$seconds" "$figures" "$report"
    done >"$work/runs.txt"
    cat -- "$(sort -n "$work/runs.txt" | column 4 | sed -n "$(((runs + 1) / 2))p")"
    printf 'mirelctl list: median %s s, of which opening %s s; the first, with nothing in memory, %s s; at most %s MB\n' \
        "$(column 2 <"$work/runs.txt" | median)" "$(column 1 <"$work/runs.txt" | median)" \
        "${cold%% *}" "$(column 3 <"$work/runs.txt" | sort -n | tail -n 1)"
}

# Searches a copy of the library $1, which the measuring changes.
measure_search() {
    local copy=$work/searched
    cp -r --reflink=auto -- "$1" "$copy" || fail "The library $1 could not be copied. Is there space for it?"
    "$programs/search-benchmark" --runs "$runs" "$copy" || fail "search-benchmark failed."
    MIREL_LOCAL_DATA_DIR=$copy QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software \
        "$programs/typing-benchmark" 2>/dev/null || fail "typing-benchmark failed."
    rm -rf -- "$copy"
}

clean_up() {
    [[ -z $simulator ]] || kill "$simulator" 2>/dev/null || true
    rm -rf -- "$work"
}

start_simulator() {
    local attempt
    : >"$work/simulator.txt"
    "$programs/mirel-simulator" --posts "$synced_posts" --seed 1 --port 0 >"$work/simulator.txt" 2>&1 &
    simulator=$!
    for ((attempt = 0; attempt < 100; ++attempt)); do
        MIREL_X_API_URL=$(sed -n 's/^Simulating X at //p' "$work/simulator.txt")
        [[ -z $MIREL_X_API_URL ]] || break
        sleep 0.1
    done
    [[ -n $MIREL_X_API_URL ]] || fail "The simulated X did not start: $(cat -- "$work/simulator.txt")"
    export MIREL_X_API_URL
    export no_proxy=${no_proxy:+$no_proxy,}127.0.0.1,localhost
}

# The seconds of processor time that the simulator has used.
simulator_time() {
    awk -v ticks="$(getconf CLK_TCK)" '{ sub(/^.*\) /, ""); print ($12 + $13) / ticks }' "/proc/$simulator/stat"
}

# Syncs everything into a new library. mirelctl waits while the simulator makes a page.
measure_sync() {
    local run before figures
    start_simulator
    printf '%10s %10s %10s %22s\n' seconds posts/s 'MB at most' 'waiting for simulator'
    for ((run = 0; run < runs; ++run)); do
        rm -rf -- "$work/synced"
        before=$(simulator_time)
        figures=$(runs=1 measure "$programs/mirelctl" --demo --data-dir "$work/synced" sync --full)
        printf '%10s %10s %10s %22s\n' "${figures% *}" "$(calculate "$synced_posts / ${figures% *}")" \
            "${figures#* }" "$(calculate "($(simulator_time) - $before) / ${figures% *}")"
    done
    grep -qF "$synced_posts" "$work/output.txt" || fail "The sync did not bring $synced_posts posts."
    rm -rf -- "$work/synced"
}

# A simulated account with 40 folders, twice; the second time with threads for one post in 20.
measure_full_sync() {
    "$programs/full-sync-benchmark" --posts "$synced_posts" --threads "$((synced_posts / 20))" "$work" ||
        fail "full-sync-benchmark failed."
}

# The window, off screen, while the same account is synced into a new library.
measure_responsiveness() {
    MIREL_LOCAL_DATA_DIR=$work/shown QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software \
        "$programs/responsiveness-benchmark" || fail "responsiveness-benchmark failed."
    rm -rf -- "$work/shown"
}

main() {
    read_arguments "$@"
    install_packages
    build release mirelctl mirel-simulator mapping-benchmark store-benchmark open-benchmark search-benchmark \
        library-generator responsiveness-benchmark typing-benchmark full-sync-benchmark
    trap clean_up EXIT
    mkdir -p -- "$work" || fail "The directory $directory cannot be made. Set MIREL_BENCHMARK_DIR."
    describe_machine
    heading "Mapping"
    "$programs/mapping-benchmark" --benchmark_repetitions="$runs" --benchmark_report_aggregates_only=true 2>/dev/null
    heading "Mapping and storing"
    "$programs/store-benchmark" --rounds "$runs" "$directory" || fail "store-benchmark failed."
    local size posts kind made
    local sizes=('1000 --light' '10000 --light')
    ! $is_full || sizes=(10000 50000)
    for size in "${sizes[@]}"; do
        read -r posts kind <<<"$size"
        made=$(library "$posts" "$kind")
        heading "Opening and listing $posts posts${kind:+, light ones}"
        measure_library "$made"
        heading "Searching $posts posts${kind:+, light ones}"
        measure_search "$made"
    done
    heading "A sync of $synced_posts posts over loopback"
    measure_sync
    heading "A full sync of $synced_posts posts with folders and threads"
    measure_full_sync
    heading "The window during a sync of $synced_posts posts"
    measure_responsiveness
}

main "$@"
