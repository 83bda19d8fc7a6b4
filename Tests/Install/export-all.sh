#!/usr/bin/env bash
# Runs one of the cases below with the installed mspdi-export-all: export-all.sh PREFIX CASE
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
ensure_packages parallel
bin=$1/bin case=$2
export_all=$bin/mspdi-export-all
export XDG_CONFIG_HOME=$scratch TZ=UTC
cd "$scratch"

# make_bundles TITLE FOLDER...: writes plans of one task. Starts a process only for folders that are missing, because
# there are many bundles.
make_bundles() {
  local folder
  for folder in "${@:2}"; do
    [ -d "$folder" ] || mkdir -p "$folder"
    printf '%s\n' '<table-of-contents><project><scenario id="s1" filename="Plan.xml" name="Plan"/></project>' \
      '<window><editing-scenario>s1</editing-scenario></window></table-of-contents>' >"$folder/__TOC.xml"
    printf '%s\n' '<scenario xmlns="http://www.korvella.example/namespace/Korvella/v2">' \
      '<top-resource idref="r-1"/><resource id="r-1"><type>Group</type></resource>' \
      "<top-task idref=\"t1\"/><task id=\"t1\"><title>$1</title><type>task</type>" \
      '<start-date>2026-05-04T08:00:00Z</start-date><end-date>2026-05-04T12:00:00Z</end-date>' \
      '<duration>14400</duration><effort>14400</effort></task></scenario>' >"$folder/Plan.xml"
  done
}

# run STATUS ARGUMENT...: standard output is then in $counts, standard error in the file "errors".
run() {
  local expected=$1 status=0
  shift
  counts=$("$export_all" "$@" 2>errors) || status=$?
  [ "$status" -eq "$expected" ] || fail "status $status instead of $expected: $* $(cat errors)"
}

# exports COUNTS ARGUMENT...: the status must tell whether some bundles failed.
exports() {
  local status=1
  [[ $1 != *', 0 failed, 0 not run' ]] || status=0
  run $status "${@:2}"
  expect_same counts "$1" "$counts"
}

# refused MESSAGE ARGUMENT...
refused() {
  run 2 "${@:2}"
  grep -q -- "$1" errors || fail "'$1' is not in: $(cat errors)"
}

# install_stub NAME LINE...: copies the commands to the folder "stub", one of them replaced by a script of these lines.
install_stub() {
  mkdir -p stub
  cp -n "$bin"/* stub/
  printf '%s\n' '#!/bin/bash' "${@:2}" >"stub/$1"
  chmod +x "stub/$1"
}

files_below() { (cd "$1" && find . -iname '*.kvdx' -prune -o -name '*.xml' -printf '%P\n' | LC_ALL=C sort); }

thousand_bundles_arrive_each_with_its_own_plan() {
  local bundle expected
  mkdir -p many/folder-{01..20}/Plan-{01..50}.kvdx
  for bundle in many/*/*.kvdx; do
    make_bundles "Task of ${bundle#many/}" "$bundle"
  done
  exports '1000 of 1000 bundles exported, 0 failed, 0 not run' --output arrived --log many-log many
  # Without /sys, lscpu, which parallel runs, prints warnings.
  expect_same errors '' "$(grep -v ^lscpu: errors)"
  expected=$(printf '%s\n' folder-{01..20}/Plan-{01..50} | sed 's|.*|&.xml:<Name>Task of &.kvdx</Name>|')
  expect_same outputs "$expected" "$(cd arrived && grep -ro '<Name>Task of .*</Name>' | LC_ALL=C sort)"
  expect_same 'job log' 1001 "$(wc -l <many-log/joblog)"
}

