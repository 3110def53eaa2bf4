# What the package needs beside the libraries that its programs are linked to, which dpkg-shlibdeps finds.

set(MIREL_PACKAGE_DEPENDS
    # loaded by the window while it runs
    libqt6svg6
    qml6-module-qtqml
    qml6-module-qtqml-models
    qml6-module-qtqml-workerscript
    qml6-module-qtquick
    qml6-module-qtquick-controls
    qml6-module-qtquick-layouts
    qml6-module-qtquick-templates
    qml6-module-qtquick-window
    # loaded to reach the keyring
    libsecret-1-0
    # whom the servers' certificates are signed by
    ca-certificates
    # registers the links of Mirel, as its signing in needs, and opens the browser
    desktop-file-utils
    xdg-utils
    # where the icons stand
    hicolor-icon-theme)

# Without these Mirel runs, but not everywhere, or without a connection, or without every script.
set(MIREL_PACKAGE_RECOMMENDS
    "gnome-keyring | kwalletmanager | keepassxc"
    "default-dbus-session-bus | dbus-session-bus"
    qt6-wayland
    libgl1-mesa-dri
    fonts-noto-core
    fonts-noto-color-emoji
    fonts-noto-cjk)
