#!/usr/bin/env bash
# Builds every libFuzzer target of tests/fuzz/ with clang (AddressSanitizer and
# UndefinedBehaviorSanitizer) and runs each for SECONDS (default 60), printing
# the executions and the findings of every target. Exit status 1 when anything
# was found; the inputs are kept under build-fuzz/findings/TARGET/.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
seconds=${1:-60}
if ! [[ $seconds =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: scripts/fuzz.sh [SECONDS]   (seconds per target, default 60)" >&2
  exit 2
fi
build_dir=${ORV_FUZZ_BUILD_DIR:-$root/build-fuzz}

sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
install() {
  echo "Installing: $*"
  "${sudo_cmd[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq "$@"
}
installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"; }

# clang, and the sanitizer and libFuzzer runtimes of the same version.
command -v clang++ >/dev/null || install clang
clang_major=$(clang++ -dumpversion | cut -d. -f1)
installed "libclang-rt-$clang_major-dev" || install "libclang-rt-$clang_major-dev"

# Every target the fuzz folder declares, so that a new one needs no edit here.
mapfile -t targets < <(grep -oE '(orv_add_fuzzer|add_executable)\(\s*fuzz_[A-Za-z0-9_]+' \
  "$root/tests/fuzz/CMakeLists.txt" | sed -E 's/.*\(\s*//' | sort -u)
if ((${#targets[@]} == 0)); then
  echo "no fuzz targets found in tests/fuzz/CMakeLists.txt" >&2
  exit 1
fi

if [ ! -f "$build_dir/CMakeCache.txt" ]; then
  CC=clang CXX=clang++ cmake -S "$root" -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DORV_BUILD_FUZZERS=ON -DORV_BUILD_TESTS=OFF -DORV_BUILD_BENCH=OFF ${ORV_CMAKE_ARGS:-}
fi
cmake --build "$build_dir" --target "${targets[@]}"

status=0
summary=()
for target in "${targets[@]}"; do
  binary=$(find "$build_dir" -type f -name "$target" -perm -u+x | head -n 1)
  corpus=$build_dir/corpus/$target
  findings=$build_dir/findings/$target
  log=$build_dir/logs/$target.log
  mkdir -p "$corpus" "$findings" "$(dirname "$log")"
  seeds=()
  [ -d "$root/tests/data/fuzz/$target" ] && seeds=("$root/tests/data/fuzz/$target")

  echo "== $target: $seconds s"
  set +e
  "$binary" -max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$findings/" \
    "$corpus" "${seeds[@]}" >"$log" 2>&1
  result=$?
  set -e
  executions=$(awk '/stat::number_of_executed_units/ { print $2 }' "$log" | tail -n 1)
  found=$(find "$findings" -type f | wc -l)
  summary+=("$(printf '%-24s %12s executions  %3d findings  %s' "$target" "${executions:-?}" "$found" \
    "$([ "$result" -eq 0 ] || echo "(exit $result, see $log)")")")
  if [ "$found" -gt 0 ] || [ "$result" -ne 0 ]; then
    status=1
    find "$findings" -type f -printf '   finding: %p\n'
  fi
done

echo
printf '%s\n' "${summary[@]}"
if [ "$status" -ne 0 ]; then
  echo "Reproduce a finding with: TARGET FILE; once fixed, copy it into tests/data/fuzz/TARGET/ as a regression."
fi
exit "$status"