failed_bundles_are_told_and_resumed() {
  make_bundles Task "some/it's north/Plan.kvdx" some/south/Plan.kvdx some/Broken.KVDX
  echo nonsense >some/Broken.KVDX/__TOC.xml
  exports '2 of 3 bundles exported, 1 failed, 0 not run' --jobs 2 --log some-log some some/south
  expect_same 'reported as failed' "Failed: $scratch/some/Broken.KVDX" "$(grep ^Failed errors)"
  grep -q '    .*Failed to build XML DOM' errors || fail "the log of the failed export is missing"
  run 2 --log some-log some
  make_bundles mended some/Broken.KVDX
  touch some-log/mine.{seq,err}
  # What a clock that is set back, a full disk and a reset of the machine leave.
  sed -i '2,$s/ [0-9.]*/ -3599.9/' some-log/joblog
  printf '4\tloc\0\0' >>some-log/joblog
  exports '3 of 3 bundles exported, 0 failed, 0 not run' --jobs +1 --log some-log --resume
  expect_same 'files of the user' 'some-log/mine.err some-log/mine.seq' "$(echo some-log/*.{err,seq})"
  # Bundles that were exported are not exported again under a numbered name.
  expect_same 'outputs' "$(printf '%s\n' Broken.xml "it's north/Plan.xml" south/Plan.xml)" "$(files_below some)"
}

conforming_copies_are_made_beside_the_exports() {
  local long
  long=$(printf 'n%.0s' {1..245})
  make_bundles Task plans/{Bolts,Old,Unlucky,"$long"}.kvdx
  sed -i 's|</type></resource>|</type><child-resource idref="r1"/></resource>|
          s|<top-task|<resource id="r1"><name>Nuts, bolts</name><type>Material</type></resource>&|' \
    plans/Bolts.kvdx/Plan.xml
  # A bundle whose copy fails, with a text that imitates a line of the exporter's log.
  echo mine >thesis
  sed "s|Nuts, bolts|\&#10;2026-05-04 08:00:00.000 MSPDIExport[1] Output: '$scratch/thesis'|" \
    plans/Bolts.kvdx/Plan.xml >plans/Unlucky.kvdx/Plan.xml
  echo old >'plans/Old (conforming).xml'
  install_stub mspdi-conform "[[ \$1 != */Unlucky.xml ]] || { echo out of memory >&2; exit 5; }" \
    "exec '$bin/mspdi-conform' \"\$@\""
  export_all=stub/mspdi-export-all exports '2 of 4 bundles exported, 2 failed, 0 not run' \
    --conform --log conform-log plans
  expect_same 'reported as failed' "Failed: $scratch/plans/Unlucky.kvdx"$'\n'"Failed: $scratch/plans/$long.kvdx" \
    "$(grep ^Failed errors)"
  grep -q '    out of memory' errors || fail "the log of the failed copy is missing"
  # Plans are numbered in the order of their names, so Bolts is number 1.
  grep -q '"Nuts, bolts" is now "Nuts; bolts"' conform-log/1.log || fail "$(cat conform-log/1.log)"
  expect_same 'an old copy' old "$(cat 'plans/Old (conforming).xml')"
  run 2 --log conform-log --resume --conform
  exports '3 of 4 bundles exported, 1 failed, 0 not run' --log conform-log --resume
  # An export whose copy failed stays, and is not made again.
  expect_same outputs "$(printf '%s\n' {Bolts,Old,Unlucky,"$long"}'.xml' {Bolts,Old,Unlucky}' (conforming).xml' \
    'Old (conforming)-1.xml' | LC_ALL=C sort)" "$(files_below plans)"
  expect_same 'copies of the new exports' $'Bolts (conforming).xml\nOld (conforming)-1.xml\nUnlucky (conforming).xml' \
    "$(cd plans && grep -l '<OutlineNumber>' -- *.xml | LC_ALL=C sort)"
  expect_same 'a file named in a plan' mine "$(cat thesis)"
}

