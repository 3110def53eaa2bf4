#!/usr/bin/env bash
# Installs and packs what the build in the folder $MIREL_BUILD_DIR has made.
source "$(dirname -- "${BASH_SOURCE[0]}")/testing.sh"

identifier=io.mirel.mirel
share=root/usr/share

# Installs the build into the folder root of the sandbox.
install_mirel() {
    make_sandbox
    DESTDIR=$sandbox/root run_command cmake --install "${MIREL_BUILD_DIR:?}" --prefix /usr
    expect_equal "$status" 0
}

# Packs the build and unpacks the package into the folder unpacked.
pack_mirel() {
    make_sandbox
    run_command cpack --config "${MIREL_BUILD_DIR:?}/CPackConfig.cmake" -B "$sandbox/packages" \
        -D CPACK_DEBIAN_COMPRESSION_TYPE=gzip
    expect_equal "$status" 0
    package=$(ls packages/*.deb)
    dpkg-deb --extract "$package" unpacked
}

files_below() {
    (cd -- "$1" && find . -type f -printf '%m %P\n' | sort -k 2)
}

# The value of the key $1 in the desktop file.
entry() {
    sed -n "s/^$1=//p" "$share/applications/$identifier.desktop"
}

test_installs_every_file_where_the_desktop_and_the_shells_look_for_it() {
    install_mirel
    expect_equal "$(files_below root/usr)" "\
755 bin/Mirel
755 bin/mirelctl
644 share/applications/$identifier.desktop
644 share/bash-completion/completions/mirelctl
644 share/doc/mirel/copyright
644 share/fish/vendor_completions.d/mirelctl.fish
644 share/icons/hicolor/128x128/apps/$identifier.png
644 share/icons/hicolor/16x16/apps/$identifier.png
644 share/icons/hicolor/22x22/apps/$identifier.png
644 share/icons/hicolor/24x24/apps/$identifier.png
644 share/icons/hicolor/256x256/apps/$identifier.png
644 share/icons/hicolor/32x32/apps/$identifier.png
644 share/icons/hicolor/48x48/apps/$identifier.png
644 share/icons/hicolor/512x512/apps/$identifier.png
644 share/icons/hicolor/64x64/apps/$identifier.png
644 share/icons/hicolor/scalable/apps/$identifier.svg
644 share/man/man1/mirelctl.1
644 share/metainfo/$identifier.metainfo.xml
644 share/zsh/vendor-completions/_mirelctl"
}

test_has_a_valid_desktop_file_that_starts_what_is_installed() {
    install_mirel
    run_command desktop-file-validate "$share/applications/$identifier.desktop"
    expect_equal "$output$errors" ''
    expect_equal "$status" 0
    expect_equal "$(entry Exec)" 'Mirel %u'
    expect_equal "$(entry TryExec)" 'Mirel'
    expect_equal "$(entry Icon)" "$identifier"
}

test_registers_the_links_of_mirel() {
    install_mirel
    update-desktop-database "$share/applications"
    export XDG_DATA_DIRS=$sandbox/$share XDG_DATA_HOME=$sandbox/home XDG_CONFIG_HOME=$sandbox/home
    unset XDG_CURRENT_DESKTOP DESKTOP_SESSION
    run_command xdg-mime query default x-scheme-handler/mirel
    expect_equal "$output" "$identifier.desktop"
}

test_has_valid_metadata_that_agree_with_the_rest() {
    install_mirel
    run_command appstreamcli validate --pedantic --strict --no-net --no-color \
        "$share/metainfo/$identifier.metainfo.xml"
    expect_contains "$output" 'Validation was successful.'
    expect_equal "$status" 0
    # Also finds the desktop file and the icon by what the metadata say of them.
    run_command appstreamcli validate-tree --pedantic --strict --no-net --no-color "$sandbox/root"
    expect_contains "$output" 'Validation was successful.'
    expect_equal "$status" 0
}

test_tells_the_version_and_the_web_address_of_the_build() {
    install_mirel
    local address version
    address=$(sed -n 's/^MIREL_WEB_ADDRESS:STRING=//p' "$MIREL_BUILD_DIR/CMakeCache.txt")
    version=$(root/usr/bin/mirelctl --version)
    expect_contains "$(<"$share/metainfo/$identifier.metainfo.xml")" "<url type=\"homepage\">$address</url>"
    expect_contains "$(<"$share/metainfo/$identifier.metainfo.xml")" \
        "<release version=\"${version#mirelctl }\""
}

test_has_pictures_of_the_size_of_their_folders() {
    install_mirel
    local size
    for size in 16 22 24 32 48 64 128 256 512; do
        expect_contains "$(file --brief "$share/icons/hicolor/${size}x$size/apps/$identifier.png")" \
            "PNG image data, $size x $size, "
    done
    expect_equal "$(file --brief --mime-type "$share/icons/hicolor/scalable/apps/$identifier.svg")" 'image/svg+xml'
}

test_tells_the_licence_of_the_icons_that_are_built_in() {
    install_mirel
    expect_contains "$(<$share/doc/mirel/copyright)" "$(<"$project/MirelApp/screens/icons/LICENSE")"
}

# Puts a program into the sandbox that shows the window, waits for it and prints the properties by which a desktop
# finds its icon.
make_window_viewer() {
    fake bin/view-window <<'PROGRAM'
"$sandbox/root/usr/bin/Mirel" &
SECONDS=0
# Its properties are there before it is shown.
until window=$(xwininfo -root -tree | awk '/\("Mirel" "Mirel"\)/ { print $1 }') && [[ -n $window ]] &&
    xwininfo -id "$window" | grep -q IsViewable; do
    if ! kill -0 $! 2>/dev/null; then
        echo 'Mirel ended without a window.' >&2
        exit 1
    fi
    if ((SECONDS > 90)); then
        echo 'Mirel shows no window.' >&2
        kill $!
        exit 1
    fi
    sleep 0.2
done
xprop -id "$window" -notype WM_CLASS
xprop -id "$window" -f _NET_WM_ICON 32c ' $0+\n' _NET_WM_ICON | tr -s ', ' '\n' | sort | uniq -c
kill $!
PROGRAM
}

test_the_window_has_the_icon_and_the_name_that_the_desktop_file_says() {
    install_mirel
    mkdir -m 700 library caches runtime
    export MIREL_LOCAL_DATA_DIR=$sandbox/library XDG_CACHE_HOME=$sandbox/caches XDG_CONFIG_HOME=$sandbox/caches
    export XDG_RUNTIME_DIR=$sandbox/runtime QT_QPA_PLATFORM=xcb QT_QUICK_BACKEND=software
    export DBUS_SESSION_BUS_ADDRESS=unix:path=$sandbox/none
    # The keyboard library of the X server reads a text without an end.
    export ASAN_OPTIONS=${ASAN_OPTIONS:+$ASAN_OPTIONS:}strict_string_checks=0
    make_window_viewer
    run_command xvfb-run --auto-servernum view-window
    expect_equal "$status" 0
    expect_contains "$output" "WM_CLASS = \"Mirel\", \"$(entry StartupWMClass)\""
    # the colours of the icon, opaque
    expect_contains "$output" " $((0xFF2563EB))"
    expect_contains "$output" " $((0xFFA8C1F7))"
    expect_contains "$output" " $((0xFFFFFFFF))"
}

test_packs_what_is_installed_with_its_manual_compressed() {
    pack_mirel
    expect_equal "$(dpkg-deb --field "$package" Package)" 'mirel'
    expect_equal "$(dpkg-deb --field "$package" Architecture)" "$(dpkg --print-architecture)"
    # From here the names of the files in the package and of those installed are compared.
    local packed
    packed=$(files_below unpacked/usr)
    expect_contains "$packed" '644 share/man/man1/mirelctl.1.gz'
    DESTDIR=$sandbox/root cmake --install "$MIREL_BUILD_DIR" --prefix /usr >/dev/null
    expect_equal "${packed/mirelctl.1.gz/mirelctl.1}" "$(files_below root/usr)"
    expect_equal "$(dpkg-deb --contents "$package" | awk '{ print $2 }' | sort -u)" 'root/root'
}

# A library that is linked to is found by itself. What is loaded at run time is named, and must be named in both lists.
test_depends_on_what_it_loads_while_it_runs() {
    pack_mirel
    local depends name modules
    depends=", $(dpkg-deb --field "$package" Depends),"
    mapfile -t modules < <(grep -E '^qml6-module-' "$project/packaging/debian-packages.txt")
    expect_equal "$((${#modules[@]} > 5))" 1
    for name in "${modules[@]}" libqt6svg6 libsecret-1-0 ca-certificates desktop-file-utils xdg-utils; do
        expect_contains "$depends" ", $name,"
    done
    for name in libqt6quick6 libqt6network6 libqt6keychain1 libsqlite3-0; do
        expect_contains "$depends" ", $name ("
    done
    expect_contains "$(dpkg-deb --field "$package" Recommends)" 'gnome-keyring | '
}

run_test "$@"
