# Changes the tree of an exported file into that of its copy, rule by rule; facts.awk prints it then.
# Variables: fields (fields.txt), base (the file's base name).

function add(parent, name, content) {
  tag[++nodes] = name; text[nodes] = content; up[nodes] = parent
  kids[parent] = kids[parent] nodes " "
}

function drop(node) {
  sub("(^| )" node " ", " ", kids[up[node]])
  if (kids[up[node]] !~ /[0-9]/) text[up[node]] = ""  # the blanks in front of its only child
  gone[node] = 1
}

# Sets, or adds, the child when it is absent or blank.
function ensure(parent, name, content,    node) {
  node = child(parent, name)
  if (node && text[node] !~ /^[ \t\r\n]*$/) return
  if (node) text[node] = content
  else add(parent, name, content)
}

# UTF-8 characters, not bytes: one begins at each byte that is no continuation.
function first_characters(s, limit,    i, count) {
  for (i = 1; i <= length(s); ++i) if (substr(s, i, 1) !~ /[\200-\277]/ && ++count > limit) return substr(s, 1, i - 1)
  return s
}

function read_fields(    line, parts, count, i, range, number, n) {
  RS = "\n"
  while ((getline line < fields) > 0) {
    if (line ~ /^#/) continue
    count = split(line, parts, " ")
    n = 0
    for (i = 2; i <= count; ++i) {
      split(parts[i] "-" parts[i], range, "-")
      for (number = range[1] + 0; number <= range[2] + 0; ++number) text_field[parts[1], ++n] = number
    }
  }
}

# Each object's fields are numbered anew and defined in the order of their first value: the definitions are used up in
# that order.
function custom_fields(kind, objects, definitions,    list, count, i, queue, queued, next_one, aliases,
                       values, value_count, j, number, seen, alias, place) {
  count = split(kids[definitions], list, " ")
  for (i = 1; i <= count; ++i) {
    if (((value(list[i], "FieldID") + 0 >= 205520904) ? "resource" : "task") != kind) continue
    alias = value(list[i], "Alias")
    queue[++queued] = alias
    if (alias in place) {
      drop(list[i])
      continue
    }
    place[alias] = ++aliases
    if (aliases > 30) {
      drop(list[i])
      continue
    }
    text[child(list[i], "FieldID")] = text_field[kind, aliases]
    text[child(list[i], "FieldName")] = "Text" aliases
  }
  count = split(kids[objects], list, " ")
  for (i = 1; i <= count; ++i) {
    split("", seen)
    value_count = split(kids[list[i]], values, " ")
    for (j = 1; j <= value_count; ++j) {
      if (tag[values[j]] != "ExtendedAttribute") continue
      number = value(values[j], "FieldID")
      if (!(number in seen)) seen[number] = queue[++next_one]
      alias = seen[number]
      if (place[alias] > 30) drop(values[j])
      else text[child(values[j], "FieldID")] = text_field[kind, place[alias]]
    }
  }
}

# Stable, and each calendar has few: insertion.
function sort_by_date(node,    list, count, i, j, moved, date) {
  count = split(kids[node], list, " ")
  for (i = 2; i <= count; ++i) {
    moved = list[i]
    date = value(child(moved, "TimePeriod"), "FromDate")
    for (j = i - 1; j >= 1 && value(child(list[j], "TimePeriod"), "FromDate") > date; --j) list[j + 1] = list[j]
    list[j + 1] = moved
  }
  kids[node] = ""
  for (i = 1; i <= count; ++i) kids[node] = kids[node] list[i] " "
}

function once_a_weekday(week_days,    list, count, i, day, seen) {
  count = split(kids[week_days], list, " ")
  for (i = 1; i <= count; ++i) {
    day = value(list[i], "DayType")
    if (day in seen) drop(list[i])
    seen[day] = 1
  }
}

function outline_number(level,    i, number) {
  if (level < 1) return "0"
  ++counts[level]
  for (i = level + 1; i <= deepest; ++i) counts[i] = 0
  if (level > deepest) deepest = level
  number = counts[1]
  for (i = 2; i <= level; ++i) number = number "." counts[i]
  return number
}

# A cut name gets the UID at its end when another calendar begins with the same characters.
function calendar_name(node,    name, end) {
  name = value(node, "Name")
  if (first_characters(name, 51) == name) return name
  if (beginnings[first_characters(name, 51)] > 1) end = " (" value(node, "UID") ")"
  return first_characters(name, 51 - length(end)) end
}

END {
  read_fields()
  project = child(0, "Project")
  ensure(project, "Name", value(project, "Title") ~ /[^ \t\r\n]/ ? value(project, "Title") : base)
  for (node = 1; node <= nodes; ++node) {
    if (tag[node] == "Calendar") ++beginnings[first_characters(value(node, "Name"), 51)]
  }
  for (node = 1; node <= written_nodes(); ++node) {
    name = tag[node]
    parent = tag[up[node]]
    if (name == "Task") {
      number = outline_number(value(node, "OutlineLevel") + 0)
      add(node, "WBS", number)
      add(node, "OutlineNumber", number)
      if (value(node, "PercentComplete") == "100") {
        task_done[value(node, "UID")] = node
        ensure(node, "ActualStart", value(node, "Start"))
        ensure(node, "ActualFinish", value(node, "Finish"))
      }
    } else if (name == "Assignment" && value(node, "TaskUID") in task_done) {
      done = task_done[value(node, "TaskUID")]
      ensure(node, "ActualStart", value(node, "Start") == "" ? value(done, "Start") : value(node, "Start"))
      ensure(node, "ActualFinish", value(node, "Finish") == "" ? value(done, "Finish") : value(node, "Finish"))
    } else if (name == "PredecessorLink" && !child(node, "LinkLag")) {
      add(node, "LinkLag", "0")
    } else if (name == "Name" && parent == "Resource") {
      gsub(/,/, ";", text[node]); gsub(/\[/, "(", text[node]); gsub(/\]/, ")", text[node])
    } else if (name == "Calendar") {
      ensure(node, "Name", "Calendar " value(node, "UID"))
      text[child(node, "Name")] = calendar_name(node)
    } else if (name == "Exceptions") {
      sort_by_date(node)
    } else if (name == "WeekDays" && parent == "WorkWeek") {
      once_a_weekday(node)
    }
  }
  definitions = child(project, "ExtendedAttributes")
  if (definitions) {
    custom_fields("task", child(project, "Tasks"), definitions)
    custom_fields("resource", child(project, "Resources"), definitions)
  }
  for (node = 1; node <= nodes; ++node) {
    if (tag[node] ~ /^(ActualStart|ActualFinish|ConstraintDate|Start|Finish|StartDate|FinishDate|FromDate|ToDate)$/ &&
        text[node] == "" && !gone[node]) drop(node)
  }
}

# The nodes of the file, not those added since.
function written_nodes() { return first_count ? first_count : first_count = nodes }
