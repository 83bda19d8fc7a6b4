#!/usr/bin/env bash
# Installs into an empty folder and compares the installed files with expected-files: files.sh CMAKE BUILD PREFIX LIBDIR
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cmake=$1 build=$2 prefix=$3 library_folder=$4
documents=share/doc/mspdi-export

rm -rf "$prefix"
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
# The name of one file contains the build type. The documents are compared with the tree below, so that new ones need no
# new row.
actual=$(cd "$prefix" && find . -type f -printf '%m %P\n' | grep -v " $documents/docs/" |
  sed -e "s| $library_folder/| LIBDIR/|" -e 's|mspdiTargets-[a-z]*\.cmake|mspdiTargets-CONFIG.cmake|' |
  LC_ALL=C sort -k2)
expect_same "installed files" "$(cat "$(dirname "${BASH_SOURCE[0]}")/expected-files")" "$actual"
diff -r "$ROOT/docs" "$prefix/$documents/docs"
for page in "$prefix"/share/man/man1/*.gz; do
  zcat "$page" | cmp - "$ROOT/man/$(basename "$page" .gz)"
done
if grep -rlF -e "$ROOT" -e "$build" "$prefix" --include=*.cmake; then
  fail "these files contain paths of the build"
fi
