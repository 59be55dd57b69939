#!/usr/bin/env bash
# with-keyring.sh COMMAND…: runs a command in a session of its own with an empty keyring, which is unlocked and goes with it.
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -m 700 "$folder/run"
export HOME=$folder XDG_DATA_HOME=$folder XDG_CONFIG_HOME=$folder XDG_CACHE_HOME=$folder XDG_RUNTIME_DIR=$folder/run
export XDG_CURRENT_DESKTOP=GNOME # by which QtKeychain chooses the Secret Service
dbus-run-session -- bash -c '
    printf password | gnome-keyring-daemon --daemonize --unlock --components=secrets >/dev/null
    "$@"' with-keyring "$@"
