#!/usr/bin/env bash
# Runs a command as a Qt program runs under a screen reader: on a private X
# display, with a private session bus that starts the accessibility bus, and
# with Qt's accessibility bridge on. Takes the display and the bus down
# afterwards. Usage: run_on_accessibility_bus.sh COMMAND [ARG...]. Fails
# when the machine cannot provide a display or a bus (scripts/setup.sh
# installs what it needs).
set -uo pipefail

python=/usr/bin/python3 # Debian's, which has pyatspi

missing() { echo "FAIL: $*"; exit 1; }

for tool in Xvfb dbus-run-session "$python"; do
  command -v "$tool" >/dev/null || missing "$tool is not installed"
done
[ -x /usr/libexec/at-spi-bus-launcher ] || missing "at-spi2-core is not installed"
"$python" -c 'import pyatspi' 2>/dev/null || missing "python3-pyatspi is not installed"

scratch=$(mktemp -d)
xvfb_pid=
cleanup() {
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null && wait "$xvfb_pid" 2>/dev/null
  rm -rf "$scratch"
}
trap cleanup EXIT

# A fresh machine may have no runtime directory; the buses put sockets there.
if [ -z "${XDG_RUNTIME_DIR:-}" ] || [ ! -w "${XDG_RUNTIME_DIR}" ]; then
  export XDG_RUNTIME_DIR=$scratch/runtime
  mkdir -m 700 "$XDG_RUNTIME_DIR"
fi

# Xvfb picks a free display and writes its number once it accepts clients;
# without -noreset it would restart, refusing clients, whenever the last one
# (the accessibility bus launcher, say) leaves.
exec 3>"$scratch/display"
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset >"$scratch/xvfb.log" 2>&1 &
xvfb_pid=$!
exec 3>&-
for _ in $(seq 100); do
  [ -s "$scratch/display" ] && break
  kill -0 "$xvfb_pid" 2>/dev/null || missing "Xvfb did not start: $(tail -n 3 "$scratch/xvfb.log")"
  sleep 0.1
done
display=$(tr -dc 0-9 <"$scratch/display")
[ -n "$display" ] || missing "Xvfb reported no display"
export DISPLAY=:$display

# A private session bus. Qt joins the accessibility bus only when it is
# already there, as in a desktop session, so ask for its address first: the
# answer comes once the bus launcher runs.
unset DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS
command -v dbus-send >/dev/null || missing "dbus-send is not installed"
dbus-run-session -- true 2>"$scratch/dbus.log" || missing "no session bus: $(tail -n 3 "$scratch/dbus.log")"
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
dbus-run-session -- bash -c '
  dbus-send --session --print-reply=literal --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress \
    >/dev/null || { echo "FAIL: the accessibility bus did not start"; exit 1; }
  exec "$@"' run-on-accessibility-bus "$@"
