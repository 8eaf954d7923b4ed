#!/usr/bin/env bash
# Installs the Debian packages the project needs (only the missing ones),
# then configures and builds incrementally into build/: everything, or only
# the target named by ORV_BUILD_TARGET.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build_dir=${ORV_BUILD_DIR:-$root/build}

packages=(cmake ninja-build g++ qt6-base-dev qt6-base-dev-tools qt6-svg-dev qt6-qpa-plugins
          libgl-dev libxkbcommon-dev libsndfile1-dev fonts-mplus xvfb xauth
          dbus at-spi2-core python3-pyatspi xdotool
          qt6-tools-dev designer-qt6 libfftw3-dev
          help2man dpkg-dev file man-db)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  echo "Installing: ${missing[*]}"
  sudo_cmd=()
  [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
  "${sudo_cmd[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq "${missing[@]}"
fi

if [ ! -f "$build_dir/CMakeCache.txt" ]; then
  cmake -S "$root" -B "$build_dir" -G Ninja ${ORV_CMAKE_ARGS:-}
fi
cmake --build "$build_dir" --parallel "$(nproc)" ${ORV_BUILD_TARGET:+--target "$ORV_BUILD_TARGET"}
