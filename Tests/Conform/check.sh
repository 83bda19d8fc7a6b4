#!/usr/bin/env bash
# Corrects one plan with both commands and checks the results:
#   check.sh PROGRAMS BUNDLE.kvdx             PROGRAMS is the folder of the three programs
#   check.sh PROGRAMS GENERATOR TASKS         generates the bundle first
#   check.sh PROGRAMS EXACT.xml EXPECTED.log  for a file without a bundle, with the expected warnings
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
programs=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export LC_ALL=C TZ=Europe/Berlin SOURCE_DATE_EPOCH=1777888800 XDG_CONFIG_HOME=$folder

fail() {
  echo "$1" >&2
  exit 1
}

# stable FILE: correcting the file again must change nothing and warn of nothing.
stable() {
  rm -f "$folder/again.xml"
  "$programs/mspdi-conform" "$1" "$folder/again.xml" 2>"$folder/said again" || fail "$(cat "$folder/said again")"
  cmp "$1" "$folder/again.xml" || fail "correcting $1 again changes it"
  [ ! -s "$folder/said again" ] || fail "correcting $1 again warns: $(cat "$folder/said again")"
}

exact=$folder/exact.xml bundle=$2
if [ "${2##*.}" = xml ]; then
  exact=$2 bundle=
elif [ $# -eq 3 ]; then
  bundle=$folder/generated.kvdx
  "$2" "$bundle" "$3"
fi
if [ -n "$bundle" ]; then
  "$programs/MSPDIExport" "$bundle" "$exact" 2>"$folder/log" || fail "$(cat "$folder/log")"
  for options in '' '--keep-dates --currency EUR'; do
    # shellcheck disable=SC2086
    "$programs/mspdi-export" --zone machine $options "$bundle" -o "$folder/sent.xml" 2>"$folder/log" || fail "$(cat "$folder/log")"
    python3 "$here/judge.py" "$exact" "$folder/sent.xml" "$bundle" || fail "mspdi-export $options, see above"
    stable "$folder/sent.xml"
    rm "$folder/sent.xml"
  done
fi
"$programs/mspdi-conform" "$exact" "$folder/copy.xml" 2>"$folder/said" || fail "$(cat "$folder/said")"
python3 "$here/judge.py" "$exact" "$folder/copy.xml" || fail "mspdi-conform, see above"
stable "$folder/copy.xml"
[ -n "$bundle" ] || diff "$3" "$folder/said" || fail "the warnings differ from the expected ones"
