#!/usr/bin/env bash
# Relative links in the documents of these folders must lead to a file in the same folder, and to an existing heading:
#   links.sh FOLDER...
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# leads_somewhere FOLDER DOCUMENT LINK: links write headings in lower case, with "-" for a blank.
leads_somewhere() {
  local target=$2
  [[ $3 == '#'* ]] || target=$(dirname "$2")/${3%%#*}
  target=$(realpath -e "$target") && [[ $target == "$(realpath "$1")"/* ]] || return 1
  [[ $3 != *'#'* ]] || sed -nE 's/^#+ (.*)/\L\1/p' "$target" | sed 's/[^a-z0-9 _-]//g; y/ /-/' | grep -qx -- "${3#*#}"
}

for folder in "$@"; do
  cd "$folder"
  links=$(grep -oE '\]\([^):]+\)' ./*.md docs/*.md)
  while IFS=: read -r document link; do
    leads_somewhere "$folder" "$document" "${link:2:-1}" || fail "$folder/$document: $link leads nowhere"
  done <<<"$links"
done
