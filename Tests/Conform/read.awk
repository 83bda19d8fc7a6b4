# Reads an XML file into arrays, without an XML library, so that what the copy holds is judged by another reader than
# the one that made it. Good for the files of this project: no CDATA, no "<" or ">" in attributes or comments.
# Of node n: tag[n], head[n] (the whole tag), text[n] (of a leaf), up[n], kids[n] (numbers, each with a blank behind).
BEGIN { RS = "<"; here = 0; nodes = 0 }
FNR == 1 { next }
/^[?!]/ { next }
/^\// { here = up[here]; next }
{
  close_at = index($0, ">")
  node = ++nodes
  head[node] = substr($0, 1, close_at - 1)
  tag[node] = head[node]
  sub(/[ \t\r\n\/].*/, "", tag[node])
  text[node] = decoded(substr($0, close_at + 1))
  up[node] = here
  kids[here] = kids[here] node " "
  if (head[node] ~ /\/$/) text[node] = ""
  else here = node
}

function decoded(s) {
  if (s !~ /&/) return s
  gsub(/&quot;/, "\"", s); gsub(/&apos;/, "'", s); gsub(/&lt;/, "<", s); gsub(/&gt;/, ">", s)
  gsub(/&#(13|xD|x0D);/, "\r", s); gsub(/&#(10|xA|x0A);/, "\n", s); gsub(/&#(9|x9|x09);/, "\t", s)
  gsub(/&amp;/, "\\&", s)
  return s
}

# The first child of the name, or 0.
function child(node, name,    list, count, i) {
  count = split(kids[node], list, " ")
  for (i = 1; i <= count; ++i) if (tag[list[i]] == name) return list[i]
  return 0
}

function value(node, name) { node = child(node, name); return node ? text[node] : "" }
