# bash completion of mspdi-export-all: options, else bundles first, then folders.

_mspdi_export_all() {
  local current=${COMP_WORDS[COMP_CWORD]} file
  local -a folders=() bundles=()
  COMPREPLY=()
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --jobs) return ;;
    --sshlogin)
      mapfile -t COMPREPLY < <(compgen -A hostname -- "$current")
      return
      ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W '--conform --jobs --output --sshlogin --log --resume --help' -- "$current")
    return
  fi
  compopt -o filenames -o nosort 2>/dev/null
  while IFS= read -r file; do
    case ${file,,} in
      *.kvdx) bundles+=("$file") ;;
      *) folders+=("$file") ;;
    esac
  done < <(compgen -d -- "$current")
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --output | --log) COMPREPLY=("${folders[@]}") ;;
    *) COMPREPLY=("${bundles[@]}" "${folders[@]}") ;;
  esac
}
complete -F _mspdi_export_all mspdi-export-all
