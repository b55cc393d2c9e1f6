# Makes the manual page of the texts in Help.h. `version` is the release.

function roff(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    return text ~ /^[.']/ ? "\\&" text : text
}

function verbatim(wanted) {
    if (wanted != isVerbatim)
        print wanted ? ".nf" : ".fi"
    isVerbatim = wanted
}

BEGIN {
    print ".TH FRAXOREG 1 \"\" \"Release " version "\" \"FRAXO.Pro tools\""
    print ".SH NAME\nfraxoreg \\- read and change the registry from a shell"
}

/R"\($/ { part = "usage"; count++; next }
/^\)";$/ { verbatim(0); part = "" }
part == "" { next }

part == "usage" && /^fraxoreg/ {
    split($0, words)
    print ".SH " (count == 1 ? "SYNOPSIS" : toupper(words[2]))
    verbatim(1)
}
part == "usage" && /^$/ {
    verbatim(0)
    part = "text"
    print count == 1 ? ".SH DESCRIPTION" : ".PP"
    next
}
part == "usage" { print "\\fB" roff($0) "\\fR"; next }

/^$/ { print ".PP"; next }
/^[A-Z][a-z ]*:$/ {
    verbatim(0)
    title = substr($0, 1, length - 1)
    print count == 1 ? ".SH " toupper(title) : ".SS " title
    next
}
/^    [^ ]/ { verbatim(1); print roff(substr($0, 5)); next }
/^  [^ ]/ {
    end = match(substr($0, 3), /  +/) # between what is defined and its text
    print ".TP\n.B " roff(end ? substr($0, 3, end - 1) : substr($0, 3))
    if (end)
        print roff(substr($0, 2 + end + RLENGTH))
    next
}
{ sub(/^ +/, ""); print roff($0) }

END { print ".SH SEE ALSO\n.BR fraxoinfo (1)" }
