#!/usr/bin/env bash
# Tests what the commands refuse, that a refusal leaves no file behind, and where they write: commands.sh PROGRAMS
source "$(dirname "${BASH_SOURCE[0]}")/../Install/common.sh"
conform=$1/mspdi-conform send=$1/mspdi-export
cd "$scratch"
export LC_ALL=C.UTF-8 TZ=UTC XDG_CONFIG_HOME=$scratch

failures=0
bad() { echo "$1" && failures=$((failures + 1)); }
# ends WHAT STATUS MESSAGE COMMAND...: the output must contain the message; a failure must not add or remove files.
ends() {
  local what=$1 expected=$2 message=$3 status=0 before said
  before=$(find . | sort)
  said=$("${@:4}" 2>&1) || status=$?
  [ "$status" -eq "$expected" ] || bad "$what: status $status instead of $expected: $said"
  [[ $said == *"$message"* ]] || bad "$what: other words: $said"
  if [ "$expected" -ne 0 ] && [ "$(find . | sort)" != "$before" ]; then bad "$what: leaves something behind: $(find .)"; fi
}

head='<Project xmlns="http://schemas.microsoft.com/project">'
plan="$head<SaveVersion>14</SaveVersion><Tasks><Task><UID>1</UID></Task></Tasks></Project>"
# file NAME TEXT
file() { printf '%s\n' "$2" >"$1"; }
file "My 100%25 'own' \"plan\".xml" "$plan"
file plan.xml "$plan"
file other.xml '<Plan/>'
file foreign.xml '<Project/>'
file cut.xml "${plan%</Project>}"
iconv -t UTF-16 <<<"<!DOCTYPE Project [<!ENTITY e SYSTEM 'existing.xml'>]>${plan/14/&e;}" >doctype.xml
file quoted.xml "$head<Title><![CDATA[<!DOCTYPE Project>]]></Title><Tasks/></Project>"
file $'bell\a.xml' "$plan"
file existing.xml kept
ln -s nowhere link.xml
mkdir folder Plan2.kvdx

#    what                       status  message                              command
ends "no output"                     1 "usage: "                             "$conform" plan.xml
ends "help"                          0 "usage: "                             "$conform" --help
ends "a folder as input"             1 "cannot read folder"                  "$conform" folder out.xml
ends "nothing as input"              1 "cannot read absent.xml"              "$conform" absent.xml out.xml
ends "an existing output"            1 "existing.xml exists"                 "$conform" plan.xml existing.xml
ends "a link to nothing"             1 "link.xml exists"                     "$conform" plan.xml link.xml
ends "no folder for the output"      1 "no folder absent"                    "$conform" plan.xml absent/out.xml
ends "an output in a bundle"         1 "inside of the bundle"                "$conform" plan.xml Plan2.kvdx/out.xml
ends "an output without a name"      1 "the output has no name"              "$conform" plan.xml ""
ends "another kind of XML"           1 "this is no Microsoft Project XML"    "$conform" other.xml out.xml
ends "another namespace"             1 "this is no Microsoft Project XML"    "$conform" foreign.xml out.xml
ends "a document type in UTF-16"     1 "has a document type"                 "$conform" doctype.xml out.xml
ends "a file cut short"              1 "cut.xml cannot be copied"            "$conform" cut.xml out.xml
ends "a name that is no text"        0 ""                                    "$conform" $'bell\a.xml' bell-out.xml
ends "a document type in a text"     0 ""                                    "$conform" quoted.xml quoted-out.xml
[ "$(cat existing.xml)" = kept ] || bad "an existing file was changed"

# A project without a title is named after the file.
umask 027
"$conform" "My 100%25 'own' \"plan\".xml" "./50%41.xml" 2>/dev/null
grep -qF "<Name>My 100%25 'own' \"plan\"</Name>" "50%41.xml" || bad "$(cat "50%41.xml")"
grep -qF '<Name>bell\x07</Name>' bell-out.xml || bad "$(cat bell-out.xml)"
[ "$(stat -c %a "50%41.xml")" = 640 ] || bad "written with mode $(stat -c %a "50%41.xml")"
for encoding in UTF-8 UTF-16 UTF-16LE UTF-16BE; do
  iconv -t "$encoding" plan.xml >encoded.xml
  "$conform" encoded.xml "$encoding.xml" 2>/dev/null && cmp UTF-8.xml "$encoding.xml" || bad "$encoding: wrong copy"
done

# Elements that are not in the published orders, comments and processing instructions are kept, even outside the root.
more='<Hyperlink>kept</Hyperlink><!--kept--><?kept?>'
cat >more.xml <<END
<!--kept--><?kept?>$head$more
<ExtendedAttributes>$more<ExtendedAttribute><FieldID>188743731</FieldID>$more</ExtendedAttribute></ExtendedAttributes>
<Calendars>$more<Calendar><UID>7</UID><Name>$(printf '%51s' '')blank</Name>$more<WeekDays>$more</WeekDays>
<Exceptions>$more</Exceptions><WorkWeeks>$more<WorkWeek>$more<WeekDays>$more
<WeekDay><DayType>0</DayType>$more</WeekDay></WeekDays></WorkWeek></WorkWeeks></Calendar></Calendars>
<Tasks>$more<Task><UID>1</UID>$more<PredecessorLink><PredecessorUID>1</PredecessorUID><LinkLag/>$more</PredecessorLink>
<ExtendedAttribute><FieldID>188743731</FieldID>$more</ExtendedAttribute><Baseline>$more</Baseline></Task></Tasks>
<Resources>$more<Resource>$more</Resource></Resources>
<Assignments>$more<Assignment><TaskUID>1</TaskUID>$more</Assignment></Assignments></Project>
END
"$conform" more.xml kept.xml 2>/dev/null
"$conform" kept.xml again.xml 2>/dev/null
for one in '<Hyperlink>kept</Hyperlink> 20' '<!--kept--> 21' '<?kept?> 21' '<Name>Calendar 7</Name> 1' '<LinkLag>0</LinkLag> 1'; do
  count=$(grep -oF -- "${one% *}" kept.xml | wc -l)
  [ "$count" -eq "${one##* }" ] || bad "${one% *}: $count instead of ${one##* }"
done
cmp kept.xml again.xml || bad "a copy of a copy differs"

ends "the version of mspdi-export"   0 "mspdi-export 0"                      "$send" --version

[ "$failures" -eq 0 ]
