#!/usr/bin/env bash
# Runs one of the cases below with the installed mspdi-export-all: export-all.sh PREFIX CASE
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
ensure_packages parallel
export_all=$1/bin/mspdi-export-all case=$2
export XDG_CONFIG_HOME=$scratch TZ=UTC
cd "$scratch"

# make_bundle FOLDER TITLE: a plan of one task. Without a process of its own, for there are many.
make_bundle() {
  printf '%s\n' '<table-of-contents><project><scenario id="s1" filename="Plan.xml" name="Plan"/></project>' \
    '<window><editing-scenario>s1</editing-scenario></window></table-of-contents>' >"$1/__TOC.xml"
  printf '%s\n' '<scenario xmlns="http://www.korvella.example/namespace/Korvella/v2">' \
    '<top-resource idref="r-1"/><resource id="r-1"><type>Group</type></resource>' \
    "<top-task idref=\"t1\"/><task id=\"t1\"><title>$2</title><type>task</type>" \
    '<start-date>2026-05-04T08:00:00Z</start-date><end-date>2026-05-04T12:00:00Z</end-date>' \
    '<duration>14400</duration><effort>14400</effort></task></scenario>' >"$1/Plan.xml"
}

# run STATUS ARGUMENT...: leaves both outputs in $counts and the file "errors".
run() {
  local expected=$1 status=0
  shift
  counts=$("$export_all" "$@" 2>errors) || status=$?
  [ "$status" -eq "$expected" ] || fail "status $status instead of $expected: $* $(cat errors)"
}

# refused MESSAGE ARGUMENT...
refused() {
  run 2 "${@:2}"
  grep -q -- "$1" errors || fail "'$1' is not in: $(cat errors)"
}

files_below() { (cd "$1" && find . -iname '*.kvdx' -prune -o -name '*.xml' -printf '%P\n' | LC_ALL=C sort); }

thousand_bundles_arrive_each_with_its_own_plan() {
  local bundle expected
  mkdir -p many/folder-{01..20}/Plan-{01..50}.kvdx
  for bundle in many/*/*.kvdx; do
    make_bundle "$bundle" "Task of ${bundle#many/}"
  done
  run 0 --output arrived --log many-log many
  expect_same counts '1000 of 1000 bundles exported, 0 failed, 0 not run' "$counts"
  # Where /sys is missing, parallel's lscpu complains.
  expect_same errors '' "$(grep -v ^lscpu: errors)"
  expected=$(printf '%s\n' folder-{01..20}/Plan-{01..50} | sed 's|.*|&.xml:<Name>Task of &.kvdx</Name>|')
  expect_same outputs "$expected" "$(cd arrived && grep -ro '<Name>Task of .*</Name>' | LC_ALL=C sort)"
  expect_same 'job log' 1001 "$(wc -l <many-log/joblog)"
}

failed_bundles_are_told_and_resumed() {
  local plan
  mkdir -p "some/it's north/Plan.kvdx" some/south/Plan.kvdx some/Broken.KVDX
  for plan in some/*/Plan.kvdx; do
    make_bundle "$plan" "$plan"
  done
  echo nonsense >some/Broken.KVDX/__TOC.xml
  run 1 --jobs 2 --log some-log some some/south
  expect_same counts '2 of 3 bundles exported, 1 failed, 0 not run' "$counts"
  expect_same 'told as failed' "Failed: $scratch/some/Broken.KVDX" "$(grep ^Failed errors)"
  grep -q '    .*### Exporter FAILED' errors || fail "the log of the failed export is missing"
  run 2 --log some-log some
  make_bundle some/Broken.KVDX mended
  touch some-log/mine.{seq,err}
  run 0 --jobs +1 --log some-log --resume
  expect_same 'files of the user' 'some-log/mine.err some-log/mine.seq' "$(echo some-log/*.{err,seq})"
  expect_same counts '3 of 3 bundles exported, 0 failed, 0 not run' "$counts"
  # What was exported is not exported again, under a number.
  expect_same 'outputs' "$(printf '%s\n' Broken.xml "it's north/Plan.xml" south/Plan.xml)" "$(files_below some)"
}

