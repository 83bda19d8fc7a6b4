# bash completion of MSPDIExport: bundles, then folders that may contain bundles.

_mspdiexport() {
  local current=${COMP_WORDS[COMP_CWORD]} file
  compopt -o filenames -o nosort 2>/dev/null
  COMPREPLY=()
  local -a folders=() bundles=() files=()
  while IFS= read -r file; do
    case ${file,,} in
      *.kvdx) bundles+=("$file") ;;
      *) folders+=("$file") ;;
    esac
  done < <(compgen -d -- "$current")
  case $COMP_CWORD,${COMP_WORDS[1]} in
    1,*)
      COMPREPLY=("${bundles[@]}" "${folders[@]}")
      [[ --input-list != "$current"* || -z $current ]] || COMPREPLY+=(--input-list)
      ;;
    2,--input-list)
      # The list, a text file.
      while IFS= read -r file; do
        [[ -d $file ]] || files+=("$file")
      done < <(compgen -f -- "$current")
      COMPREPLY=("${files[@]}" "${folders[@]}")
      ;;
    2,* | 3,--input-list)
      # The output: a folder, or a file to write.
      while IFS= read -r file; do
        files+=("$file")
      done < <(compgen -f -X '!*.xml' -- "$current")
      COMPREPLY=("${folders[@]}" "${files[@]}")
      ;;
  esac
}
complete -F _mspdiexport MSPDIExport
