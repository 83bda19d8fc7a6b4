#!/usr/bin/env bash
# Runs the installed commands on an installed example: program.sh PREFIX
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
prefix=$1
TZ=America/New_York SOURCE_DATE_EPOCH=1777888800 XDG_CONFIG_HOME=$scratch \
  "$prefix/bin/MSPDIExport" "$prefix/share/doc/mspdi-export/Examples/Product Launch.kvdx" "$scratch" 2>"$scratch/log" ||
  fail "$(cat "$scratch/log")"
tasks=$(grep -c '<task id' "$ROOT/Examples/Product Launch.kvdx/Current Plan.xml")
expect_same "tasks of the example" "$tasks" "$(grep -c '<Task>' "$scratch/Product Launch.xml")"
"$prefix/bin/mspdi-conform" "$scratch/Product Launch.xml" "$scratch/copy.xml"
"$prefix/bin/mspdi-export" "$prefix/share/doc/mspdi-export/Examples/Product Launch.kvdx" -o "$scratch/sent.xml" 2>/dev/null
"$prefix/bin/mspdi-page" "$scratch/sent.xml" 2>/dev/null
expect_same "rows of the page" "$tasks" "$(grep -c '<tr data-l' "$scratch/sent.html")"
for file in copy sent; do
  expect_same "numbered tasks of $file" "$tasks" "$(grep -c '<OutlineNumber>' "$scratch/$file.xml")"
done
