#!/bin/sh
# Finds or fetches a Wine that runs 32-bit (or 64-bit) Windows programs and prints the path of its
# launcher:
#
#   sh scripts/wine.sh [32|64]
#
# Where there is none and none can be had, one line on standard error tells why, and the exit code
# is 1. An installed Wine is taken as it is. Otherwise Debian's package wine32:i386, or wine64:amd64,
# and what it needs are unpacked under build/wine or build/wine64: nothing is installed and the
# machine's list of architectures stays as it is. Quick when the folder is there.
set -eu
cd "$(dirname "$0")/.."
bits=${1:-32}
case $bits in
  32) architecture=i386 root=$PWD/build/wine triplet=i386-linux-gnu windows=i386-windows
      mingw=i686-w64-mingw32 loader=/lib/ld-linux.so.2 program=wine libraries=/lib32:/usr/lib32 ;;
  64) architecture=amd64 root=$PWD/build/wine64 triplet=x86_64-linux-gnu windows=x86_64-windows
      mingw=x86_64-w64-mingw32 loader=/lib64/ld-linux-x86-64.so.2 program=wine64 libraries=/lib64 ;;
  *) echo "wine: usage: sh scripts/wine.sh [32|64]" >&2; exit 2 ;;
esac
log=$root/log

give_up() {
  echo "wine: no Wine for $bits-bit Windows programs here: $1" >&2
  exit 1
}

write_launcher() { # PROGRAM [LIBRARY_PATH]
  cat >"$root/wine" <<EOF
#!/bin/sh
export WINEPREFIX='$root/prefix' WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' LC_ALL=C
unset DISPLAY
${2:+export LD_LIBRARY_PATH='$2'}
# Wine's services stay for some seconds and would keep the caller's pipe open: started here, they do not.
'$1' '$root/try.exe' </dev/null >/dev/null 2>&1
exec '$1' "\$@"
EOF
  chmod +x "$root/wine"
}

# A program of its own, so that what is printed is what works.
works() {
  [ -f "$root/try.exe" ] || {
    echo 'int main(void) { return sizeof(void *) == '"$((bits / 8))"' ? 42 : 1; }' >"$root/try.c"
    $mingw-gcc "$root/try.c" -o "$root/try.exe" 2>>"$log" || return 1
  }
  code=0
  timeout 120 "$root/wine" "$root/try.exe" >>"$log" 2>&1 || code=$?
  [ "$code" = 42 ]
}

fetch() {
  command -v apt-get >/dev/null 2>&1 && command -v dpkg-deb >/dev/null 2>&1 ||
    give_up "neither wine nor apt-get is installed"
  mkdir -p "$root/apt/lists/partial" "$root/apt/cache/archives/partial" "$root/system"
  : >"$root/apt/status"
  cat >"$root/apt/apt.conf" <<EOF
APT::Architecture "$architecture";
APT::Architectures { "$architecture"; };
APT::Install-Recommends "false";
APT::Sandbox::User "";
Dir::State "$root/apt";
Dir::State::status "$root/apt/status";
Dir::Cache "$root/apt/cache";
EOF
  export APT_CONFIG="$root/apt/apt.conf"
  # One source that cannot be read need not matter: what counts is whether the packages are there.
  apt-get update >>"$log" 2>&1 || true
  apt-get install -y --download-only wine$bits >>"$log" 2>&1 || {
    reason=$(grep -m 1 '^[EW]:' "$log" || tail -n 1 "$log")
    give_up "apt-get cannot fetch wine$bits:$architecture (${reason:-no answer}); all of it is in $log"
  }
  for package in "$root"/apt/cache/archives/*.deb; do
    dpkg-deb -x "$package" "$root/system" 2>>"$log" || give_up "cannot unpack $package"
  done
  rm -rf "$root/apt"
  [ "$bits" = 64 ] || rm -rf "$root"/system/usr/lib/i386-linux-gnu/wine/x86_64-windows
  unset APT_CONFIG

  usr=$root/system/usr
  # The package's own wrapper names absolute paths.
  ln -sf wineserver$bits "$usr/lib/wine/wineserver"
  # What the package does at its configuration: zlib marked as one of Wine's own DLLs.
  dlls=$usr/lib/$triplet/wine/$windows
  zlib=$usr/$mingw/lib/zlib1.dll
  if [ -f "$zlib" ] && [ ! -f "$dlls/zlib1.dll" ]; then
    { head -c 64 "$zlib"; printf 'Wine builtin DLL\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0'
      tail -c +97 "$zlib"; } >"$dlls/zlib1.dll"
  fi
}

mkdir -p "$root"
if [ -x "$root/wine" ] && works; then
  echo "$root/wine"
  exit 0
fi
: >"$log"
command -v $mingw-gcc >/dev/null 2>&1 || give_up "no $mingw-gcc to try it with"
rm -rf "$root/prefix"
if command -v wine >/dev/null 2>&1; then
  write_launcher "$(command -v wine)"
  works && { echo "$root/wine"; exit 0; }
  rm -rf "$root/prefix"
fi
[ -x "$root/system/usr/lib/wine/$program" ] || fetch
system=$root/system
if [ ! -e $loader ]; then
  rm -f "$root/wine"
  give_up "no loader of $bits-bit programs, $loader"
fi
write_launcher "$system/usr/lib/wine/$program" \
  "$libraries:/lib/$triplet:$system/usr/lib/$triplet:$system/lib/$triplet"
if ! works; then
  rm -f "$root/wine"
  give_up "the unpacked one does not run: $(tail -n 1 "$log")"
fi
echo "$root/wine"
