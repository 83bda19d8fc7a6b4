# Shared by the test scripts. Sourced by bash.

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/common.sh"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# Compares two texts line by line.
expect_same() {
  diff <(echo "$2") <(echo "$3") || fail "$1: < expected, > actual"
}
