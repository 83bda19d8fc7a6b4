# Prints a line for each leaf: the path, with the place among siblings of the same name, and the value. Neither depends
# on the order in which siblings of different names stand.
function print_facts(node, path,    list, count, i, place, line) {
  count = split(kids[node], list, " ")
  if (count == 0) {
    line = text[node]
    gsub(/\\/, "\\\\", line); gsub(/\n/, "\\n", line); gsub(/\r/, "\\r", line)
    print path " = " line
    return
  }
  for (i = 1; i <= count; ++i) {
    ++place[tag[list[i]]]
    print_facts(list[i], path "/" tag[list[i]] "[" place[tag[list[i]]] "]")
  }
}
END { print_facts(0, "") }
