#!/bin/sh
# Installs what building and testing need, on Debian, as root or through sudo. Quick when all is there.
# Other scripts source it after setting `packages`.
set -eu

packages=${packages:-"g++ g++-multilib gfortran gfortran-multilib cmake ninja-build googletest libmpfr-dev libmpc-dev libboost-math-dev libeigen3-dev libfmt-dev python3 binutils pkg-config lintian libopenmpi-dev openmpi-bin"}

missing=
for package in $packages; do
  status=$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true)
  [ "$status" = "install ok installed" ] || missing="$missing $package"
done
if [ -n "$missing" ]; then
  if ! command -v apt-get >/dev/null 2>&1; then
    echo "setup: these packages are missing and there is no apt-get to install them:$missing" >&2
    exit 1
  fi
  as_root=
  if [ "$(id -u)" != 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
      echo "setup: these packages are missing; install them as root:$missing" >&2
      exit 1
    fi
    as_root=sudo
  fi
  echo "setup: installing$missing"
  log=$(mktemp)
  # shellcheck disable=SC2086
  if ! { $as_root apt-get update && $as_root env DEBIAN_FRONTEND=noninteractive \
         apt-get install -y --no-install-recommends $missing; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "setup: could not install:$missing" >&2
    exit 1
  fi
  rm -f "$log"
fi