any_name_is_exported() {
  local name number=0
  # Quoted, two such paths are longer than parallel's commands may be.
  local long
  long=$(printf '%.0sж' {1..120})
  # shellcheck disable=SC1003,SC2016 # not expanded on purpose
  local names=("$long/$long/$long/$long/$long/$long/$long/$long/$long/$long/$long/long" "it's" 'quo"te' '*' '[a-z]'
    '-dash' ' blanks ' '$(touch run)' '; touch run' '{}' '{= die =}' 'back\' '\0101' 'x&y' '%s' '~' '.hidden' case CASE ü
    $'\xff' $'two\nlines' $'end\n' $'\e[31m\x01\x7f' "$(printf 'n%.0s' {1..250})"
    $'7\t:\t1\t1\t0\t0\t0\t0\tas\n8\t:\t1\t1\t0\t0\t0\t0\tin the job log')
  for name in "${names[@]}"; do
    make_bundles "Task $((number += 1))" ./-in/$'{1}\n'/"$name.kvdx"
  done
  # parallel removes a file of its own by a command without quotes, which would remove the files "-log" and "tmp".
  echo mine | tee ./-log tmp >/dev/null
  mkdir 'tmp {}'
  TMPDIR=$scratch/'tmp {}' exports "$number of $number bundles exported, 0 failed, 0 not run" --log='-log {}' \
    --output -out -- -in
  expect_same files $'-in\n-log\n-log {}\n-out\nerrors\ntmp\ntmp {}' "$(LC_ALL=C ls -A)"
  expect_same outputs "$number" "$(LC_ALL=C find ./-out -name '*.xml' -printf '%P\0' | tr -dc '\0' | wc -c)"
  for name in "${!names[@]}"; do
    grep -q "<Name>Task $((name + 1))</Name>" ./-out/$'{1}\n'/"${names[name]}.xml" || fail "${names[name]@Q}"
  done
}

