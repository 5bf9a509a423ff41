# SPDX-License-Identifier: Apache-2.0
# Makes a drawing for dot of the boxes of rooms.txt and of the arrows between them.
#
#   scripts/check-arrows --table | awk -f docs/drawings/rooms.awk docs/drawings/rooms.txt -
#
# Fails when a row of the table has no box, or a box a room that no row has.
function trimmed(text) { gsub(/^[ \t]+|[ \t]+$/, "", text); return text }
function lines(text) { gsub(/;/, "<br/>", text); return text }
# Blanks that break no line are not left out beside an arrow.
function beside(text) { gsub(/;/, "\n    ", text); return "    " text }
function fail(text) { print "rooms.awk: " text > "/dev/stderr"; faults = 1 }
function box_of(path,    room, best) {
    best = ""
    for (room in box_with)
        if ((path == room || index(path, room "/") == 1) && length(room) > length(best)) best = room
    used[best]
    return best == "" ? "" : box_with[best]
}
# `header` alone, or all of `to` when it is "".
function add(from, to, header,    key) {
    if (from == to || to in left_out) return
    sub(/.*\//, "", header)
    key = from SUBSEP to
    if (!(key in arrow)) { arrow[key] = header; way[++arrows] = key }
    else if (header == "" || arrow[key] == "") arrow[key] = ""
    else if (index(";" arrow[key] ";", ";" header ";") == 0) arrow[key] = arrow[key] ";" header
}
# What rooms.txt says of an arrow for its looks.
function looks(way) { return way in look ? " " look[way] : "" }
# The names of rooms, in the order of the alphabet and in lines of some 26 characters.
function in_lines(names,    count, word, i, j, swap, line, text) {
    count = split(names, word, " ")
    for (i = 1; i <= count; ++i)
        for (j = i + 1; j <= count; ++j) if (word[j] < word[i]) { swap = word[i]; word[i] = word[j]; word[j] = swap }
    for (i = 1; i <= count; ++i) {
        if (length(line) + length(word[i]) > 26) { text = text line ";"; line = "" }
        line = line (line == "" ? "" : " ") word[i] (i < count ? "," : "")
    }
    return text line
}
function write_box(name) {
    if (about[name] == "%rooms") about[name] = in_lines(named[name])
    printf "    %s [color=\"%s\" label=<<table border=\"0\" cellborder=\"0\" cellspacing=\"0\" cellpadding=\"2\">", \
        name, edge[group[name]]
    printf "<tr><td><b>%s</b></td></tr><tr><td><font point-size=\"11\">%s</font></td></tr>", name, lines(about[name])
    if (tags[name] != "")
        printf "<tr><td><font point-size=\"10\" color=\"%s\">uses %s</font></td></tr>", edge["libraries"], tags[name]
    print "</table>>]"
}

FILENAME != "-" && (/^#/ || /^$/) { next }
FILENAME != "-" {
    count = split($0, cells, "|")
    for (i = 1; i <= count; ++i) cells[i] = trimmed(cells[i])
    if (cells[1] == "colour") { fill[cells[2]] = cells[3]; edge[cells[2]] = cells[4]; at_bottom[cells[2]] = cells[5] != "" }
    else if (cells[1] == "tag") is_tag[cells[2]]
    else if (cells[1] == "without") left_out[cells[2]]
    else if (cells[1] == "look") look[cells[2] SUBSEP cells[3]] = cells[4]
    else if (cells[1] == "dot") more = more "  " cells[2] "\n"
    else {
        box = cells[2]
        order[++boxes] = box
        group[box] = cells[1]
        about[box] = cells[3]
        if (!(cells[1] in members)) groups[++group_count] = cells[1]
        members[cells[1]] = members[cells[1]] " " box
        count = split(cells[4], rooms, " ")
        for (i = 1; i <= count; ++i) box_with[rooms[i]] = box
    }
    next
}
{
    from = box_of($1)
    split($1, parts, "/")
    if (about[from] == "%rooms" && !((from, parts[2]) in is_named)) {
        is_named[from, parts[2]]
        named[from] = named[from] " " parts[2]
    }
    if (from == "") { fail("there is no box for " $1); next }
    for (i = 2; i <= NF; ++i)
        if ((to = box_of($i)) != "") add(from, to, $i ~ /\.h$/ ? $i : "")
        else # a group with all its rooms, or Qt
            for (j = 1; j <= boxes; ++j) if (group[order[j]] == $i) add(from, order[j], "")
}
END {
    for (room in box_with) if (!(room in used)) fail("the table of arrows has no row for " room)
    if (faults) exit 1
    for (i = 1; i <= arrows; ++i) {
        split(way[i], ends, SUBSEP)
        if (ends[2] in is_tag)
            tags[ends[1]] = tags[ends[1]] (tags[ends[1]] == "" ? "" : ", ") (arrow[way[i]] == "" ? ends[2] : arrow[way[i]])
    }
    font = "fontname=\"DejaVu Sans,Verdana,sans-serif\""
    print "digraph rooms {"
    print "  graph [bgcolor=white " font " fontsize=13 nodesep=0.3 ranksep=0.42 pad=0.2]"
    print "  node [shape=box style=\"filled,rounded\" fillcolor=white margin=\"0.1,0.03\" " font " fontsize=12]"
    print "  edge [" font " fontsize=10 fontcolor=\"#333333\" arrowsize=0.8]"
    for (g = 1; g <= group_count; ++g) {
        name = groups[g]
        printf "  subgraph \"cluster_%s\" {\n    label=\"%s\" labeljust=%s labelloc=%s style=\"filled,rounded\" fillcolor=\"%s\" color=\"%s\" fontcolor=\"%s\"\n", \
            name, name, at_bottom[name] ? "l" : "r", at_bottom[name] ? "b" : "t", fill[name], fill[name], edge[name]
        count = split(members[name], inside, " ")
        for (i = 1; i <= count; ++i) write_box(inside[i])
        print "  }"
    }
    for (i = 1; i <= arrows; ++i) {
        split(way[i], ends, SUBSEP)
        if (ends[2] in is_tag) continue
        printf "  %s -> %s [color=\"%s\"", ends[1], ends[2], edge[group[ends[1]]]
        if (arrow[way[i]] != "") printf " style=dashed label=\"%s\"", beside(arrow[way[i]])
        print looks(way[i]) "]"
    }
    printf "%s}\n", more
}
