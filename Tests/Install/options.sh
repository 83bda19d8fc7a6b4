#!/usr/bin/env bash
# The options that each installed command tells with --help, those of its man page and those of its completions must be
# the same: options.sh PREFIX
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
prefix=$1

# The options in a text, one a line.
options_in() {
  grep -oE '(^|[][ ,(/|])(--[a-z][a-z-]+|-[a-z]\b)' | sed 's/^[^-]*//' | LC_ALL=C sort -u || true
}
long_ones() {
  grep '^--' <<<"$1" || true
}

# MSPDIExport has no --help: it tells its usage when nothing is named. Not every help names the option that asks for it.
told_by() {
  local help
  if help=$("$prefix/bin/$1" --help 2>/dev/null); then
    echo "$help --help"
    ! "$prefix/bin/$1" -h >/dev/null 2>&1 || echo " -h"
  else
    "$prefix/bin/$1" 2>&1 || true
  fi
}
# The tags of the section "OPTIONS".
in_man_page() {
  zcat "$prefix/share/man/man1/$1.1.gz" |
    awk '/^\.SH/ { inside = /OPTIONS/ } inside && isTag { print } { isTag = /^\.T[PQ]/ }' | sed 's/\\-/-/g; s/"//g'
}
offered_by_bash() {
  # shellcheck disable=SC1090
  source "$prefix/share/bash-completion/completions/$1"
  COMP_WORDS=("$1" --) COMP_CWORD=1
  "$(complete -p "$1" | sed 's/.*-F \([^ ]*\) .*/\1/')" || true
  printf '%s\n' "${COMPREPLY[@]}"
}
# What stands behind the command's name where several share a file.
offered_by_zsh() {
  local file
  file=$(grep -lE "^#compdef.* $1( |$)" "$prefix"/share/zsh/*/*) || return 0
  { sed -n "/^  $1)$/,/;;/p" "$file" | grep . || cat "$file"; } | sed "s/[][{}()',=+:]/ /g"
}

for program in "$prefix"/bin/*; do
  command=${program##*/}
  told=$(told_by "$command" | options_in)
  [ -n "$told" ] || fail "$command tells no options"
  expect_same "$command --help and its man page" "$told" "$(in_man_page "$command" | options_in)"
  for shell in bash zsh; do
    expect_same "$command --help and $shell" "$(long_ones "$told")" \
      "$(long_ones "$("offered_by_$shell" "$command" | options_in)")"
  done
done
