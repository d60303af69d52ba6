#compdef velmoire
# Completion of velmoire for zsh: its subcommands and options, as its own help lists them.

# _velmoire_listed LIST WORD...: the items of a list in the help that the words print, as "name:what it is".
_velmoire_listed() {
  local list=$1
  shift
  "$@" 2>/dev/null | awk -v list="^$list" '
    function tell() { if (name != "") print name ":" text; name = "" }
    $0 ~ list { listed = 1; next }
    !NF { tell(); listed = 0 }
    !listed { next }
    match($0, /^  (    |-., )?[a-z-]+/) {
      tell()
      name = substr($0, 1, RLENGTH)
      text = substr($0, RLENGTH + 1)
      sub(/^ *(-., )?/, "", name)
      if (sub(/^=[^ ]*/, "", text)) name = name "="
      sub(/^ +/, "", text)
      next
    }
    { sub(/^ +/, ""); text = text " " $0 }
    END { tell() }'
}

_velmoire() {
  local -a found valued
  case $words[CURRENT-1] in
    -o | --sortie | --reprise) _files; return ;;
    -k | -n) return 1 ;;
  esac
  if [[ $CURRENT == 2 || ($CURRENT == 3 && $words[2] == aide) ]]; then
    found=(${(f)"$(_velmoire_listed Sous-commandes $words[1] --aide)"})
    (( CURRENT == 3 )) || found+=(aide:"l’aide d’une sous-commande" --aide:"affiche l’aide" --version:"affiche la version")
    _describe sous-commande found
  elif [[ $PREFIX == -*=* ]]; then
    _files -P "${PREFIX%%=*}="
  elif [[ $PREFIX == -* ]]; then
    found=(${(f)"$(_velmoire_listed Options $words[1] $words[2] --aide)"})
    valued=(${(M)found:#*=:*})
    found=(${found:|valued})
    _describe -o option found
    valued=(${valued/=:/:})
    _describe -o option valued -S =
  else
    _files
  fi
}

_velmoire "$@"
