# Turns the names in the tables of docs/coming-from.md into C++, so that none of them can be wrong.
#     awk -v interface=stream -f coming_from.awk docs/coming-from.md > coming_from_stream.cpp
#
# Each text between backticks in the column "stream interface", "string interface" or "kit", up to a colon in the
# cell, becomes an insertion into a stream; one of the kit only has to compile. Those that stand beside an escape string
# also go into a table of what writes what; of the stream interface only the controls do, since a style writes the whole
# record, and of the kit not the terminal's own colours, which are written within others only.

function note(bytes, expression)
{
    if (interface == "kit") {
        if (expression !~ /default_color/) {
            table = table "{R\"(" bytes ")\", [](std::ostream& os) { show(os, " expression "); }},\n"
        }
    } else if (interface == "classic" || expression ~ /^csi::/) {
        table = table "{R\"(" bytes ")\", [](std::ostream& os) { " in_color "os << " expression "; }},\n"
    }
}

BEGIN {
    FS = " *[|] *"
    in_color = interface == "stream" ? "os << colorize; " : "Hueline colors; colors.useColor(true); "
    heading = interface == "stream" ? "stream interface" : interface == "classic" ? "string interface" : "kit"
    if (interface == "kit") {
        print "#include \"examples/coming_from_kit.hpp\""
    } else {
        print "#include \"kestry/hueline_" (interface == "stream" ? "stream" : "classic") ".hpp\""
        print (interface == "stream" ? "using namespace kestry::Hueline;" : "using namespace kestry;")
    }
    print "#include \"examples/coming_from.hpp\""
    print "#include <ostream>"
}

{ gsub(/\\[|]/, "\002") } # a bar in a cell

!/^[|]/ { column = 0 }

/^[|]/ && column == 0 {
    column = -1
    for (i = 2; i < NF; ++i) {
        if ($i == heading) {
            column = i
        }
    }
    has_bytes = $2 == "escape string"
    next
}

/^[|]/ && column > 0 && !/^[|]--/ {
    cell = $column
    sub(/`:.*/, "`", cell)
    # Every second piece stands between backticks.
    gsub("\002", "|", cell)
    count = split(cell, piece, "`")
    if (piece[1] != "" || count < 3) {
        next # such as "none"
    }
    for (i = 2; i <= count; i += 2) {
        insertion = interface == "kit" ? "static_cast<void>(" piece[i] ")" : "os << (" piece[i] ")"
        insertions = insertions "#line " FNR " \"" FILENAME "\"\n" insertion ";\n"
    }
    if (has_bytes) {
        known = split($2, bytes, "`")
        for (i = 2; i <= count; i += 2) {
            note(bytes[i <= known ? i : 2], piece[i]) # one escape string may have several names
        }
    }
}

END {
    print "namespace hueline::test {"
    print "void insert_" interface "_names([[maybe_unused]] std::ostream& os)\n{\n" insertions "}"
    print "std::vector<Name> " interface "_names()\n{\nreturn {\n" table "};\n}"
    print "} // namespace hueline::test"
}
