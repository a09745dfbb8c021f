#!/bin/sh
# Set-up, build and all tests: sh scripts/test.sh [PRESET ...]. By default of both Linux builds and,
# where their compilers can be had, of both Windows DLLs.
set -eu
cd "$(dirname "$0")/.."

presets=${*:-"linux-i386 linux-x86_64 windows-i386 windows-x86_64"}
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
  case $preset in
    windows-i386) compiler=g++-mingw-w64-i686-posix bits=32 ;;
    windows-x86_64) compiler=g++-mingw-w64-x86-64-posix bits=64 ;;
    *) compiler= ;;
  esac
  if [ -n "$compiler" ]; then
    if ! (packages=$compiler; . scripts/setup.sh); then
      echo "SKIPPED: $preset, whose compiler $compiler cannot be installed"
      [ $# = 0 ] || exit 1  # asked for by name
      continue
    fi
    # Without Wine the tests that need it are reported as skipped.
    sh scripts/wine.sh $bits || true
  fi
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  # An empty test run is a failure: the presets say so.
  ctest --preset "$preset" -j "$(nproc)"
done