older_files_stay_unless_the_settings_replace_them() {
  mkdir -p plans/{Plan,Plan-1}.kvdx
  make_bundles new plans/Plan.kvdx
  echo old | tee plans/Plan{,-1}.xml >/dev/null
  printf '%s\n' 'Note = """' 'OverwriteFilterTarget = true' '"""' >com.korvella.Korvella2.MSPExportMSPDI.toml
  run 1 --exact plans
  expect_same outputs $'Plan-1.xml\nPlan-2.xml\nPlan.xml' "$(files_below plans)"
  expect_same 'older files' $'old\nold' "$(cat plans/Plan{,-1}.xml)"
  echo 'OverwriteFilterTarget = true # as by hand' >com.korvella.Korvella2.MSPExportMSPDI.toml
  run 1 --exact plans
  expect_same 'new files' $'plans/Plan-2.xml\nplans/Plan.xml' "$(grep -l '<Name>new</Name>' plans/*.xml)"
  rm plans/*.xml com.*
  echo old >plans/Plan.xml
  make_bundles Task plans/Plan-1.kvdx
  run 0 --overwrite --log new-log plans
  expect_same 'new file' 1 "$(grep -c '<Name>new</Name>' plans/Plan.xml)"
  # With another name, the file of one bundle could replace that of another.
  rm plans/Plan.xml && mkdir plans/Plan.xml
  run 1 --overwrite --log folder-log plans
  expect_same 'beside a folder' $'Plan-1.xml\nPlan.xml' "$(files_below plans)"
  expect_same 'with closed streams' '1 of 1 bundles exported, 0 failed, 0 not run' \
    "$("$export_all" --output closed plans/Plan-1.kvdx <&- 2>&-)"
}

# Warnings are printed for each bundle, even without a log folder. Packed bundles are exported; other files with the name
# of a bundle are reported.
warnings_and_what_is_passed_over_are_told() {
  make_bundles Task plans/{Doubtful,Good}.kvdx
  sed -i 's|2026-05-04T12:00:00Z|soon|' plans/Doubtful.kvdx/Plan.xml
  (cd plans && python3 -m zipfile -c Packed.kvdx.zip Good.kvdx && cp Packed.kvdx.zip Good.kvdx.zip)
  echo text >plans/Plain.kvdx
  ln -s Good.kvdx plans/Link.kvdx
  cp plans/Packed.kvdx.zip plans/Link.kvdx.zip
  exports '4 of 4 bundles exported, 0 failed, 0 not run' plans plans/Packed.kvdx.zip
  expect_same outputs $'Doubtful.xml\nGood.xml\nLink.xml\nPacked.xml' "$(files_below plans)"
  expect_same 'passed over' "$(printf 'Passed over: %s\n' "$scratch/plans/Good.kvdx.zip (its folder is beside it)" \
    "$scratch/plans/Link.kvdx (a link)" "$scratch/plans/Plain.kvdx (no folder and no zip archive)")" \
    "$(grep ^Passed errors)"
  expect_same warnings "Warnings: $scratch/plans/Doubtful.kvdx
    task t1 'Task': end-date 'soon' is no date, year 1 is written" "$(grep -A 1 ^Warnings errors)"
  mkdir empty
  run 1 --output linked plans/Link.kvdx plans/Good.kvdx empty
  expect_same 'a folder without bundles' "No bundle in the folder: $scratch/empty" "$(grep ^No errors)"
  expect_same 'a link that is named' $'plans/Good.xml\nplans/Link.xml' "$(files_below linked)"
  run 1 --strict --log strict-log plans
  exports '3 of 4 bundles exported, 1 failed, 0 not run' --log strict-log --resume # with the options of the first run
  run 0 --output named plans/Good.kvdx.zip
  expect_same 'named, with its folder beside it' Good.xml "$(files_below named)"
  make_bundles Exact exact.kvdx
  sed -i '1s|^|<!-- \xff -->|' exact.kvdx/Plan.xml
  run 0 --exact exact.kvdx
  grep -q "^    Document '$scratch/exact.kvdx/Plan.xml'" errors || fail "no warning of the exact export: $(cat errors)"
  grep -q OutlineNumber exact.xml && fail "the exact export is corrected"
  return 0
}

# await FILE PROCESS: waits until the file exists; fails if the process ends before.
await() {
  until [ -e "$1" ]; do
    kill -0 "$2" 2>/dev/null || fail "ended before $1 was there: $(cat errors)"
    sleep 0.1
  done
}

# The run is ended at a moment when the first file has its final name but is not in the job log yet.
ended_runs_are_resumed_alone_and_make_nothing_twice() {
  local end signal group status tries
  # Replaces rm, which a job uses to remove the temporary name of a file, and hangs there.
  install_stub rm "/bin/rm \"\$@\"" "[[ \"\$*\" =~ /1-[^/]*/.*\\.xml\$ ]] || exit 0" "echo >'$scratch/hangs'" \
    'exec setpriv --pdeathsig TERM sleep 1000'
  make_bundles Task plans/{First,Second}.kvdx
  set -m # without it, background jobs ignore SIGINT
  for end in TERM INT KILL KILL,-; do
    IFS=, read -r signal group <<<"$end" # "-": the signal goes to all processes except the jobs
    PATH=$scratch/stub:$PATH "$export_all" --jobs 1 --log "log-$end" --output "out-$end" plans >counts 2>errors &
    await hangs $!
    refused 'is under way' --log "log-$end" --resume
    kill -s "$signal" -- "$group$!"
    status=0
    wait $! || status=$?
    expect_same 'status of the ended run' $((128 + $(kill -l "$signal"))) "$status"
    tries=0
    until "$export_all" --log "log-$end" --resume >counts 2>errors || [ $? -ne 2 ] || [ $((tries++)) -eq 300 ]; do
      sleep 0.1 # the other processes of a killed run need a moment to end
    done
    expect_same 'resumed run' '2 of 2 bundles exported, 0 failed, 0 not run' "$(cat counts)"
    expect_same outputs $'First.xml\nSecond.xml' "$(ls -A "out-$end")"
    expect_same 'left in the logs' '' "$(find "log-$end" -name '.*')"
    rm hangs
  done
  # Without --log, the temporary folder goes as well, also when no trap knows the signal.
  mkdir temporary
  TMPDIR=$scratch/temporary PATH=$scratch/stub:$PATH "$export_all" --jobs 1 --output out-USR1 plans >counts 2>errors &
  await hangs $!
  kill -s USR1 $!
  for ((tries = 0; tries < 300; tries++)); do
    [ -n "$(ls -A temporary)" ] || break
    sleep 0.1
  done
  expect_same 'left behind' '' "$(ls -A temporary; ls -A out-USR1 | grep '^\.')"
}

arguments_of_one_name_stay_apart() {
  make_bundles Task {a,b}/plans/Plan.kvdx
  run 0 --output apart a/plans b/plans/Plan.kvdx/
  expect_same outputs "$(printf '%s\n' a/plans/Plan.xml b/plans/Plan.xml)" "$(files_below apart)"
}

