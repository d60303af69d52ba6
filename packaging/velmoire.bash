# Completion of velmoire for bash: its subcommands and options, as its own help lists them.
# shellcheck shell=bash

_velmoire() {
  local program=${COMP_WORDS[0]} word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local subcommand=${COMP_WORDS[1]} words help
  COMPREPLY=()
  case $previous in
    -o | = | --sortie | --reprise)
      compopt -o default
      return
      ;;
    -k | -n) return ;;
  esac
  if [[ $COMP_CWORD -eq 1 || ($COMP_CWORD -eq 2 && $subcommand == aide) ]]; then
    help=$("$program" --aide 2>/dev/null)
    words=$(sed -n '/^Sous-commandes/,/^$/s/^  \([a-z-]\{1,\}\) .*/\1/p' <<<"$help")
    [ "$COMP_CWORD" -eq 2 ] || words+=$'\naide\n--aide\n--version'
  elif [[ $word == -* ]]; then
    help=$("$program" "$subcommand" --aide 2>/dev/null)
    words=$(sed -n '/^Options/,/^$/s/^  \(    \|-., \)\(--[a-z-]*=\{0,1\}\).*/\2/p' <<<"$help")
  else
    compopt -o default
    return
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]] && compopt -o nospace
  return 0
}
complete -F _velmoire velmoire
