#!/usr/bin/env bash
# Runs the installed program, and mspdi-conform behind it, on an installed example: program.sh PREFIX
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
prefix=$1
TZ=America/New_York SOURCE_DATE_EPOCH=1777888800 XDG_CONFIG_HOME=$scratch \
  "$prefix/bin/MSPDIExport" "$prefix/share/doc/mspdi-export/Examples/Product Launch.kvdx" "$scratch" 2>"$scratch/log" ||
  fail "$(cat "$scratch/log")"
tasks=$(grep -c '<task id' "$ROOT/Examples/Product Launch.kvdx/Current Plan.xml")
expect_same "tasks of the example" "$tasks" "$(grep -c '<Task>' "$scratch/Product Launch.xml")"
"$prefix/bin/mspdi-conform" "$scratch/Product Launch.xml" "$scratch/copy.xml"
expect_same "numbered tasks of the copy" "$tasks" "$(grep -c '<OutlineNumber>' "$scratch/copy.xml")"
