#!/usr/bin/env bash
# Runs a command on a private X server (Xvfb) with a real window manager
# (Openbox), for what only a window system shows: stacking, minimising,
# window frames, window shapes. Installs both from Debian when missing.
#
#   scripts/with-xvfb.sh COMMAND [ARGS...]
#
# Exits 77 (skipped) with a message when no X server can be started here.
set -uo pipefail

if [ $# -eq 0 ]; then
    echo "usage: $0 COMMAND [ARGS...]" >&2
    exit 2
fi

skip() {
    echo "with-xvfb: SKIPPED: $*" >&2
    exit 77
}

bash "$(dirname "$0")/install-packages.sh" xvfb openbox x11-utils xdotool || skip "cannot install xvfb, openbox, x11-utils, xdotool"

# A display number nobody uses.
display=""
for n in $(seq 90 140); do
    if [ ! -e "/tmp/.X$n-lock" ] && [ ! -e "/tmp/.X11-unix/X$n" ]; then
        display=":$n"
        break
    fi
done
[ -n "$display" ] || skip "no free X display number"

workdir=$(mktemp -d)
cleanup() {
    [ -n "${wm_pid:-}" ] && kill "$wm_pid" 2>/dev/null
    [ -n "${x_pid:-}" ] && kill "$x_pid" 2>/dev/null
    wait 2>/dev/null
    rm -rf "$workdir"
}
trap cleanup EXIT

# -noreset: when the readiness probe, its first client, leaves, the server
# would reset and refuse the window manager meanwhile.
Xvfb "$display" -screen 0 1280x1024x24 -nolisten tcp -noreset >"$workdir/xvfb.log" 2>&1 &
x_pid=$!
ready=""
for _ in $(seq 1 100); do
    if DISPLAY=$display xdpyinfo >/dev/null 2>&1; then
        ready=1
        break
    fi
    kill -0 "$x_pid" 2>/dev/null || break
    sleep 0.1
done
[ -n "$ready" ] || skip "Xvfb did not start ($(tail -n 3 "$workdir/xvfb.log" | tr '\n' ' '))"

# Openbox with its defaults; the property it sets once it manages the screen
# says it is ready. Without a window manager the tests would test nothing
# they are meant for: on a machine too busy to start one, skip.
DISPLAY=$display openbox --sm-disable >"$workdir/openbox.log" 2>&1 &
wm_pid=$!
wm_ready=""
for _ in $(seq 1 300); do
    if DISPLAY=$display xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id"; then
        wm_ready=1
        break
    fi
    kill -0 "$wm_pid" 2>/dev/null || skip "Openbox did not start ($(tail -n 3 "$workdir/openbox.log" | tr '\n' ' '))"
    sleep 0.1
done
[ -n "$wm_ready" ] || skip "Openbox did not take the screen within 30 s"

DISPLAY=$display QT_QPA_PLATFORM=xcb "$@"
