# Prints what GNOME Planner's import has made: each task's number with its level and title, and each link. Read from an
# exported file the lines say what it should make, from a file of Planner what it did make.
function shown_name(name) { gsub(/[\n\r\t]/, " ", name); return name }

function attribute(node, name,    rest) {
  if (!match(head[node], "[ \t\r\n]" name "=\"[^\"]*\"")) return ""
  rest = substr(head[node], RSTART, RLENGTH)
  sub(/^[^"]*"/, "", rest); sub(/"$/, "", rest)
  return decoded(rest)
}

function level_in_planner(node,    level) {
  for (; tag[node] == "task"; node = up[node]) ++level
  return level
}

function print_exported(    node, kind) {
  split("FF FS SF SS", kind, " ")
  for (node = 1; node <= nodes; ++node) {
    if (tag[node] == "Task" && !(value(node, "UID") in id)) id[value(node, "UID")] = value(node, "ID")
  }
  for (node = 1; node <= nodes; ++node) {
    # The project's own task is no task in Planner.
    if (tag[node] == "Task" && value(node, "OutlineLevel") + 0 >= 1) {
      print "task " value(node, "ID") " level " value(node, "OutlineLevel") " " shown_name(value(node, "Name"))
    } else if (tag[node] == "PredecessorLink" && value(up[node], "OutlineLevel") + 0 >= 1) {
      # LinkLag is in tenths of minutes, Planner's lag in seconds.
      print "link " id[value(node, "PredecessorUID")] " to " value(up[node], "ID") " " kind[value(node, "Type") + 1] \
            " lag " value(node, "LinkLag") * 6
    }
  }
}

function print_planner(    node) {
  for (node = 1; node <= nodes; ++node) {
    if (tag[node] == "task") {
      print "task " attribute(node, "id") " level " level_in_planner(node) " " shown_name(attribute(node, "name"))
    } else if (tag[node] == "predecessor") {
      print "link " attribute(node, "predecessor-id") " to " attribute(up[up[node]], "id") " " \
            attribute(node, "type") " lag " attribute(node, "lag")
    }
  }
}

END {
  if (tag[1] == "Project") print_exported()
  else print_planner()
}
