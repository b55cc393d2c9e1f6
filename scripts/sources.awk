# Makes the tables of docs/where-answers-come-from.md. Reads what `fraxoinfo why` prints, before it a line with
# "@ WORLD CLASS::OPERATION". In the world "bare" nothing is recorded: it has the complete chain of places and the answer
# without any; "sample" adds what is asked only when an earlier place holds something, such as files.

# literal(TEXT, FROM, TO): TEXT with every FROM that is a whole part of a path, or the start of one, replaced.
function literal(text, from, to,    result, at, before, after) {
    while ((at = index(text, from)) > 0) {
        before = at == 1 ? "\\" : substr(text, at - 1, 1)
        after = substr(text, at + length(from), 1)
        result = result substr(text, 1, at - 1) (before == "\\" && index("\\.", after) ? to : from)
        text = substr(text, at + length(from))
    }
    return result text
}

# add(COLUMN, PLACE): once for each operation.
function add(column, place) {
    if (index(asked[operation, column], "`" place "`") == 0)
        asked[operation, column] = asked[operation, column] (asked[operation, column] == "" ? "" : "<br>") "`" place "`"
}

/^@ / {
    world = $2
    operation = $3
    expectsAnswer = 1
    held = 0
    if (world == "bare")
        operations[++count] = operation
    next
}

expectsAnswer {
    expectsAnswer = 0
    sub(/^[^:]*: /, "")
    sub(/  \[(exists|missing)\]$/, "")
    if (world == "bare")
        answers[operation] = $0
    next
}

/^(Asked|Fixed)/ { next }

{
    place = substr($0, 5)
    value = ""
    if ((at = index(place, " = ")) > 0) {
        value = substr(place, at + 3)
        place = substr(place, 1, at - 1)
    } else
        sub(/  \[[^]]*\]$/, "", place)

    for (i = 1; i <= held; ++i) # what a place held before goes by that place's name
        place = literal(place, texts[i], names[i])

    if (place ~ /^[A-Z0-9_]+$/ && place !~ /^HKEY_/)
        add("environment", place)
    else if (place ~ /^HKEY_/) {
        name = place
        sub(/^.*\\/, "", name)
        if (value != "" && value !~ /,/) {
            texts[++held] = value
            names[held] = "<" name ">"
        }
        sub(/^HKEY_CLASSES_ROOT/, "HKCR", place)
        sub(/^HKEY_CURRENT_USER/, "HKCU", place)
        sub(/^HKEY_LOCAL_MACHINE/, "HKLM", place)
        add("registry", place)
    } else if (world == "bare" && place !~ /^(the|this) /)
        next # of the bare machine's files the sample has the general form
    else
        add("other", place)
}

END {
    for (i = 1; i <= count; ++i) {
        operation = operations[i]
        split(operation, parts, "::")
        row = parts[1] SUBSEP asked[operation, "environment"] SUBSEP asked[operation, "registry"] SUBSEP \
            asked[operation, "other"]
        answer = answers[operation]
        answer = answer == "(empty)" ? "empty" : "`" answer "`"
        if (!(row in cells))
            rows[++rowCount] = row
        cells[row] = cells[row] (cells[row] == "" ? "" : "<br>") "`" parts[2] "`: " answer
    }
    for (i = 1; i <= rowCount; ++i) {
        split(rows[i], parts, SUBSEP)
        if (parts[1] != class) {
            class = parts[1]
            print "\n## " class "\n"
            print "| Operation, and its answer when nothing is recorded | Environment | Registry | System and files |"
            print "| --- | --- | --- | --- |"
        }
        print "| " cells[rows[i]] " | " parts[2] " | " parts[3] " | " parts[4] " |"
    }
}
