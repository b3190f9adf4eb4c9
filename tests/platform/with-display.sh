#!/bin/bash
# Runs a command on a private X server with a window manager and a session bus of its own, and ends them with it.
# The server gets the first free display number from OSTRELLE_TEST_DISPLAY (100) on.
set -u

work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do
        kill "$pid" 2>/dev/null
    done
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 143' TERM INT HUP

mkfifo "$work/ready"
exec 5<>"$work/ready"

start_server() {
    local first=${OSTRELLE_TEST_DISPLAY:-100} number answer
    for ((number = first; number < first + 20; number++)); do
        # Two of these scripts starting at once must not try the same number.
        exec 6>"${TMPDIR:-/tmp}/.ostrelle-test-display-$number.lock"
        flock --nonblock 6 || continue
        [ -e "/tmp/.X$number-lock" ] && continue
        # -noreset: the server forgets its monitors when its last client leaves.
        Xvfb ":$number" -screen 0 1920x1080x24 -noreset -nolisten tcp -displayfd 5 >"$work/xvfb.log" 2>&1 6>&- &
        pids+=($!)
        if read -r -t 30 answer <&5; then
            export DISPLAY=":$answer"
            return 0
        fi
    done
    echo "No X server could be started:" >&2
    cat "$work/xvfb.log" >&2
    return 1
}

start_server || exit 1
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data XDG_RUNTIME_DIR=$work/run
mkdir -m 0700 "$work/config" "$work/data" "$work/run"
unset WAYLAND_DISPLAY SESSION_MANAGER
# A window manager that is still starting swallows clicks.
openbox --sm-disable --startup "sh -c 'echo ready >$work/ready'" >"$work/openbox.log" 2>&1 5>&- 6>&- &
pids+=($!)
read -r -t 30 answer <&5 || echo "The window manager does not start." >&2

dbus-run-session -- "$@" 5>&- 6>&-
