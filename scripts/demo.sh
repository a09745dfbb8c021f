#!/bin/sh
# The main job: builds the 32-bit library and computes the positions of the planets with it, in REAL*8 and REAL*16.
#
#   sh scripts/demo.sh [YYYY-MM-DD]      by default today
set -eu
cd "$(dirname "$0")/.."

if [ $# -gt 1 ]; then
  echo "demo: usage: sh scripts/demo.sh [YYYY-MM-DD]" >&2
  exit 2
fi
date=${1:-$(date +%Y-%m-%d)}
case $date in
  [0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]) ;;
  *) echo "demo: '$date' is not a date YYYY-MM-DD" >&2; exit 2 ;;
esac
if ! date -d "$date" >/dev/null 2>&1; then
  echo "demo: there is no day $date" >&2
  exit 2
fi

packages="g++ g++-multilib gfortran gfortran-multilib cmake ninja-build python3"
. scripts/setup.sh

build=build/demo-i386
# One at a time: a second demo waits for the build of the first.
mkdir -p build
exec 8>build/demo.lock
flock 8
log=$(mktemp)
trap 'rm -f "$log"' EXIT
quietly() {
  "$@" >"$log" 2>&1 || { cat "$log" >&2; echo "demo: '$*' failed" >&2; exit 1; }
}
[ -f $build/build.ninja ] || quietly cmake --preset linux-i386 -B $build -DZORVIKRT_TESTS=OFF -DZORVIKRT_BENCHMARKS=OFF
quietly cmake --build $build --target planets
$build/examples/planets examples/planets.dat "$date" $build/planets.svg
