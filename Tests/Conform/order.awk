# Reports each child that the order list (variable orders: orders.txt) does not name for its parent, or that stands
# behind a sibling it should be in front of.
END {
  RS = "\n"
  while ((getline line < orders) > 0) {
    if (line ~ /^#/) continue
    split(line, halves, ": ")
    count = split(halves[2], names, " ")
    known[halves[1]] = 1
    for (i = 1; i <= count; ++i) rank[halves[1], names[i]] = i
  }
  if (!("Project" in known)) print "no order lists in " orders
  for (node = 1; node <= nodes; ++node) {
    parent = up[node]
    if (parent == 0) continue
    list = tag[up[parent]] "/" tag[parent]
    if (!(list in known)) list = tag[parent]
    place = rank[list, tag[node]]
    if (!place) print list " may not hold " tag[node]
    if (place < last[parent]) print tag[node] " stands too late in " list
    last[parent] = place
  }
}
