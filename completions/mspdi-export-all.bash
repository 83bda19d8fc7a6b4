# bash completion of mspdi-export-all: options, or bundles, then folders.

_mspdi_export_all() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} file
  local -a folders=() bundles=()
  COMPREPLY=()
  # bash passes "--log=DIR" as three words.
  [[ $current != = ]] || current=
  [[ $previous != = ]] || previous=${COMP_WORDS[COMP_CWORD - 2]}
  case $previous in
    --jobs | --zone | --currency) return ;;
    --sshlogin)
      mapfile -t COMPREPLY < <(compgen -A hostname -- "$current")
      return
      ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W '--zone --currency --keep-dates --strict
      --overwrite --exact --conform --jobs --output --sshlogin --log --resume --help' -- "$current")
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
    --output | --log) COMPREPLY=("${folders[@]}") ;;
    *) COMPREPLY=("${bundles[@]}" "${folders[@]}") ;;
  esac
}
complete -F _mspdi_export_all mspdi-export-all