conforming_copies_are_made_beside_the_exports() {
  local plan
  mkdir -p bin plans/{Bolts,Old,Unlucky}.kvdx
  for plan in plans/*.kvdx; do
    make_bundle "$plan" "$plan"
  done
  sed -i 's|</type></resource>|</type><child-resource idref="r1"/></resource>|
          s|<top-task|<resource id="r1"><name>Nuts, bolts</name><type>Material</type></resource>&|' plans/Bolts.kvdx/Plan.xml
  echo old >'plans/Old (conforming).xml'
  # Stands for a command that runs out of memory over one plan.
  cp "${export_all%/*}"/{MSPDIExport,mspdi-export-all} bin/
  printf '%s\n' '#!/bin/bash' "[[ \$1 != */Unlucky.xml ]] || { echo out of memory >&2; exit 5; }" \
    "exec '${export_all%/*}/mspdi-conform' \"\$@\"" >bin/mspdi-conform
  chmod +x bin/mspdi-conform
  export_all=bin/mspdi-export-all run 1 --conform --log conform-log plans
  expect_same counts '2 of 3 bundles exported, 1 failed, 0 not run' "$counts"
  expect_same 'told as failed' "Failed: $scratch/plans/Unlucky.kvdx" "$(grep ^Failed errors)"
  grep -q '    out of memory' errors || fail "the log of the failed copy is missing"
  # Plans come in order of their names, so Bolts is number 1.
  grep -q '"Nuts, bolts" is now "Nuts; bolts"' conform-log/1.log || fail "$(cat conform-log/1.log)"
  expect_same 'an old copy' old "$(cat 'plans/Old (conforming).xml')"
  run 2 --log conform-log --resume --conform
  run 0 --log conform-log --resume
  expect_same counts '3 of 3 bundles exported, 0 failed, 0 not run' "$counts"
  expect_same outputs "$(printf '%s\n' {Bolts,Old,Unlucky}'.xml' {Bolts,Old,Unlucky}' (conforming).xml' \
    'Old (conforming)-1.xml' | LC_ALL=C sort)" "$(files_below plans)"
  expect_same 'copies of the new exports' $'Bolts (conforming).xml\nOld (conforming)-1.xml\nUnlucky (conforming).xml' \
    "$(cd plans && grep -l '<OutlineNumber>' -- *.xml | LC_ALL=C sort)"
}

arguments_of_one_name_stay_apart() {
  mkdir -p a/plans/Plan.kvdx b/plans/Plan.kvdx
  make_bundle a/plans/Plan.kvdx a
  make_bundle b/plans/Plan.kvdx b
  run 0 --output apart a/plans b/plans/Plan.kvdx/
  expect_same outputs "$(printf '%s\n' a/plans/Plan.xml b/plans/Plan.xml)" "$(files_below apart)"
}

names_that_the_log_cannot_show_as_they_are() {
  local bundle
  for bundle in $'esc\x1b.kvdx' $'c1 \xc2\x85.kvdx' 'spelled \x1b \n.kvdx'; do
    mkdir -p "odd/$bundle"
    make_bundle "odd/$bundle" odd
  done
  run 0 odd
  expect_same counts '3 of 3 bundles exported, 0 failed, 0 not run' "$counts"
}

other_machines_are_reached_by_ssh() {
  # Stands for ssh, called as "ssh MACHINE -- COMMAND": notes the machine and runs the command here, in another zone.
  printf '%s\n' '#!/bin/sh' "echo \"\$1\" >>'$scratch/machines'" 'shift 2' 'TZ=UTC exec sh -c "$*"' >ssh-stand-in
  chmod +x ssh-stand-in
  mkdir -p remote/{1,2,3,4}/Plan.kvdx
  for bundle in remote/*/*.kvdx; do
    make_bundle "$bundle" "$bundle"
  done
  # Without a login shell, as services are run.
  SHELL=/usr/sbin/nologin PARALLEL_SSH=$scratch/ssh-stand-in TZ=Asia/Tokyo \
    run 0 --sshlogin 1/alpha,1/beta --log remote-log --output brought remote
  expect_same machines $'alpha\nbeta' "$(cut -f2 remote-log/joblog | grep -v Host | sort -u)"
  expect_same 'asked for by ssh' $'alpha\nbeta' "$(sort -u machines)"
  expect_same 'zone taken over' 4 "$(grep -rl '<Start>2026-05-04T17:00:00' brought | wc -l)"
}

a_file_that_did_not_arrive_is_a_failure() {
  mkdir stub lone.kvdx
  cp "$export_all" stub/
  printf '%s\n' '#!/bin/sh' "echo \"2026-05-04 08:00:00.000 MSPDIExport[1] Output: '\$2/lone.xml'\"" >stub/MSPDIExport
  chmod +x stub/MSPDIExport
  export_all=stub/mspdi-export-all run 1 lone.kvdx
  expect_same counts '0 of 1 bundles exported, 1 failed, 0 not run' "$counts"
  grep -q "lone.xml' is missing" errors || fail "$(cat errors)"
}

wrong_arguments_run_nothing() {
  mkdir -p empty notes twins/{Plan.kvdx,Plan.KVDX} copies/{Plan,'Plan (conforming)'}.kvdx lines/$'two\nlines.kvdx'
  echo mine >notes/joblog
  run 2
  run 2 --job 3 empty
  run 2 --output
  run 2 absent.kvdx
  run 2 empty
  run 2 --resume
  run 2 --log empty --resume
  refused "one file: $scratch/twins/Plan" twins
  refused "one file: $scratch/copies/Plan (conforming)" --conform copies
  refused 'line break: .*two' lines
  refused 'jobs takes' --jobs 0x --log empty copies
  refused 'not empty' --log notes copies
  expect_same 'files after refusals' "$scratch/notes/joblog mine" \
    "$(find "$scratch"/{empty,notes} -type f) $(cat notes/joblog)"
}

"$case"
