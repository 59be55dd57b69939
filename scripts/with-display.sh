#!/usr/bin/env bash
# with-display.sh COMMAND…: runs a command on an X display of its own that nobody sees, and that goes with it.
set -euo pipefail
folder=$(mktemp -d)
server=
trap '[[ -z $server ]] || { kill "$server" && wait "$server"; } 2>/dev/null || true; rm -rf "$folder"' EXIT
mkfifo "$folder/number"
# The server takes a number that is free, and says which once it can be connected to.
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$folder/number" >"$folder/log" 2>&1 &
server=$!
if ! read -r number <"$folder/number"; then
    echo "Xvfb doesn't start:" >&2
    cat "$folder/log" >&2
    exit 1
fi
unset WAYLAND_DISPLAY XAUTHORITY
DISPLAY=:$number "$@"
