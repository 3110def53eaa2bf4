#!/usr/bin/env bash
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"

# A built project without a display. Its programs record how they were called and what they saw.
make_project() {
    make_sandbox
    unset DISPLAY WAYLAND_DISPLAY MIREL_LOCAL_DATA_DIR MIREL_X_API_URL
    mkdir temporary
    export TMPDIR=$sandbox/temporary
    fake bin/dpkg-query <<<'printf installed'
    fake bin/cmake <<<'record "$@"'
    fake build/release/bin/mirel-simulator <<'PROGRAM'
record "$@"
trap 'echo stopped >"$sandbox/simulator-ended"; exit' TERM
echo "Simulating X at http://127.0.0.1:8123/2"
while :; do sleep 0.05; done
PROGRAM
    fake build/release/bin/mirelctl <<'PROGRAM'
record "$@"
printf '%s\n' "$MIREL_X_API_URL" "$MIREL_LOCAL_DATA_DIR" "$XDG_CACHE_HOME" >"$sandbox/environment"
[[ -d $MIREL_LOCAL_DATA_DIR && -d $XDG_CACHE_HOME ]] && echo "result of ${2-nothing}"
PROGRAM
    fake build/release/bin/Mirel <<'PROGRAM'
record "$@"
echo "${QT_QPA_PLATFORM-} ${QT_QUICK_BACKEND-} ${MIREL_X_API_URL-}" >"$sandbox/window"
[[ " $* " != *" --screenshot "* ]] || echo picture >"${@: -1}"
PROGRAM
}

expect_nothing_left() {
    expect_equal "$(ls temporary)" ''
    expect_equal "$(<simulator-ended)" 'stopped'
}

test_builds_what_it_starts_and_no_more() {
    make_project
    DISPLAY=:9 run_command scripts/run.sh
    expect_equal "$status" 0
    expect_equal "$(calls | sed 's/ --parallel [0-9]*//')" "\
cmake --preset release
cmake --build --preset release --target Mirel mirelctl mirel-simulator
Mirel"
}

test_starts_the_window_against_the_simulator_in_a_demo() {
    make_project
    WAYLAND_DISPLAY=wayland-0 run_command scripts/run.sh --demo --posts 70
    expect_equal "$status" 0
    expect_equal "$(calls | grep -v cmake)" $'mirel-simulator --posts 70 --seed 1 --port 0\nMirel --demo'
    expect_equal "$(<window)" '  http://127.0.0.1:8123/2'
    expect_nothing_left
}

test_runs_the_demo_as_text_and_says_so_without_a_display() {
    make_project
    run_command scripts/run.sh
    expect_equal "$status" 0
    expect_contains "$errors" 'There is no display'
    expect_equal "$(calls | grep -v cmake)" "\
mirel-simulator --posts 400 --seed 1 --port 0
mirelctl --demo sync
mirelctl --demo list --limit 20
mirelctl --demo status"
    expect_equal "$output" $'result of sync\nresult of list\nresult of status'
    expect_nothing_left
}

test_keeps_the_library_and_the_caches_of_a_demo_in_a_folder_that_is_thrown_away() {
    make_project
    run_command scripts/run.sh --demo
    mapfile -t environment <environment
    expect_equal "${environment[0]}" 'http://127.0.0.1:8123/2'
    expect_contains "${environment[1]}" "$sandbox/temporary/"
    expect_contains "${environment[2]}" "$sandbox/temporary/"
    expect_nothing_left
}

test_renders_a_picture_off_screen_also_without_a_display() {
    make_project
    run_command scripts/run.sh --demo --screenshot picture.png
    expect_equal "$status" 0
    expect_equal "$(calls | tail -n 1)" "Mirel --demo --screenshot $sandbox/picture.png"
    expect_equal "$(<window)" 'offscreen software http://127.0.0.1:8123/2'
    expect_equal "$(<picture.png)" 'picture'
    expect_nothing_left
}

test_fails_when_no_picture_was_written() {
    make_project
    fake build/release/bin/Mirel <<<'exit 0'
    run_command scripts/run.sh --screenshot picture.png
    expect_equal "$status" 1
    expect_contains "$errors" 'No picture was written'
}

test_says_what_the_simulator_said_when_it_does_not_start() {
    make_project
    fake build/release/bin/mirel-simulator <<<'echo "The port is taken." >&2; exit 1'
    run_command scripts/run.sh --demo
    expect_equal "$status" 1
    expect_contains "$errors" 'The port is taken.'
    expect_contains "$errors" 'The simulated X did not start.'
    expect_equal "$(ls temporary)" ''
}

test_cleans_up_and_says_which_step_failed() {
    make_project
    fake build/release/bin/mirelctl <<<'[[ $2 == sync ]]'
    run_command scripts/run.sh --demo
    expect_equal "$status" 1
    expect_contains "$errors" "The demo failed at 'list --limit 20'."
    expect_nothing_left
}

test_cleans_up_when_it_is_interrupted() {
    make_project
    fake build/release/bin/Mirel <<'PROGRAM'
trap 'exit 1' TERM
touch "$sandbox/started"
while :; do sleep 0.05; done
PROGRAM
    DISPLAY=:9 scripts/run.sh --demo >/dev/null 2>&1 &
    local script=$!
    while [[ ! -e started ]] && kill -0 $script 2>/dev/null; do
        sleep 0.05
    done
    kill -TERM $script
    status=0
    wait $script || status=$?
    expect_equal "$status" 143
    expect_nothing_left
}

test_says_what_to_do_when_the_window_ends_with_an_error() {
    make_project
    fake build/release/bin/Mirel <<<'exit 3'
    DISPLAY=:9 run_command scripts/run.sh
    expect_equal "$status" 1
    expect_contains "$errors" 'Mirel ended with an error.'
}

test_refuses_arguments_that_make_no_sense_before_it_builds() {
    make_project
    local arguments
    for arguments in '--fast' '--posts' '--posts many' '--screenshot' '--screenshot none/picture.png'; do
        # shellcheck disable=SC2086 # several words
        run_command scripts/run.sh $arguments
        expect_equal "$status" 1
        expect_contains "$errors" 'run.sh: The '
        expect_equal "$(calls)" ''
    done
    DISPLAY=:9 run_command scripts/run.sh --posts 5
    expect_contains "$errors" 'The option --posts belongs to the demo.'
    expect_equal "$(calls)" ''
}

run_test "$@"
