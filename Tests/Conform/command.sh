#!/usr/bin/env bash
# What the command mspdi-conform refuses, and that nothing is left behind then.
set -euo pipefail
conform=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/../../scripts/mspdi-conform
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

untitled='<Project xmlns="http://schemas.microsoft.com/project"><SaveVersion>14</SaveVersion><Tasks/></Project>'
echo "$untitled" >"My 100%25 'own' \"plan\".xml"
echo "$untitled" >plan.xml
echo '<Plan/>' >other.xml
echo "${untitled%</Project>}" >cut.xml
echo kept >existing.xml
ln -s nowhere link.xml
mkdir folder

failures=0
# refused WHAT MESSAGE ARGUMENTS...
refused() {
  local what=$1 message=$2 before
  shift 2
  before=$(find . | sort)
  if "$conform" "$@" 2>said; then
    echo "not refused: $what"
    failures=$((failures + 1))
  elif ! grep -qF -- "$message" said; then
    echo "refused with other words: $what: $(cat said)"
    failures=$((failures + 1))
  fi
  rm said
  if [ "$(find . | sort)" != "$before" ]; then
    echo "leaves something behind: $what: $(find .)"
    failures=$((failures + 1))
  fi
}
#       what                      message                               arguments
refused "no output"               "usage: "                             plan.xml
refused "three arguments"         "usage: "                             plan.xml a.xml b.xml
refused "no such input"           "cannot read absent.xml"              absent.xml out.xml
refused "a folder as input"       "cannot read folder"                  folder out.xml
refused "an existing output"      "existing.xml exists"                 plan.xml existing.xml
refused "its own input"           "plan.xml exists"                     plan.xml plan.xml
refused "a link to nothing"       "link.xml exists"                     plan.xml link.xml
refused "a folder as output"      "folder exists"                       plan.xml folder
refused "no folder for the output" "no folder absent"                   plan.xml absent/out.xml
refused "another kind of XML"     "this is no Microsoft Project XML"    other.xml out.xml
refused "a file cut short"        "cut.xml cannot be copied"            cut.xml out.xml
[ "$(cat existing.xml)" = kept ] || { echo "an existing file was changed"; failures=$((failures + 1)); }

# The base name of the file names a project without a title.
umask 027
"$conform" "My 100%25 'own' \"plan\".xml" "./50%41.xml"
grep -qF "<Name>My 100%25 'own' 'plan'</Name>" "50%41.xml" || { cat "50%41.xml"; failures=$((failures + 1)); }
mode=$(stat -c %a "50%41.xml")
[ "$mode" = 640 ] || { echo "written with mode $mode"; failures=$((failures + 1)); }

# Outline numbers where levels are skipped, which Planner shows nothing of: "LEVEL NUMBER", task by task.
numbers='0 0,2 1.1,1 2,3 2.1.1,3 2.1.2,2 2.2,5 2.2.1.1.1,4 2.2.1.2,1 3'
{
  echo '<Project xmlns="http://schemas.microsoft.com/project"><Tasks>'
  tr , '\n' <<<"$numbers" | sed 's|\(.*\) .*|<Task><OutlineLevel>\1</OutlineLevel></Task>|'
  echo '</Tasks></Project>'
} >levels.xml
"$conform" levels.xml numbered.xml
numbered=$(sed -n 's|.*<OutlineNumber>\(.*\)<.*|\1|p' numbered.xml | paste -sd ' ')
[ "$numbered" = "$(tr , '\n' <<<"$numbers" | cut -d ' ' -f 2 | paste -sd ' ')" ] || {
  echo "outline numbers: $numbered"
  failures=$((failures + 1))
}

# Elements that no order names are kept.
more='<Hyperlink>kept</Hyperlink>'
cat >more.xml <<END
<Project xmlns="http://schemas.microsoft.com/project">
<Tasks><Task>$more<PredecessorLink>$more</PredecessorLink><Baseline>$more</Baseline></Task></Tasks>
<Resources><Resource>$more</Resource></Resources><Assignments><Assignment>$more</Assignment></Assignments></Project>
END
"$conform" more.xml kept.xml
[ "$(grep -c "$more" kept.xml)" -eq 5 ] || { cat kept.xml; failures=$((failures + 1)); }

# Installed, the command stands in bin and the stylesheet in share.
mkdir -p usr/bin usr/share/mspdi-export
cp "$conform" usr/bin/
cp "$(dirname "$conform")/../share/mspdi-conform.xsl" usr/share/mspdi-export/
usr/bin/mspdi-conform plan.xml installed.xml && [ -s installed.xml ] || failures=$((failures + 1))
[ "$failures" -eq 0 ]
