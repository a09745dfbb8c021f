#!/bin/sh
# Set-up, build and all tests: sh scripts/test.sh [PRESET ...]. By default of both Linux builds and,
# where its compiler can be had, of the Windows DLL.
set -eu
cd "$(dirname "$0")/.."

presets=${*:-"linux-i386 linux-x86_64 windows-i386"}
for preset in $presets; do
  if ! grep -q "\"name\": \"$preset\", \"configurePreset\"" CMakePresets.json; then
    echo "test: unknown preset '$preset'; known are:" \
      "$(sed -n 's/.*"name": "\([^"]*\)", "configurePreset".*/\1/p' CMakePresets.json | tr '\n' ' ')" >&2
    exit 2
  fi
done

. scripts/setup.sh
for preset in $presets; do
  echo "== $preset"
  if [ "$preset" = windows-i386 ]; then
    if ! (packages=g++-mingw-w64-i686-posix; . scripts/setup.sh); then
      echo "SKIPPED: $preset, whose compiler g++-mingw-w64-i686-posix cannot be installed"
      [ $# = 0 ] || exit 1  # asked for by name
      continue
    fi
    # Without Wine the tests that need it are reported as skipped.
    sh scripts/wine.sh || true
  fi
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  # An empty test run is a failure: the presets say so.
  ctest --preset "$preset" -j "$(nproc)"
done
