#!/usr/bin/env bash
# Writes every factory morph set (presets/morph/**/NAME.ord) from its table
# (NAME.json beside it) with orvchstrip-tool. Run after editing a table.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
tool=${ORV_BUILD_DIR:-$root/build}/tools/orvchstrip-tool
[ -x "$tool" ] || { echo "Build the project first: $tool is missing" >&2; exit 1; }
find "$root/presets/morph" -name '*.json' -print0 | sort -z | while IFS= read -r -d '' table; do
  "$tool" morph make --from "$table" --out "${table%.json}.ord"
done