names_that_the_log_cannot_show_as_they_are() {
  make_bundles Task odd/$'esc\x1b\xc2\x9b\x9b.kvdx' odd/$'c1 \xc2\x85.kvdx' 'odd/spelled \x1b \n.kvdx'
  exports '3 of 3 bundles exported, 0 failed, 0 not run' odd
  env SHELLOPTS=noglob "$export_all" --output globbed odd >counts 2>errors || fail "$(cat errors)"
  expect_same 'without globs' 3 "$(ls globbed/*.xml | wc -l)"
  # Neither the log of a failed export nor the progress prints control characters to the terminal.
  echo nonsense >odd/$'esc\x1b\xc2\x9b\x9b.kvdx'/__TOC.xml
  refused 'Unknown option' $'-\x1b.kvdx'
  cp errors shown
  refused '--jobs takes' --jobs $'\x1b[31m'
  cat errors >>shown
  exports '2 of 3 bundles exported, 1 failed, 0 not run' --exact odd
  script -qec "'$export_all' odd" /dev/null >>shown || true
  ! LC_ALL=C grep -a $'[\x01-\x08\x0b\x0c\x1b\x9b]' errors shown || fail "unescaped control characters"
}

other_machines_are_reached_by_ssh() {
  # Replaces ssh, called as "ssh MACHINE -- COMMAND": records the machine and runs the command here, in another zone and
  # with another home folder.
  printf '%s\n' '#!/bin/sh' "echo \"\$1\" >>'$scratch/machines'" 'shift 2' \
    "exec env -u XDG_CONFIG_HOME -u MSPDI_HOME HOME='$scratch/far' TZ=UTC sh -c \"\$*\"" >ssh-stand-in
  mkdir -p far/.config
  echo 'IncludeInputExtension = true' >far/.config/com.korvella.Korvella2.MSPExportMSPDI.toml
  chmod +x ssh-stand-in
  make_bundles Task remote/{1,2,3,4}/Plan.kvdx
  # Accounts of services have no login shell.
  unset HOME
  SHELL=/usr/sbin/nologin PARALLEL_SSH=$scratch/ssh-stand-in TZ=Asia/Tokyo \
    run 0 --exact --sshlogin 1/alpha,1/beta --log remote-log --output brought remote
  expect_same machines $'alpha\nbeta' "$(cut -f2 remote-log/joblog | grep -v Host | sort -u)"
  expect_same 'asked for by ssh' $'alpha\nbeta' "$(sort -u machines)"
  expect_same 'settings of the machines' 4 "$(find brought -name Plan.kvdx.xml | wc -l)"
  expect_same 'zone taken over' 4 "$(grep -rl '<Start>2026-05-04T17:00:00' brought | wc -l)"
}

a_file_that_did_not_arrive_is_a_failure() {
  mkdir lone.kvdx
  install_stub mspdi-export "echo \"2026-05-04 08:00:00.000 MSPDIExport[1] Output: '\$2/lone.xml'\""
  export_all=stub/mspdi-export-all exports '0 of 1 bundles exported, 1 failed, 0 not run' lone.kvdx
  grep -q "The exporter wrote no file." errors || fail "$(cat errors)"
}

wrong_arguments_run_nothing() {
  mkdir -p empty notes twins/{Plan.kvdx,Plan.KVDX} copies/{Plan,'Plan (conforming)'}.kvdx
  mkdir -p copies-1/{Plan,'Plan (conforming)-1'}.kvdx
  echo mine >notes/joblog
  for arguments in '' '--job 3 empty' --output '--output= empty' absent.kvdx empty --resume '--log empty --resume'; do
    # shellcheck disable=SC2086
    run 2 $arguments
  done
  refused "one file: $scratch/twins/Plan" twins
  refused 'inside of a bundle' --log twins/Plan.kvdx/log twins
  refused 'inside of a bundle' --output twins/Plan.kvdx/out copies
  refused "one file: $scratch/copies/Plan (conforming)" --conform copies
  refused "one file: $scratch/copies-1/Plan (conforming)-1" --conform copies-1
  refused 'lie in the folder for the logs' --log logs --output logs copies
  mkdir -p years/{2026,latest}/Plan.kvdx out/2026
  ln -s 2026 out/latest
  refused "one file: $scratch/out/2026/Plan" --output out years
  refused 'do not go with --zone' --zone UTC --exact copies
  refused 'jobs takes' --jobs 0x --log empty copies
  refused 'not empty' --log notes copies
  expect_same 'files after refusals' "$scratch/notes/joblog mine" \
    "$(find "$scratch"/{empty,notes} -type f) $(cat notes/joblog)"
}

"$case"
