# SPDX-License-Identifier: Apache-2.0
# Makes a drawing for dot of the steps of command.txt: awk -f docs/drawings/command.awk docs/drawings/command.txt
function trimmed(text) { gsub(/^[ \t]+|[ \t]+$/, "", text); return text }
function lines(text) { gsub(/;/, "<br align=\"left\"/>", text); return text "<br align=\"left\"/>" }
function cell(text, width, colour, size) {
    return sprintf("<td width=\"%d\" align=\"left\" balign=\"left\" bgcolor=\"%s\"><font point-size=\"%d\">%s</font></td>", \
        width, colour, size, lines(text))
}
# A row that says "nothing" is pale, so that the others are seen.
function told(text, width) {
    return cell((text ~ /^nothing/ ? "<font color=\"#6b6b6b\">" text "</font>" : text), width, "white", 11)
}
function row(name, colour, first, copied, locked, allocated) {
    printf "  %s [color=\"%s\" label=<<table border=\"0\" cellborder=\"0\" cellspacing=\"3\" cellpadding=\"3\"><tr>%s%s%s%s</tr></table>>]\n", \
        name, colour, first, copied, locked, allocated
}
function open_thread(name) {
    printf "  subgraph cluster_%d { label=\"%s\" labeljust=l fillcolor=\"%s\" color=\"%s\" fontcolor=\"%s\"\n", \
        ++clusters, name, fill[name], fill[name], edge[name]
    thread = name
}
function close_thread() { if (thread != "") print "  }"; thread = "" }

BEGIN {
    step_width = 175; copied_width = 190; locked_width = 172; allocated_width = 165
    font = "fontname=\"DejaVu Sans,Verdana,sans-serif\""
    print "digraph command {"
    print "  graph [bgcolor=white style=\"filled,rounded\" " font " fontsize=13 nodesep=0.2 ranksep=0.22 pad=0.2]"
    print "  node [shape=plain style=filled fillcolor=white " font " fontsize=12]"
    print "  edge [" font " fontsize=11 fontcolor=\"#333333\" arrowsize=0.8 color=\"#333333\"]"
    row("s0", "white", cell("<b>step, and where</b>", step_width, "white", 12), \
        cell("<b>copied</b>", copied_width, "white", 12), cell("<b>locked</b>", locked_width, "white", 12), \
        cell("<b>allocated</b>", allocated_width, "white", 12))
}
/^#/ || /^$/ { next }
{
    count = split($0, cells, "|")
    for (i = 1; i <= count; ++i) cells[i] = trimmed(cells[i])
}
cells[1] == "thread" { fill[cells[2]] = cells[3]; edge[cells[2]] = cells[4]; next }
cells[1] == "between" { close_thread(); between = cells[2]; next }
count != 6 || !(cells[1] in fill) { print "command.awk: cannot be read: " $0 > "/dev/stderr"; exit 1 }
{
    if (cells[1] != thread) { close_thread(); open_thread(cells[1]) }
    ++steps
    row("s" steps, fill[thread], \
        cell("<font point-size=\"12\"><b>" cells[2] "</b></font>;" cells[3], step_width, fill[thread], 11), \
        told(cells[4], copied_width), told(cells[5], locked_width), told(cells[6], allocated_width))
    say[steps] = between == "" ? "" : " [label=<<table border=\"0\" cellpadding=\"5\"><tr><td>" lines(between) "</td></tr></table>>]"
    between = ""
}
END {
    close_thread()
    print "  s0 -> s1 [style=invis]"
    for (i = 2; i <= steps; ++i)
        printf "  s%d -> s%d%s\n", i - 1, i, say[i]
    print "}"
}
