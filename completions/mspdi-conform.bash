# bash completion of mspdi-conform: its option, or an exported file, then the copy.

_mspdi_conform() {
  local current=${COMP_WORDS[COMP_CWORD]}
  COMPREPLY=()
  [[ $COMP_CWORD -le 2 ]] || return
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W '--help' -- "$current")
    return
  fi
  compopt -o filenames -o nosort 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -X '!*.xml' -- "$current"; compgen -d -X '*.[Kk][Vv][Dd][Xx]' -- "$current")
}
complete -F _mspdi_conform mspdi-conform
