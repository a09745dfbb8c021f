#!/bin/sh
# Set-up, build and all tests: sh scripts/test.sh [PRESET ...], by default of both Linux builds.
set -eu
cd "$(dirname "$0")/.."

presets=${*:-"linux-i386 linux-x86_64"}
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
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  # An empty test run is a failure: the presets say so.
  ctest --preset "$preset" -j "$(nproc)"
done
