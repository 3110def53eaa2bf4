#!/usr/bin/env bash
# Installs the Debian packages that building, running and testing Mirel needs, as far as they are missing.
# The list is packaging/debian-packages.txt. Needs root or sudo only when something is missing.
#
#     scripts/install-packages.sh [LIST]

source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

listed_packages() {
    sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' -- "$1"
}

# A package that is there for several architectures has a line for each.
is_installed() {
    local states
    states=$(dpkg-query --show --showformat='${db:Status-Status}\n' "$1" 2>/dev/null) || return 1
    [[ $'\n'$states$'\n' == *$'\ninstalled\n'* ]]
}

missing_packages() {
    local package
    while IFS= read -r package; do
        is_installed "$package" || printf '%s\n' "$package"
    done < <(listed_packages "$1")
}

# Runs a command as root.
as_root() {
    if (($(id -u) == 0)); then
        env DEBIAN_FRONTEND=noninteractive "$@"
    else
        sudo env DEBIAN_FRONTEND=noninteractive "$@"
    fi
}

install() {
    if (($(id -u) != 0)) && ! command -v sudo >/dev/null; then
        fail "These packages are missing, and installing them needs root or sudo: $*." \
            "Run as root: apt-get install --no-install-recommends $*"
    fi
    say "Installing: $*"
    as_root apt-get update >&2 ||
        fail "The package lists could not be fetched. Check the network and /etc/apt/sources.list, then start again."
    as_root apt-get install --yes --no-install-recommends "$@" >&2 ||
        fail "The packages could not be installed. See what apt-get says above, correct it and start again."
}

main() {
    if [[ ${1-} == --help ]]; then
        print_help
        return
    fi
    local list=${1:-$root/packaging/debian-packages.txt}
    [[ -r $list ]] || fail "The list of packages $list cannot be read. Give the path of a readable list."
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        fail "This is no Debian system. Install what $list names with the system's own tools," \
            "then build with: cmake --preset release && cmake --build --preset release"
    fi
    local missing
    mapfile -t missing < <(missing_packages "$list")
    if ((${#missing[@]} == 0)); then
        say "All packages are installed"
        return
    fi
    install "${missing[@]}"
}

main "$@"
