#!/bin/sh
# Runs a command with a session bus and a keyring of its own, far away from those of the user, and without a
# display, so that nothing can ask for a password.
#
#   with-private-keyring.sh [--locked | --without-service | --without-bus] COMMAND [ARGUMENT...]
#
# The keyring is unlocked. With --locked the items that SEED_COMMAND, run through `sh -c` beforehand, stored
# are locked. With --without-service the bus has no secret service, with --without-bus there is no bus. The
# command finds the state ("unlocked", "locked", ...) in MIREL_TEST_KEYRING.
set -eu

state=unlocked
case "${1-}" in
--locked | --without-service | --without-bus)
    state=${1#--}
    shift
    ;;
esac
if [ $# -eq 0 ]; then
    echo "usage: $0 [--locked | --without-service | --without-bus] COMMAND [ARGUMENT...]" >&2
    exit 2
fi
for tool in dbus-run-session gnome-keyring-daemon dbus-send; do
    if ! command -v "$tool" >/dev/null; then
        echo "$0: $tool is missing; install the packages dbus and gnome-keyring." >&2
        exit 2
    fi
done

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
mkdir -m 700 "$home/run" "$home/data" "$home/config" "$home/cache"

export HOME="$home" XDG_RUNTIME_DIR="$home/run" XDG_DATA_HOME="$home/data"
export XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache"
export MIREL_TEST_KEYRING="$state"
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS GNOME_KEYRING_CONTROL SSH_AUTH_SOCK || true

if [ "$state" = without-bus ]; then
    status=0
    "$@" || status=$?
    exit "$status"
fi

# A bus that starts no service by itself: what runs on it is what is started here.
cat >"$home/bus.conf" <<CONFIGURATION
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=$home/run/bus</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
CONFIGURATION

# shellcheck disable=SC2016
session='
set -eu
state=$1
home=$2
shift 2
if [ "$state" != without-service ]; then
    # In the foreground of a background job: it ends when this shell ends it, whatever became of the bus.
    printf password | gnome-keyring-daemon --unlock --foreground --components=secrets >"$home/keyring.log" 2>&1 &
    keyring=$!
    trap "kill $keyring 2>/dev/null || true; wait $keyring 2>/dev/null || true" EXIT
    tries=0
    until dbus-send --session --print-reply --dest=org.freedesktop.secrets \
        /org/freedesktop/secrets/collection/login org.freedesktop.DBus.Properties.Get \
        string:org.freedesktop.Secret.Collection string:Locked 2>/dev/null | grep -q "boolean false"; do
        tries=$((tries + 1))
        if [ "$tries" -gt 100 ]; then
            echo "The private keyring did not start:" >&2
            cat "$home/keyring.log" >&2
            exit 2
        fi
        sleep 0.1
    done
fi
if [ "$state" = locked ]; then
    sh -c "${SEED_COMMAND:-:}"
    dbus-send --session --print-reply --dest=org.freedesktop.secrets /org/freedesktop/secrets \
        org.freedesktop.Secret.Service.Lock \
        array:objpath:/org/freedesktop/secrets/collection/login >/dev/null
fi
status=0
"$@" || status=$?
exit "$status"
'
status=0
dbus-run-session --config-file="$home/bus.conf" -- \
    sh -c "$session" with-private-keyring "$state" "$home" "$@" || status=$?
exit "$status"
