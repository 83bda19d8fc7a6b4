#!/usr/bin/env bash
# Corrects one plan with both commands and checks the results:
#   check.sh PROGRAMS BUNDLE.kvdx             PROGRAMS is the folder of the three programs
#   check.sh PROGRAMS GENERATOR TASKS         generates the bundle first
#   check.sh PROGRAMS EXACT.xml EXPECTED.log  for a file without a bundle, with the expected warnings
source "$(dirname "${BASH_SOURCE[0]}")/../Install/common.sh"
programs=$1 here=$ROOT/Tests/Conform
export LC_ALL=C TZ=Europe/Berlin SOURCE_DATE_EPOCH=1777888800 XDG_CONFIG_HOME=$scratch

# stable FILE: correcting the file again must change nothing and warn of nothing.
stable() {
  rm -f "$scratch/again.xml"
  "$programs/mspdi-conform" "$1" "$scratch/again.xml" 2>"$scratch/said again" || fail "$(cat "$scratch/said again")"
  cmp "$1" "$scratch/again.xml" || fail "correcting $1 again changes it"
  [ ! -s "$scratch/said again" ] || fail "correcting $1 again warns: $(cat "$scratch/said again")"
}

exact=$scratch/exact.xml bundle=$2
if [ "${2##*.}" = xml ]; then
  exact=$2 bundle=
elif [ $# -eq 3 ]; then
  bundle=$scratch/generated.kvdx
  "$2" "$bundle" "$3"
fi
if [ -n "$bundle" ]; then
  "$programs/MSPDIExport" "$bundle" "$exact" 2>"$scratch/log" || fail "$(cat "$scratch/log")"
  for options in '' '--keep-dates --currency EUR'; do
    # shellcheck disable=SC2086
    "$programs/mspdi-export" --zone machine $options "$bundle" -o "$scratch/sent.xml" 2>"$scratch/log" ||
      fail "$(cat "$scratch/log")"
    python3 "$here/judge.py" "$exact" "$scratch/sent.xml" "$bundle" || fail "mspdi-export $options, see above"
    stable "$scratch/sent.xml"
    rm "$scratch/sent.xml"
  done
fi
"$programs/mspdi-conform" "$exact" "$scratch/copy.xml" 2>"$scratch/said" || fail "$(cat "$scratch/said")"
python3 "$here/judge.py" "$exact" "$scratch/copy.xml" || fail "mspdi-conform, see above"
stable "$scratch/copy.xml"
[ -n "$bundle" ] || diff "$3" "$scratch/said" || fail "the warnings differ from the expected ones"
