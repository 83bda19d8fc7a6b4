# What the scripts share: the packages that building needs, and the release build. Sourced by bash.

set -euo pipefail
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Everything that building needs on Debian 12, Ubuntu 24.04 or a later one, and what testing needs besides.
PACKAGES=(build-essential cmake ninja-build libarchive-dev libcli11-dev libfmt-dev libgmock-dev libgtest-dev libicu-dev
  libpugixml-dev libtomlplusplus-dev libxml2-dev tzdata)
TEST_PACKAGES=(libxml2-utils parallel planner-data python3 xsltproc)

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "These packages are missing and only root can install them: $*" >&2
    exit 1
  fi
}

# Installs those of the packages that are missing.
ensure_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing ${missing[*]} ..." >&2
  as_root apt-get update -qq >&2
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# Configures a preset once and brings its targets up to date; says something only the first time, for it takes minutes,
# and when that fails.
build_preset() {
  local preset=$1 output
  shift
  ensure_packages "${PACKAGES[@]}"
  [ -x "$ROOT/build/$preset/MSPDIExport" ] || echo "Building in build/$preset ..." >&2
  output=$(
    exec 2>&1
    cd "$ROOT"
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" && cmake --build --preset "$preset" "$@"
  ) || {
    echo "$output" >&2
    exit 1
  }
}
