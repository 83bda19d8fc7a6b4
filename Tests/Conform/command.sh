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
echo "<!DOCTYPE Project [<!ENTITY e SYSTEM 'existing.xml'>]>${untitled/14/&e;}" >entity.xml
iconv -t UTF-16 entity.xml >entity16.xml
echo kept >existing.xml
ln -s nowhere link.xml
mkdir folder

failures=0
bad() {
  echo "$1"
  failures=$((failures + 1))
}
# refused WHAT MESSAGE ARGUMENTS...
refused() {
  local what=$1 message=$2 before
  before=$(find . | sort)
  if "$conform" "${@:3}" 2>said; then
    bad "not refused: $what"
  elif ! grep -qF -- "$message" said; then
    bad "refused with other words: $what: $(cat said)"
  fi
  rm said
  if [ "$(find . | sort)" != "$before" ]; then
    bad "leaves something behind: $what: $(find .)"
  fi
}
#       what                      message                               arguments
refused "no output"               "usage: "                             plan.xml
refused "a folder as input"       "cannot read folder"                  folder out.xml
refused "an existing output"      "existing.xml exists"                 plan.xml existing.xml
refused "a link to nothing"       "link.xml exists"                     plan.xml link.xml
refused "no folder for the output" "no folder absent"                   plan.xml absent/out.xml
refused "another kind of XML"     "this is no Microsoft Project XML"    other.xml out.xml
refused "an entity in UTF-16"     "has a document type"                 entity16.xml out.xml
refused "a file cut short"        "cut.xml cannot be copied"            cut.xml out.xml
[ "$(cat existing.xml)" = kept ] || bad "an existing file was changed"

# The base name of the file names a project without a title.
umask 027
"$conform" "My 100%25 'own' \"plan\".xml" "./50%41.xml"
grep -qF "<Name>My 100%25 'own' 'plan'</Name>" "50%41.xml" || bad "$(cat "50%41.xml")"
mode=$(stat -c %a "50%41.xml")
[ "$mode" = 640 ] || bad "written with mode $mode"

# Outline numbers where levels are skipped, which Planner shows nothing of: "LEVEL NUMBER", task by task.
numbers='0 0,2 1.1,1 2,3 2.1.1,3 2.1.2,2 2.2,5 2.2.1.1.1,4 2.2.1.2,1 3'
{
  echo '<Project xmlns="http://schemas.microsoft.com/project"><Tasks>'
  tr , '\n' <<<"$numbers" | sed 's|\(.*\) .*|<Task><OutlineLevel>\1</OutlineLevel></Task>|'
  echo '</Tasks></Project>'
} >levels.xml
"$conform" levels.xml numbered.xml
numbered=$(sed -n 's|.*<OutlineNumber>\(.*\)<.*|\1|p' numbered.xml | paste -sd ' ')
[ "$numbered" = "$(tr , '\n' <<<"$numbers" | cut -d ' ' -f 2 | paste -sd ' ')" ] || bad "outline numbers: $numbered"

# Elements that no order names are kept, comments and processing instructions too, and days of no weekday.
more='<Hyperlink>kept</Hyperlink><!--kept--><?kept?>'
cat >more.xml <<END
<Project xmlns="http://schemas.microsoft.com/project">$more
<ExtendedAttributes>$more<ExtendedAttribute><FieldID>188743731</FieldID>$more</ExtendedAttribute></ExtendedAttributes>
<Calendars>$more<Calendar><UID>7</UID><Name>$(printf '%51s' '')blank</Name>$more<WeekDays>$more</WeekDays>
<Exceptions>$more</Exceptions><WorkWeeks>$more<WorkWeek>$more<WeekDays>$more
<WeekDay><DayType>0</DayType>$more</WeekDay></WeekDays></WorkWeek></WorkWeeks></Calendar></Calendars>
<Tasks>$more<Task>$more<PredecessorLink><LinkLag/>$more</PredecessorLink>
<ExtendedAttribute><FieldID>188743731</FieldID>$more</ExtendedAttribute><Baseline>$more</Baseline></Task></Tasks>
<Resources>$more<Resource>$more</Resource></Resources>
<Assignments>$more<Assignment>$more</Assignment></Assignments></Project>
END
"$conform" more.xml kept.xml 2>/dev/null
"$conform" kept.xml again.xml
for one in '<Hyperlink>kept</Hyperlink>' '<!--kept-->' '<?kept?>'; do
  count=$(grep -oF -- "$one" kept.xml | wc -l)
  [ "$count" -eq 20 ] || bad "$one: $count of 20 kept"
done
for one in '<Name>Calendar 7</Name>' '<LinkLag>0</LinkLag>'; do
  grep -qF "$one" kept.xml || bad "not there: $one"
done
cmp kept.xml again.xml || bad "a copy of a copy differs"

[ "$failures" -eq 0 ]
