# Completion for bash: entries and options as the command itself tells them.
_zorvikrt_eval() {
  local command=${COMP_WORDS[0]} word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local known='' entry='' i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      --from|--to|--steps|--show|--file|--plot) i=$((i + 1)) ;;
      -*) ;;
      *) entry=${COMP_WORDS[i]}; break ;;
    esac
  done
  case $before in
    --file|--plot)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      return ;;
    --from|--to|--steps) return ;;
    --show)
      # The last of a list with commas.
      local first=''
      [[ $word != *,* ]] || first=${word%,*},
      mapfile -t COMPREPLY < <(compgen -P "$first" -W 'decimal bits register flags' -- "${word##*,}")
      return ;;
  esac
  if [[ $word == -* ]]; then
    known=$("$command" --help 2>/dev/null | grep -o -- '--[a-z]\+' | sort -u)
  elif [[ -z $entry ]]; then
    known=$("$command" --list 2>/dev/null | sed 's/[( ].*//; s/^__zorvik_//')
  fi
  mapfile -t COMPREPLY < <(compgen -W "$known" -- "$word")
}
complete -F _zorvikrt_eval zorvikrt-eval
