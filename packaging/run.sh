#!/usr/bin/env bash
# Runs Veltrix from a build tree: a helper, and the window in front of it.
#
# usage: run.sh BUILD_DIR [OPTION OF veltrix-settings...]
#
# Real trackballs are used when there are any, else simulated ones. Without a session bus or a display it starts its
# own; on a display of its own, where nobody could use the window, it leaves a screenshot and ends.
set -euo pipefail
build=$(readlink -f "$1")
shift
simulated=${VELTRIX_SIMULATE:-A1D0:2041:0107,A1D0:1020:0100,A1D0:8002:0203}
helper=$build/lib/veltrix/VeltrixHelper.app/VeltrixHelper
export VELTRIX_RESOURCES=$build/lib/veltrix

if [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ] && [ ! -S "${XDG_RUNTIME_DIR:-/nonexistent}/bus" ]; then
  echo "run: there is no session bus; starting one for this run"
  exec dbus-run-session -- "$0" "$build" "$@"
fi

scratch=$(mktemp -d)
children=()
cleanup() {
  for child in "${children[@]}"; do
    kill "$child" 2>/dev/null && wait "$child" 2>/dev/null || true
  done
  # The window puts its helper among the login items; one that leads into a build tree would outlive the tree.
  grep -slF "$build/" "${XDG_CONFIG_HOME:-$HOME/.config}"/autostart/*.desktop 2>/dev/null | xargs -r rm -f --
  rm -rf "$scratch"
}
trap cleanup EXIT

real_trackballs() {
  local file
  for file in /sys/bus/usb/devices/*/idVendor; do
    if [ -r "$file" ] && [ "$(cat "$file")" = a1d0 ]; then
      cat "${file%idVendor}product" 2>/dev/null || echo "a trackball without a name"
    fi
  done
}

start_helper() {
  local options=() found
  found=$(real_trackballs)
  if pgrep -u "$(id -u)" -x VeltrixHelper >/dev/null; then
    echo "run: a helper is running already; the window uses it"
    return
  fi
  if [ -n "$found" ]; then
    echo "run: real trackballs:"
    echo "$found" | sed 's/^/  /'
  else
    echo "run: no trackball is connected; simulating $simulated"
    options=(--simulate "$simulated")
  fi
  "$helper" "${options[@]}" &
  children+=($!)
}

# Waits until the window is on the display and has had time to draw itself.
wait_for_window() {
  for _ in $(seq 100); do
    xdotool search --onlyvisible --class veltrix >/dev/null 2>&1 && { sleep 1.5; return 0; }
    sleep 0.1
  done
  echo "run: the window did not appear" >&2
  return 1
}

run_without_display() {
  local root picture
  root=$(cd "$(dirname "$0")/.." && pwd)
  picture=$root/out/veltrix.png
  mkdir -p "$root/out"
  echo "run: there is no display; starting one for a screenshot"
  Xvfb -displayfd 3 -screen 0 1024x768x24 -noreset 3>"$scratch/display" 2>/dev/null &
  children+=($!)
  for _ in $(seq 100); do
    [ -s "$scratch/display" ] && break
    sleep 0.1
  done
  DISPLAY=:$(cat "$scratch/display")
  export DISPLAY
  start_helper
  "$build/bin/veltrix-settings" "$@" &
  local window=$!
  wait_for_window
  import -window root -trim +repage "$picture"
  kill "$window"
  wait "$window" || true
  echo "run: screenshot in $picture"
}

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  run_without_display "$@"
else
  start_helper
  "$build/bin/veltrix-settings" "$@"
fi
