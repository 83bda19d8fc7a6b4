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
"$scratch/build/embedding" "$examples/House Renovation.kvdx" "$scratch/embedded.xml" 2>"$scratch/log" ||
  fail "$(cat "$scratch/log")"
"$prefix/bin/MSPDIExport" "$examples/House Renovation.kvdx" "$scratch/program.xml" 2>"$scratch/log" ||
  fail "$(cat "$scratch/log")"
cmp "$scratch/program.xml" "$scratch/embedded.xml"
if "$scratch/build/embedding" "$scratch/absent.kvdx" "$scratch/absent.xml" 2>/dev/null; then
  fail "an absent bundle is exported"
fi
