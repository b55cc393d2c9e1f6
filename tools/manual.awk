# Makes the manual page of a tool from what its help prints, with all its commands. `version` is the release.

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

function heading(level, title) {
    verbatim(0)
    print level " " title
    isDescribed = 1
}

NR == 1 { # such as `fraxoreg: read and change the registry from a shell`
    tool = substr($1, 1, length($1) - 1)
    print ".TH " toupper(tool) " 1 \"\" \"Release " version "\" \"FRAXO.Pro tools\""
    print ".SH NAME\n" tool " \\- " roff(substr($0, length($1) + 2))
    next
}

sub(/^Usage: /, "") {
    heading(".SH", ++usages == 1 ? "SYNOPSIS" : toupper($2))
    verbatim(1)
    isUsage = 1
    isDescribed = usages > 1
}
/^$/ { isUsage = 0; verbatim(0); print ".PP"; next }
isUsage { print "\\fB" roff($0) "\\fR"; next }

/^([A-Z][a-z ]*|[A-Z ]+):$/ {
    title = substr($0, 1, length($0) - 1)
    if (usages == 1)
        heading(".SH", toupper(title))
    else
        heading(".SS", title)
    next
}
/^[a-z]+$/ { # a command; what it does is on the next line
    heading(".SS", $0)
    getline
    print roff(substr($0, 3))
    next
}
/^  (Positionals|Options):$/ { next }
/^ +[^ ]+( [^ ]+)*  +[^ ]/ || /^  [^ ]/ { # what is defined, and on the same line or the next ones its text
    verbatim(0)
    sub(/^ +/, "")
    end = match($0, /  +/)
    print ".TP\n.B " roff(end ? substr($0, 1, end - 1) : $0)
    text = substr($0, end + RLENGTH)
    gsub(/  +/, " ", text)
    if (end)
        print roff(text)
    next
}
/^    [^ ]/ { verbatim(1); print roff(substr($0, 5)); next }
{
    sub(/^ +/, "")
    if (!isDescribed)
        heading(".SH", "DESCRIPTION")
    print roff($0)
}

END {
    verbatim(0)
    print ".SH SEE ALSO\n.BR " (tool == "fraxoinfo" ? "fraxoreg" : "fraxoinfo") " (1)"
}
