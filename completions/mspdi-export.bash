# bash completion of mspdi-export: options, or bundles, then folders that may contain bundles.

_mspdi_export() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} file
  local -a folders=() bundles=()
  COMPREPLY=()
  # bash passes "--output=DIR" as three words.
  [[ $current != = ]] || current=
  [[ $previous != = ]] || previous=${COMP_WORDS[COMP_CWORD - 2]}
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W '--output --overwrite --zone --currency --keep-dates --page --check --strict
      --quiet --verbose --json --version --help' -- "$current")
    return
  fi
  compopt -o filenames -o nosort 2>/dev/null
  while IFS= read -r file; do
    case ${file,,} in
      *.kvdx | *.kvdx.zip) bundles+=("$file") ;;
      *) [[ ! -d $file ]] || folders+=("$file") ;;
    esac
  done < <(compgen -f -- "$current")
  case $previous in
    --currency | --zone) ;;
    # A folder, or a file to write.
    -o | --output)
      mapfile -t COMPREPLY < <(compgen -f -X '!*.xml' -- "$current")
      COMPREPLY=("${folders[@]}" "${COMPREPLY[@]}")
      ;;
    *) COMPREPLY=("${bundles[@]}" "${folders[@]}") ;;
  esac
}
complete -F _mspdi_export mspdi-export
