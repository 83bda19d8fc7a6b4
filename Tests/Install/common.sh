# Shared by the test scripts. Sourced by bash.

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/common.sh"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# complete_in_bash PREFIX WORD...: what bash offers in place of the last word is then in COMPREPLY.
complete_in_bash() {
  # shellcheck disable=SC1090
  source "$1/share/bash-completion/completions/$2"
  COMP_WORDS=("${@:2}") COMP_CWORD=$(($# - 2))
  "$(complete -p "$2" | sed 's/.*-F \([^ ]*\) .*/\1/')" || true # compopt fails outside a completion
}

# Compares two texts line by line.
expect_same() {
  diff <(echo "$2") <(echo "$3") || fail "$1: < expected, > actual"
}
