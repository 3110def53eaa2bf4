# What the scripts of this folder share. They source it first.
# shellcheck shell=bash

set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)

# Says what happens next.
say() {
    printf '==> %s\n' "$*" >&2
}

# Ends the script with a sentence that tells what to do.
fail() {
    printf '%s: %s\n' "$(basename -- "$0")" "$*" >&2
    exit 1
}

# Fails unless the option $1 is followed by a value; $2 is the number of arguments left, the option included.
require_value() {
    (($2 >= 2)) || fail "The option $1 needs a value. See $0 --help."
}

require_number() {
    [[ $2 =~ ^[0-9]+$ ]] || fail "The option $1 takes a whole number, not '$2'. See $0 --help."
}

# Prints the comment at the head of the running script, which is its help.
print_help() {
    sed -n '2,/^$/ s/^# \{0,1\}//p' "$0"
}

# What a script does with the argument $1 that is none of its own: it prints its help for --help, and refuses
# any other.
other_argument() {
    [[ $1 == --help ]] || fail "The argument '$1' is unknown. See $0 --help."
    print_help
    exit
}

install_packages() {
    "$root/scripts/install-packages.sh"
}

# Configures the preset $1 and builds the targets that follow, or everything. Ends the script when that fails.
build() {
    local preset=$1
    shift
    say "Building the preset '$preset' in build/$preset${*:+ ($*)}"
    (cd -- "$root" && cmake --preset "$preset") >&2 ||
        fail "The preset '$preset' could not be configured. See the messages above;" \
            "rm -r build/$preset helps when they speak of another compiler or folder."
    local parallel=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}
    (cd -- "$root" && cmake --build --preset "$preset" --parallel "$parallel" ${1:+--target "$@"}) >&2 ||
        fail "The build of the preset '$preset' failed. Correct what the compiler says above and start again;" \
            "if the compiler was killed, memory ran out: set CMAKE_BUILD_PARALLEL_LEVEL=1."
}

# The files of the project, one a line, that match the git path patterns given. Where git does not answer,
# as in an unpacked archive of the sources, every such file outside build/.
project_files() {
    local pattern file
    if git -C "$root" rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        git -C "$root" ls-files -- "$@" | while IFS= read -r file; do
            [[ ! -e $root/$file ]] || printf '%s\n' "$file"
        done
        return
    fi
    for pattern in "$@"; do
        (cd -- "$root" && find . -path ./build -prune -o -type f -path "./$pattern" -printf '%P\n')
    done
}
