#!/bin/sh
# The assembler as gfortran finds it in this folder: the system's own, and then, in the object it has
# made, the calls of intrinsics renamed to the entries that answer them (the table lies beside this
# file). An object that defines one of these names itself is refused: the program would call its own
# procedure for the intrinsic.
here=$(cd "$(dirname "$0")" && pwd)
assembler=
IFS=:
for folder in $PATH /usr/bin /usr/local/bin; do
  if [ -x "$folder/as" ] && ! [ "$folder/as" -ef "$0" ]; then
    assembler=$folder/as
    break
  fi
done
unset IFS
if [ -z "$assembler" ]; then
  echo "zorvikrt-gfortran: there is no assembler 'as' in PATH" >&2
  exit 1
fi
"$assembler" "$@" || exit

object=a.out
before=
for argument in "$@"; do
  case $before in -o) object=$argument ;; esac
  case $argument in -o?*) object=${argument#-o} ;; --help|--version) exit 0 ;; esac
  before=$argument
done
[ -f "$object" ] || exit 0
# With -flto the calls are made, and renamed, when the program is linked.
case $(readelf -SW "$object" 2>/dev/null) in
*.gnu.lto_*)
  case $(readelf -sW "$object") in
  *__gnu_lto_slim*) exit 0 ;;
  esac
  rm -f "$object"
  echo "zorvikrt-gfortran: -ffat-lto-objects is not supported: calls in such an object cannot be renamed" >&2
  exit 1 ;;
esac
found=$(nm -P "$object" 2>/dev/null | awk '
  NR == FNR { renamed[$1] = $2; next }
  !($1 in renamed) { next }
  $2 == "U" || $2 == "w" { print "rename" }
  $2 ~ /^[TDBRVWGS]$/ { print "own", $1 }' "$here/renames" - | sort -u)
case $found in
*own*)
  name=$(printf '%s\n' "$found" | awk '$1 == "own" { print $2; exit }')
  rm -f "$object"
  echo "zorvikrt-gfortran: the program defines '$name', which is what gfortran calls for an intrinsic: give it another name" >&2
  exit 1 ;;
rename) exec objcopy --redefine-syms="$here/renames" "$object" ;;
esac
