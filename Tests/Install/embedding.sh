#!/usr/bin/env bash
# Builds Examples/embedding against the installed library and runs it: embedding.sh CMAKE PREFIX CONFIGURE_ARGUMENT...
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cmake=$1 prefix=$2
shift 2
examples=$prefix/share/doc/mspdi-export/Examples
{
  "$cmake" -S "$examples/embedding" -B "$scratch/build" -D CMAKE_PREFIX_PATH="$prefix" "$@"
  "$cmake" --build "$scratch/build"
} >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"
export TZ=UTC SOURCE_DATE_EPOCH=1777888800 XDG_CONFIG_HOME=$scratch
embedding=$scratch/build/embedding

said=$("$embedding" "$examples/House Renovation.kvdx" "$scratch/embedded.xml" 2>"$scratch/log")
expect_same 'what it says' "$scratch/embedded.xml: 127 tasks, dates of Europe/London" "$said"
expect_same 'dots, one for each but the top task' 126 "$(tr -dc . <<<"$(grep '^\.*$' "$scratch/log")" | wc -c)"
"$prefix/bin/mspdi-export" -q -o "$scratch/program.xml" "$examples/House Renovation.kvdx"
cmp "$scratch/program.xml" "$scratch/embedded.xml"

# A plan without a title gets the title that the program passes.
cp -r "$examples/House Renovation.kvdx" "$scratch/Untitled.kvdx"
sed -i 's|<title>House Renovation, .*</title>||' "$scratch/Untitled.kvdx/"*.xml
"$embedding" "$scratch/Untitled.kvdx" "$scratch/untitled.xml" >/dev/null 2>&1
expect_same 'name of the project' '  <Name>Embedded plan</Name>' "$(grep -m 1 '<Name>' "$scratch/untitled.xml")"
if "$embedding" "$scratch/absent.kvdx" "$scratch/absent.xml" 2>/dev/null; then
  fail "exporting an absent bundle succeeds"
fi
