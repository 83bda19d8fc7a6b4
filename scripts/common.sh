# shellcheck shell=bash disable=SC2034
# Shared by the scripts: the packages that building needs, and building a preset. Sourced by bash.

set -euo pipefail
unset CDPATH # with it, cd prints the folder, or goes to another one
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# What building needs on Debian 12, Ubuntu 24.04 or later, and what testing needs in addition.
PACKAGES=(build-essential cmake ninja-build libarchive-dev libcli11-dev libfmt-dev libgmock-dev libgtest-dev libicu-dev
  libpugixml-dev libtomlplusplus-dev libxml2-dev tzdata)
TEST_PACKAGES=(libxml2-utils parallel planner-data python3 xsltproc)

# Some tests look at pages in Chromium. Ubuntu has no such package; those tests are skipped there.
BROWSER_PACKAGES=(chromium fonts-dejavu-core)

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "Only root can do that: $*" >&2
    exit 1
  fi
}

# Installs the given packages if they are missing.
ensure_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing ${missing[*]} ..." >&2
  as_root apt-get update -qq >&2
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# Installs the given packages if the system offers them, and prints the names of those that it does not offer.
ensure_offered_packages() {
  local package
  for package in "$@"; do
    if [[ $(LC_ALL=C apt-cache policy "$package") != *"Candidate: "[0-9]* ]] || ! (ensure_packages "$package"); then
      echo "No package $package here: tests that need it are skipped." >&2
    fi
  done
}

# Runs a command, with its output on a terminal. Without a terminal, its output is shown only if it fails.
show_progress() {
  local output
  if [ -t 2 ]; then
    "$@" >&2
  else
    output=$("$@" 2>&1) || { echo "$output" >&2 && return 1; }
  fi
}

# Configures a preset once and brings its targets up to date: build_preset PRESET [--target NAME]. Takes a lock, because
# two builds in one folder would disturb each other.
build_preset() (
  preset=$1 cache=build/$1/CMakeCache.txt
  shift
  ensure_packages "${PACKAGES[@]}"
  cd "$ROOT"
  exec 9<.
  # Status 5: another build has the lock. Some network file systems have no locks.
  flock -n -E 5 9 2>/dev/null || [ $? -ne 5 ] || { echo "Waiting for another build ..." >&2 && flock 9; }
  [ -f "build/$preset/libmspdi.a" ] || echo "Building in build/$preset, which takes some minutes ..." >&2
  # A build folder that was copied together with its tree would build the sources of the original.
  if [ ! -f "build/$preset/build.ninja" ] ||
    [ ! "$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$cache")" -ef "$ROOT" ]; then
    show_progress cmake --fresh --preset "$preset" 9<&- || return 1
  fi
  show_progress cmake --build --preset "$preset" "$@" 9<&- # a compiler cache may leave a server, which would keep the lock
)
