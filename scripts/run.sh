#!/usr/bin/env bash
# Installs what is missing, builds Mirel for release and starts it.
#
#     scripts/run.sh [--demo [--posts N]] [--screenshot FILE]
#
# --demo              needs no account: a simulated X, a library that is thrown away, no keyring
# --posts N           how many bookmarks the simulated account has (400)
# --screenshot FILE   renders the window off screen to a PNG and ends
#
# Without a display the demo runs as text.

source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

programs=$root/build/release/bin
is_demo=false
screenshot=
posts=400
posts_given=false
throw_away=
children=()

read_arguments() {
    while (($# > 0)); do
        case $1 in
        --demo)
            is_demo=true
            shift
            ;;
        --screenshot)
            require_value "$1" $#
            screenshot=$(realpath --canonicalize-missing -- "$2")
            shift 2
            ;;
        --posts)
            require_value "$1" $#
            require_number "$1" "$2"
            posts=$2
            posts_given=true
            shift 2
            ;;
        *) other_argument "$1" ;;
        esac
    done
    [[ -z $screenshot || -d $(dirname -- "$screenshot") ]] ||
        fail "The folder of $screenshot does not exist. Make it, or give another file."
}

has_display() {
    [[ -n ${DISPLAY-} || -n ${WAYLAND_DISPLAY-} ]]
}

# Chooses between the window and the demo as text.
decide_what_runs() {
    if [[ -z $screenshot ]] && ! has_display; then
        say "There is no display (DISPLAY and WAYLAND_DISPLAY are not set), so the demo runs as text instead of" \
            "the window. Start this in a desktop session for the window, or give --screenshot FILE for a picture."
        is_demo=true
    fi
    if $posts_given && ! $is_demo; then
        fail "The option --posts belongs to the demo. Add --demo, or leave it out."
    fi
}

stop_children() {
    local attempt
    ((${#children[@]} > 0)) || return 0
    kill "${children[@]}" 2>/dev/null || true
    for ((attempt = 0; attempt < 50; ++attempt)); do
        kill -0 "${children[@]}" 2>/dev/null || break
        sleep 0.1
    done
    kill -KILL "${children[@]}" 2>/dev/null || true
    wait "${children[@]}" 2>/dev/null || true
}

clean_up() {
    stop_children
    [[ -z $throw_away ]] || rm -rf -- "$throw_away"
}

# Runs a command and waits for it in a way that a signal to this script interrupts.
run() {
    local status=0
    "$@" &
    children+=($!)
    wait $! || status=$?
    unset 'children[-1]'
    return $status
}

# Waits until the simulator, process $1, has written its address to the file $2, and exports it.
export_simulated_address() {
    local attempt
    for ((attempt = 0; attempt < 300; ++attempt)); do
        MIREL_X_API_URL=$(sed -n 's/^Simulating X at //p' "$2")
        if [[ -n $MIREL_X_API_URL ]]; then
            export MIREL_X_API_URL
            return
        fi
        kill -0 "$1" 2>/dev/null || break
        sleep 0.1
    done
    cat -- "$2" >&2
    fail "The simulated X did not start. See its messages above; rm -r build/release and a new start rebuild it."
}

# Starts the simulated X and points the programs at it and at a library that is thrown away.
prepare_demo() {
    throw_away=$(mktemp --directory --tmpdir mirel-demo.XXXXXXXX) ||
        fail "No temporary folder could be made. Free some space, or set TMPDIR to a folder that can be written."
    mkdir -- "$throw_away/library" "$throw_away/caches"
    # Exists before anyone reads it; the simulator starts in its own time.
    touch -- "$throw_away/simulator.txt"
    say "Starting a simulated X with $posts bookmarks and a library in $throw_away"
    "$programs/mirel-simulator" --posts "$posts" --seed 1 --port 0 >"$throw_away/simulator.txt" 2>&1 &
    children+=($!)
    export_simulated_address $! "$throw_away/simulator.txt"
    export MIREL_LOCAL_DATA_DIR=$throw_away/library
    export XDG_CACHE_HOME=$throw_away/caches
    export no_proxy=${no_proxy:+$no_proxy,}127.0.0.1,localhost
}

run_text_demo() {
    local step
    for step in 'sync' 'list --limit 20' 'status'; do
        say "mirelctl --demo $step"
        # shellcheck disable=SC2086 # a step is several words
        run "$programs/mirelctl" --demo $step ||
            fail "The demo failed at '$step'. Its message stands above; please report it together with this one."
    done
}

take_screenshot() {
    say "Rendering the window to $screenshot"
    QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software run "$programs/Mirel" "$@" --screenshot "$screenshot" ||
        fail "The window could not be rendered. See the messages above."
    [[ -s $screenshot ]] || fail "No picture was written to $screenshot. See the messages above."
}

run_window() {
    say "Starting Mirel"
    run "$programs/Mirel" "$@" ||
        fail "Mirel ended with an error. See the messages above; when they speak of the display or of OpenGL," \
            "try QT_QUICK_BACKEND=software scripts/run.sh."
}

main() {
    read_arguments "$@"
    decide_what_runs
    trap clean_up EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    install_packages
    build release Mirel mirelctl mirel-simulator
    local arguments=()
    if $is_demo; then
        prepare_demo
        arguments=(--demo)
    fi
    if [[ -n $screenshot ]]; then
        take_screenshot "${arguments[@]}"
    elif has_display; then
        run_window "${arguments[@]}"
    else
        run_text_demo
    fi
}

main "$@"
