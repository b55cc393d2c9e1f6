# Draws a terminal as SVG: TITLE is the line that was typed; what was printed follows in its colours, at most LINES of
# it, cut at COLUMNS.

function escaped(text) {
    gsub(/&/, "\\&amp;", text)
    gsub(/</, "\\&lt;", text)
    gsub(/>/, "\\&gt;", text)
    return text
}

function row(content) {
    return "<text xml:space=\"preserve\" x=\"12\" y=\"" (18 * ++rows + 8) "\">" content "</text>\n"
}

BEGIN {
    style["1"] = "heading"
    style["31"] = "bad"
    style["32"] = "good"
    style["33"] = "warning"
    body = row("<tspan class=\"typed\">" escaped(title) "</tspan>")
    width = length(title)
}

NR > lines {
    isMore = 1
    next
}

{
    count = split("m" $0, pieces, "\033\\[") # every piece starts with a colour's number, none before the first, and an m
    line = ""
    letters = 0
    for (i = 1; i <= count; ++i) {
        end = index(pieces[i], "m")
        colour = substr(pieces[i], 1, end - 1)
        text = substr(pieces[i], end + 1, columns - letters)
        letters += length(text)
        line = line (colour in style ? "<tspan class=\"" style[colour] "\">" escaped(text) "</tspan>" : escaped(text))
    }
    if (letters > width)
        width = letters
    body = body row(line)
}

END {
    if (isMore)
        body = body row("...")
    pixels = int(width * 7.9) + 24
    print "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " pixels " " 18 * rows + 22 "\" width=\"" pixels "\">"
    print "<style>"
    print "text { font: 13px ui-monospace, Consolas, 'DejaVu Sans Mono', monospace; fill: #d8dee9 }"
    print ".typed { fill: #88c0d0 } .heading { font-weight: bold; fill: #ffffff }"
    print ".good { fill: #a3be8c } .warning { fill: #ebcb8b } .bad { fill: #ff7a85 }"
    print "</style>"
    print "<rect width=\"100%\" height=\"100%\" rx=\"8\" fill=\"#20242c\"/>"
    printf "%s</svg>\n", body
}
