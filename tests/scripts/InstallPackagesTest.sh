#!/usr/bin/env bash
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"

# A system on which the packages given are installed, a repeated one for several architectures. `apt-get install`
# adds to them.
system_with() {
    make_sandbox
    printf '%s\n' "$@" >"$sandbox/installed"
    fake bin/dpkg-query <<'PROGRAM'
matches=$(grep -cxF -- "${@: -1}" "$sandbox/installed") || { echo "no packages found" >&2; exit 1; }
format=${2#--showformat=}
for ((match = 0; match < matches; ++match)); do
    printf "${format//'${db:Status-Status}'/installed}"
done
PROGRAM
    fake bin/apt-get <<'PROGRAM'
record "$@"
echo "$DEBIAN_FRONTEND" >"$sandbox/frontend"
[[ $1 != install ]] || printf '%s\n' "${@:4}" >>"$sandbox/installed"
PROGRAM
    run_as 0
}

run_as() {
    fake bin/id <<<"echo $1"
}

test_installs_only_what_is_missing() {
    system_with first
    run_command scripts/install-packages.sh
    expect_equal "$status" 0
    expect_equal "$(calls)" $'apt-get update\napt-get install --yes --no-install-recommends second third'
    expect_equal "$(<frontend)" noninteractive
    expect_contains "$errors" 'Installing: second third'
}

test_takes_a_package_of_several_architectures_for_installed() {
    system_with first first second third
    run_command scripts/install-packages.sh
    expect_equal "$status" 0
    expect_equal "$(calls)" ''
}

test_asks_nothing_of_the_system_when_everything_is_there() {
    system_with first second third
    run_as 1000
    run_command scripts/install-packages.sh
    expect_equal "$status" 0
    expect_equal "$(calls)" ''
    expect_contains "$errors" 'All packages are installed'
}

test_does_nothing_the_second_time() {
    system_with
    run_command scripts/install-packages.sh
    rm calls
    run_command scripts/install-packages.sh
    expect_equal "$status" 0
    expect_equal "$(calls)" ''
}

test_installs_a_package_that_was_removed_but_left_its_configuration() {
    system_with
    fake bin/dpkg-query <<<'printf config-files'
    run_command scripts/install-packages.sh
    expect_contains "$(calls)" 'install --yes --no-install-recommends first second third'
}

test_uses_sudo_when_it_is_not_root() {
    system_with first second
    run_as 1000
    fake bin/sudo <<'PROGRAM'
record "$@"
"$@"
PROGRAM
    run_command scripts/install-packages.sh
    expect_equal "$status" 0
    expect_contains "$(calls)" \
        'sudo env DEBIAN_FRONTEND=noninteractive apt-get install --yes --no-install-recommends third'
    expect_equal "$(<frontend)" noninteractive
}

test_says_what_to_run_when_it_is_neither_root_nor_has_sudo() {
    system_with first
    run_as 1000
    hide_all_programs_but bash env dirname basename sed grep cat
    run_command scripts/install-packages.sh
    expect_equal "$status" 1
    expect_contains "$errors" 'Run as root: apt-get install --no-install-recommends second third'
    expect_equal "$(calls)" ''
}

test_says_what_to_do_when_the_lists_cannot_be_fetched() {
    system_with first
    fake bin/apt-get <<<'record "$@"; exit 100'
    run_command scripts/install-packages.sh
    expect_equal "$status" 1
    expect_equal "$(calls)" 'apt-get update'
    expect_contains "$errors" 'Check the network'
}

test_says_what_to_do_when_the_packages_cannot_be_installed() {
    system_with first
    fake bin/apt-get <<<'[[ $1 == update ]]'
    run_command scripts/install-packages.sh
    expect_equal "$status" 1
    expect_contains "$errors" 'The packages could not be installed.'
}

test_names_the_list_that_cannot_be_read() {
    system_with
    run_command scripts/install-packages.sh none.txt
    expect_equal "$status" 1
    expect_contains "$errors" 'none.txt cannot be read'
}

test_says_so_on_a_system_without_debian_packages() {
    make_sandbox
    hide_all_programs_but bash env dirname basename sed
    run_command scripts/install-packages.sh
    expect_equal "$status" 1
    expect_contains "$errors" 'This is no Debian system.'
}

run_test "$@"
