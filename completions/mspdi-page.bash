# bash completion of mspdi-page: an exported file, then the folder of the page.

_mspdi_page() {
  local current=${COMP_WORDS[COMP_CWORD]}
  COMPREPLY=()
  compopt -o filenames -o nosort 2>/dev/null
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W '--help --version' -- "$current")
    return
  fi
  [[ $COMP_CWORD -le 2 ]] || return
  mapfile -t COMPREPLY < <([[ $COMP_CWORD -eq 1 ]] && compgen -f -X '!*.xml' -- "$current"
    compgen -d -X '*.[Kk][Vv][Dd][Xx]' -- "$current")
}
complete -F _mspdi_page mspdi-page
