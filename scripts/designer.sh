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
plugin=$build_dir/plugins/designer/orvchstrip_designer.so

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

"$root/scripts/setup.sh"
if [ ! -f "$plugin" ]; then
  # Designer's headers were installed after build/ was configured.
  cmake -S "$root" -B "$build_dir" >/dev/null
  cmake --build "$build_dir" --target orvchstrip_designer
fi
if [ ! -f "$plugin" ]; then
  echo "designer.sh: the Designer plug-in was not built (is qt6-tools-dev installed?)" >&2
  exit 1
fi

# Designer looks for its plug-ins in the designer/ folder of each plug-in path.
export QT_PLUGIN_PATH=$build_dir/plugins${QT_PLUGIN_PATH:+:$QT_PLUGIN_PATH}
exec "$designer" "$form"
