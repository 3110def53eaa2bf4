#!/usr/bin/env bash
# Installs what is missing, builds Mirel for release and packs it for Debian. Prints where the package is.
#
#     scripts/package.sh [--output FOLDER]
#
# --output FOLDER   puts the package there instead of build/package
#
# Install it with: apt-get install ./mirel_<version>_<architecture>.deb

source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

output=$root/build/package
work=

read_arguments() {
    while (($# > 0)); do
        case $1 in
        --output)
            require_value "$1" $#
            output=$(realpath --canonicalize-missing -- "$2")
            shift 2
            ;;
        *) other_argument "$1" ;;
        esac
    done
}

make_folders() {
    mkdir -p -- "$output" || fail "The folder $output cannot be made. Give another one with --output."
    work=$(mktemp --directory --tmpdir mirel-package.XXXXXXXX) ||
        fail "No temporary folder could be made. Free some space, or set TMPDIR to a folder that can be written."
}

# Packs what the build installs, in the folder of the work. Prints the file name of the package.
pack() {
    local packages
    say "Packing"
    cpack --config "$root/build/release/CPackConfig.cmake" -B "$work" >&2 ||
        fail "The package could not be made. See the messages above."
    packages=("$work"/*.deb)
    [[ -e ${packages[0]} ]] || fail "No package was made. See the messages above."
    basename -- "${packages[0]}"
}

main() {
    read_arguments "$@"
    make_folders
    trap 'rm -rf -- "$work"' EXIT
    install_packages
    build release Mirel mirelctl mirel-icons
    local package
    package=$(pack)
    mv -- "$work/$package" "$output/" ||
        fail "The package could not be put into $output. Give another folder with --output."
    say "Install it as root with: apt-get install $output/$package"
    printf '%s\n' "$output/$package"
}

main "$@"
