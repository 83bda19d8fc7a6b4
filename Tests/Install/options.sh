#!/usr/bin/env bash
# For each installed command, the options in --help, the man page and the completions must be the same:
#   options.sh PREFIX
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
prefix=$1

# Prints the options in a text, one on each line.
options_in() {
  grep -oE '(^|[][ ,(/|])(--[a-z][a-z-]+|-[a-z]\b)' | sed 's/^[^-]*//' | LC_ALL=C sort -u || true
}
long_ones() { grep '^--' <<<"$1" || true; }

# MSPDIExport has no --help: without arguments, it prints its usage. Some usages do not list --help and -h, so these are
# added.
told_by() {
  local help
  if help=$("$prefix/bin/$1" --help 2>/dev/null); then
    echo "$help --help"
    ! "$prefix/bin/$1" -h >/dev/null 2>&1 || echo " -h"
  else
    "$prefix/bin/$1" 2>&1 || true
  fi
}
# The option names in the section "OPTIONS".
in_man_page() {
  zcat "$prefix/share/man/man1/$1.1.gz" |
    awk '/^\.SH/ { inside = /OPTIONS/ } inside && isTag { print } { isTag = /^\.T[PQ]/ }' | sed 's/\\-/-/g; s/"//g'
}
offered_by_bash() {
  complete_in_bash "$prefix" "$1" --
  printf '%s\n' "${COMPREPLY[@]}"
}
# If several commands share a file, only the part for this command.
offered_by_zsh() {
  local file
  file=$(grep -lE "^#compdef.* $1( |$)" "$prefix"/share/zsh/*/*) || return 0
  { sed -n "/^  $1)$/,/;;/p" "$file" | grep . || cat "$file"; } | sed "s/[][{}()',=+:]/ /g"
}

for program in "$prefix"/bin/*; do
  command=${program##*/}
  told=$(told_by "$command" | options_in)
  [ -n "$told" ] || fail "the usage of $command lists no options"
  expect_same "$command --help and its man page" "$told" "$(in_man_page "$command" | options_in)"
  for shell in bash zsh; do
    expect_same "$command --help and $shell" "$(long_ones "$told")" \
      "$(long_ones "$("offered_by_$shell" "$command" | options_in)")"
  done
done
