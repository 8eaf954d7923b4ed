#!/usr/bin/env bash
# Builds the project and runs every test through CTest, headless.
set -euo pipefail
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-/tmp/runtime-$(id -u)}
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
"$root/scripts/setup.sh"
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "${ORV_BUILD_DIR:-$root/build}" --output-on-failure "$@"
