#!/usr/bin/env bash
# Builds the project and opens the reference host with the editor. Without a
# display it renders the editor panel to editor.png (or --screenshot FILE).
set -euo pipefail
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-/tmp/runtime-$(id -u)}
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
"$root/scripts/setup.sh"

# Without a morph folder of their own, users see the factory morph sets.
if [ -z "${ORVCHSTRIP_MORPH_FOLDER:-}" ]; then
  morph_folder_found=false
  IFS=: read -r -a data_dirs <<<"${XDG_DATA_DIRS:-/usr/local/share:/usr/share}"
  for dir in "${data_dirs[@]}"; do
    [[ $dir == /* && -d $dir/Halvorn/ORVD ]] && morph_folder_found=true
  done
  $morph_folder_found || export ORVCHSTRIP_MORPH_FOLDER="$root/presets/morph"
fi

args=("$@")
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  export QT_QPA_PLATFORM=offscreen
  case " $* " in
    # Rendering is what the run is for, unless it asks for something else:
    # a picture of its own, the help or the list, or only a saved state.
    *" --screenshot "* | *" --screenshot="* | *" --help "* | *" -h "* | *" --list-parameters "*) ;;
    *" --save-state "* | *" --save-state="*) ;;
    *) args+=(--screenshot editor.png) ;;
  esac
fi
exec "${ORV_BUILD_DIR:-$root/build}/host/orvchstrip-host" "${args[@]}"
