#!/bin/sh
# gfortran, with the intrinsics of this runtime: compiles and links an unmodified program so that
# what it calls for EXP, SIN, MOD, ** and their kin are entries of libzorvikrt.
#
#   zorvikrt-gfortran ARGUMENTS OF GFORTRAN
#   zorvikrt-gfortran --print-flags [-m32] compile|link
#   zorvikrt-gfortran --compare ARGUMENTS OF GFORTRAN [-- ARGUMENTS OF THE PROGRAM]
#
# The compiler is `gfortran`, or what the variable ZORVIKRT_GFORTRAN names.
set -u
known_versions=12
prefix=$(cd "$(dirname "$(readlink -f "$0")")/.." && pwd)
compiler=${ZORVIKRT_GFORTRAN:-gfortran}

fail() {
  echo "zorvikrt-gfortran: $1" >&2
  exit 2
}

usage() {
  sed -n 's/^#   //p' "$0"
  echo "see docs/legacy.md and the manual page"
}

# Sets library and tools for the target that the arguments ask for.
find_target() {
  triplet=x86_64-linux-gnu
  for argument in "$@"; do
    case $argument in
      -m32) triplet=i386-linux-gnu ;;
      -m64) triplet=x86_64-linux-gnu ;;
      -mx32) fail "there is no build for -mx32" ;;
    esac
  done
  library=
  for folder in "$prefix/lib/$triplet" "$prefix/lib"; do
    if [ "$(cat "$folder/zorvikrt/gfortran/target" 2>/dev/null)" = "$triplet" ]; then
      library=$folder
      break
    fi
  done
  [ -n "$library" ] || fail "the $triplet build is not installed in $prefix"
  tools=$library/zorvikrt/gfortran
}

# A folder that lasts as long as the command.
scratch=
make_scratch() {
  [ -z "$scratch" ] || return 0
  scratch=$(mktemp -d) || exit 2
  trap 'rm -rf "$scratch"' EXIT
}

# gfortran splits the name of the file that it reads first, which lies in $tools, at blanks.
name_tools_without_blanks() {
  case $tools in *[[:space:]]*) ;; *) return 0 ;; esac
  make_scratch
  ln -s "$tools" "$scratch/tools"
  tools=$scratch/tools
}

# Runs $action with the flags of `compile` before the arguments, of `link` behind, or of both.
with_flags() {
  steps=$1
  shift
  case $steps in
    *link*)
      set -- "$@" "-L$library" -Wl,-u,zorvikrt_gfortran_start -lzorvikrt_gfortran \
        -Wl,--push-state,--as-needed -lzorvikrt -Wl,--pop-state
      [ "$prefix" = /usr ] || set -- "$@" "-Wl,-rpath,$library" ;;
  esac
  case $steps in
    *compile*)
      # A processor without sqrt, rint and trigonometry of its own: gfortran calls them.
      [ "$triplet" = x86_64-linux-gnu ] || set -- -march=i486 -mno-fancy-math-387 "$@"
      set -- "-B$tools/" "$@" ;;
  esac
  "$action" "$@"
}

print_words() {
  echo "$*"
}

find_compiler() {
  command -v "$compiler" >/dev/null 2>&1 || fail "there is no compiler '$compiler': install gfortran, or set ZORVIKRT_GFORTRAN"
}

# A version whose calls nobody has looked through works, but may call by names that are not in the table.
check_version() {
  version=$("$compiler" -dumpversion 2>/dev/null) || fail "'$compiler -dumpversion' fails"
  case " $known_versions " in
    *" ${version%%.*} "*) ;;
    *) echo "zorvikrt-gfortran: note: $compiler $version was not checked: an intrinsic it calls by a new name keeps its own result" >&2 ;;
  esac
}

# Whether there is something to compile or link before --.
has_input() {
  for argument in "$@"; do
    case $argument in --) return 1 ;; -*) ;; *) return 0 ;; esac
  done
  return 1
}

# gfortran with our flags before and, where it links, behind the caller's.
build() {
  links=no
  ! has_input "$@" || links=yes
  for argument in "$@"; do
    case $argument in
      -c|-S|-E|-fsyntax-only|-M|-MM|-r) links=no ;;
      -static) fail "-static: libzorvikrt is a shared library; -static-libgfortran works" ;;
    esac
  done
  name_tools_without_blanks
  action=$compiler
  if [ $links = yes ]; then
    check_version
    with_flags compile+link "$@"
  else
    with_flags compile "$@"
  fi
}

compare() {
  make_scratch
  count=0
  for argument in "$@"; do
    [ "$argument" != -- ] || break
    count=$((count + 1))
  done
  # The two halves of "$@", before and behind --.
  compile_both() {
    "$compiler" "$@" -o "$scratch/plain" && build "$@" -o "$scratch/ours"
  }
  behind=$((count + 1))
  eval "compile_both $(seq -f '"${%g}"' 1 "$count" | tr '\n' ' ')" || exit 1
  [ -t 0 ] && : >"$scratch/input" || cat >"$scratch/input"
  run() {
    [ $# -lt "$behind" ] && shift $# || shift "$behind"
    "$program" "$@" <"$scratch/input" >"$program.out" 2>&1
    echo "exit status $?" >>"$program.out"
  }
  program=$scratch/plain; run "$@"
  program=$scratch/ours; run "$@"
  colour=never
  [ -t 1 ] && colour=always
  if diff -U0 --color=$colour --label "gfortran" --label "zorvikrt-gfortran" "$scratch/plain.out" "$scratch/ours.out"; then
    echo "no line of the output differs"
  fi
}

case ${1-} in
  ''|--help) usage; [ $# -gt 0 ]; exit ;;
  --print-flags)
    shift
    what=
    for argument in "$@"; do
      case $argument in
        compile|link) what=$argument ;;
        -m32|-m64) ;;
        *) fail "--print-flags takes compile or link, and -m32 or -m64, not '$argument'" ;;
      esac
    done
    [ -n "$what" ] || fail "--print-flags takes compile or link"
    find_target "$@"
    case $library in *[[:space:]]*) fail "'$library' has a blank: a build system cannot take it into its flags" ;; esac
    action=print_words
    with_flags "$what" ;;
  --compare)
    shift
    has_input "$@" || fail "--compare takes what gfortran would take: zorvikrt-gfortran --compare -O2 prog.f"
    find_compiler
    find_target "$@"
    compare "$@" ;;
  *)
    find_compiler
    find_target "$@"
    build "$@" ;;
esac
