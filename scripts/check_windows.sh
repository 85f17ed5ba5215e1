#!/usr/bin/env bash
# Cross-compiles platform/ and its test programs for 64-bit Windows and runs them under Wine, without a display:
#   scripts/check_windows.sh BUILD_DIR
# Where Wine is missing or can't start a program at all, the run is skipped and the closing line says so.
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: scripts/check_windows.sh BUILD_DIR" >&2; exit 2; }
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
mkdir -p "$1"
build=$(cd "$1" && pwd)

cmake -G Ninja -S "$root/tests/platform/windows" -B "$build" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake"
cmake --build "$build"

wine=""
for candidate in wine64 /usr/lib/wine/wine64 wine; do
  if command -v "$candidate" >/dev/null; then wine=$candidate && break; fi
done
if [ -z "$wine" ]; then
  echo "windows: cross-compiled; run SKIPPED, no wine64 here"
  exit 0
fi

# A prefix of its own keeps the user's Wine as it is; its server ends with it.
scratch=$(mktemp -d)
server=""
for candidate in wineserver64 /usr/lib/wine/wineserver64 wineserver /usr/lib/wine/wineserver; do
  if command -v "$candidate" >/dev/null; then server=$candidate && break; fi
done
cleanup() {
  if [ -n "$server" ]; then "$server" -k 2>/dev/null || true; fi
  rm -rf "$scratch"
}
trap cleanup EXIT
export WINEPREFIX="$scratch/prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" WINEARCH=win64
unset DISPLAY WAYLAND_DISPLAY

if ! timeout 180 "$wine" cmd /c "exit 0" >"$scratch/start.log" 2>&1; then
  cat "$scratch/start.log"
  echo "windows: cross-compiled; run SKIPPED, $wine can't start a program here"
  exit 0
fi
mkdir "$scratch/files"
timeout 180 "$wine" "$build/platform_on_windows.exe" "Z:$scratch/files"
timeout 180 "$wine" "$build/numeric_locale_on_windows.exe"
echo "windows: cross-compiled, and every check holds under Wine"
