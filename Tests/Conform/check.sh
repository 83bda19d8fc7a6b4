#!/usr/bin/env bash
# Makes the copy of one exported file and judges it:
#   check.sh IN.xml [EXPECTED.log]       with what the command is to say on standard error
#   check.sh EXPORTER BUNDLE.kvdx        exports the bundle first
#   check.sh EXPORTER GENERATOR TASKS    generates the bundle first
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
conform=$here/../../scripts/mspdi-conform
import=/usr/share/planner/stylesheets/msp2planner.xsl
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# Sorting and comparing go by bytes; awk sees bytes too.
export LC_ALL=C TZ=Europe/Berlin SOURCE_DATE_EPOCH=1777888800 XDG_CONFIG_HOME=$folder

fail() {
  echo "$1" >&2
  exit 1
}

if [ "${1##*.}" = xml ]; then
  in=$1
else
  in=$folder/exported.xml bundle=$2
  if [ $# -eq 3 ]; then
    bundle=$folder/generated.kvdx
    "$2" "$bundle" "$3"
  fi
  "$1" "$bundle" "$in" 2>"$folder/log" || fail "$(cat "$folder/log")"
fi
copy=$folder/copy.xml

"$conform" "$in" "$copy" 2>"$folder/said" || fail "$(cat "$folder/said")"
expected_log=${2:-}
if [ "${expected_log##*.}" = log ]; then
  diff "$expected_log" "$folder/said" || fail "other messages than expected"
fi

echo "-- every element and value, with the changes that the copy is for"
awk -v fields="$here/fields.txt" -v base="$(basename "$in" .xml)" -f "$here/read.awk" -f "$here/expect.awk" \
  -f "$here/facts.awk" "$in" | sort >"$folder/expected.facts"
awk -f "$here/read.awk" -f "$here/facts.awk" "$copy" | sort >"$folder/copy.facts"
grep -q '/Task\[1\]/UID' "$folder/expected.facts" || fail "no task was read from $in"
diff "$folder/expected.facts" "$folder/copy.facts" || fail "the copy differs from what it should be"

echo "-- published order"
awk -v orders="$here/orders.txt" -f "$here/read.awk" -f "$here/order.awk" "$copy" >"$folder/misplaced"
[ ! -s "$folder/misplaced" ] || fail "$(sort "$folder/misplaced" | uniq -c)"

echo "-- stable"
"$conform" "$copy" "$folder/copy of copy.xml" 2>"$folder/said again"
cmp "$copy" "$folder/copy of copy.xml" || fail "a copy of the copy differs"
[ ! -s "$folder/said again" ] || fail "of the copy is said: $(cat "$folder/said again")"

echo "-- GNOME Planner's import"
[ -f "$import" ] || fail "no $import: install planner-data"
# The import names no encoding for its result, so that xsltproc writes references.
xsltproc --nonet "$import" "$copy" | xmllint --encode UTF-8 - >"$folder/planner.xml"
awk -f "$here/read.awk" -f "$here/shown.awk" "$in" >"$folder/expected.shown"
awk -f "$here/read.awk" -f "$here/shown.awk" "$folder/planner.xml" >"$folder/planner.shown"
diff "$folder/expected.shown" "$folder/planner.shown" || fail "Planner shows other tasks or links"
