#!/usr/bin/env bash
# Tests what bash completes in a folder of three bundles, two folders and two files: completion.sh PREFIX
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
prefix=$1
cd "$scratch"
mkdir 'An old plan' Plan.kvdx 'Work Plan.KVDX' Xtra
touch list.txt Plan.xml Sent.kvdx.zip

# offers EXPECTED WORD...: EXPECTED has the completions of the last word, separated by "|".
offers() {
  complete_in_bash "$prefix" "${@:2}"
  expect_same "${*:2}" "$1" "$(IFS='|' && echo "${COMPREPLY[*]}")"
}
offers 'Plan.kvdx|Work Plan.KVDX|An old plan|Xtra' MSPDIExport ''
offers '--input-list' MSPDIExport --i
offers 'Plan.xml' MSPDIExport Plan.kvdx P
offers 'Plan.xml' MSPDIExport --input-list list.txt P
offers 'Plan.kvdx|Sent.kvdx.zip|Work Plan.KVDX|An old plan|Xtra' mspdi-export --keep-dates ''
offers '--keep-dates' mspdi-export --k
offers 'An old plan|Xtra|Plan.xml' mspdi-export Plan.kvdx -o ''
offers 'Xtra' mspdi-export --output = X
offers '' mspdi-export --currency ''
offers 'Plan.kvdx|Sent.kvdx.zip|Work Plan.KVDX|An old plan|Xtra' mspdi-export-all --jobs 2 ''
offers 'An old plan|Xtra' mspdi-export-all --output ''
offers 'An old plan|Xtra' mspdi-export-all --output =
offers 'Xtra' mspdi-export-all --output = X
offers 'Plan.xml|An old plan|Xtra' mspdi-conform ''
offers '--help' mspdi-conform -
offers '' mspdi-conform Plan.xml copy.xml ''
offers 'Plan.xml|An old plan|Xtra' mspdi-page ''
offers 'An old plan|Xtra' mspdi-page Plan.xml ''
offers '--help|--version' mspdi-page --
