#!/usr/bin/env bash
# Opens a form in Qt Designer with the channel strip's controls drawn by the
# project's Designer plug-in, loaded straight from the build: nothing is
# installed outside it.
#
#   scripts/designer.sh [FORM.ui]    (the editor's form by default)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build_dir=${ORV_BUILD_DIR:-$root/build}
form=${1:-$root/ORVChStrip/ORVChStripEditor.ui}
designer=/usr/lib/qt6/bin/designer

export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-/tmp/runtime-$(id -u)}
mkdir -p -m 700 "$XDG_RUNTIME_DIR"

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "designer.sh: Qt Designer needs a display (neither DISPLAY nor WAYLAND_DISPLAY is set)" >&2
  exit 1
fi
if [ ! -f "$form" ]; then
  echo "designer.sh: $form: no such form (the forms are ORVChStrip/*.ui)" >&2
  exit 1
fi

# Only the plug-in and what it links are built. A build configured before
# Designer's headers were installed does not know the plug-in yet: configure
# it again then.
if ! ORV_BUILD_TARGET=orvchstrip_designer "$root/scripts/setup.sh"; then
  cmake -S "$root" -B "$build_dir" >/dev/null
  cmake --build "$build_dir" --target orvchstrip_designer || {
    echo "designer.sh: the Designer plug-in did not build (it needs qt6-tools-dev)" >&2
    exit 1
  }
fi

# Designer looks for its plug-ins in the designer/ folder of each plug-in path.
export QT_PLUGIN_PATH=$build_dir/plugins${QT_PLUGIN_PATH:+:$QT_PLUGIN_PATH}
exec "$designer" "$form"
